#include "app/workers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <qcoro/qcorotask.h>
#include <QThread>
#include <memory>
#include <vector>

#include "support/app_test.h"

namespace ulvak {
namespace {

using namespace test;
using namespace std::chrono_literals;

struct WorkersTest : testing::Test {
    std::unique_ptr<Workers> workers = std::make_unique<Workers>();
    std::shared_ptr<Gate> gate = std::make_shared<Gate>();
    std::vector<int> results;

    QCoro::Task<> await(int value) {
        auto call = workers->run([value, gate = gate] {
            gate->pass();
            return value;
        });
        const int result = co_await call;
        results.push_back(result);
    }
};

TEST_F(WorkersTest, AFunctionRunsElsewhereAndItsResultComesBackHere) {
    Qt::HANDLE ran = nullptr;
    Qt::HANDLE cameBack = nullptr;
    const auto ask = [&]() -> QCoro::Task<> {
        auto call = workers->run([] { return QThread::currentThreadId(); });
        ran = co_await call;
        cameBack = QThread::currentThreadId();
    };
    runToEnd(ask());
    EXPECT_NE(ran, QThread::currentThreadId());
    EXPECT_EQ(cameBack, QThread::currentThreadId());
}

TEST_F(WorkersTest, AResultThatCanOnlyBeMovedIsMoved) {
    std::unique_ptr<int> result;
    const auto ask = [&]() -> QCoro::Task<> {
        auto call = workers->run([] { return std::make_unique<int>(7); });
        result = co_await call;
    };
    runToEnd(ask());
    ASSERT_TRUE(result);
    EXPECT_EQ(*result, 7);
}

TEST_F(WorkersTest, ManyWaitAtOnceWithoutHoldingEachOther) {
    std::vector<QCoro::Task<>> tasks;
    for (int i = 0; i < 100; ++i)
        tasks.push_back(await(i));
    EXPECT_TRUE(waitUntil([&] { return gate->arrived() == 100; }));
    EXPECT_TRUE(results.empty());
    gate->open();
    EXPECT_TRUE(waitUntil([&] { return results.size() == 100; }));
}

TEST_F(WorkersTest, AFunctionBeginsWhenItIsAwaited) {
    const auto ran = std::make_shared<std::atomic<bool>>(false);
    {
        const auto call = workers->run([ran] { return ran->exchange(true); });
    }
    EXPECT_TRUE(workers->waitForDone(10s));
    EXPECT_FALSE(*ran);
}

TEST_F(WorkersTest, TheEndWaitsForFunctionsAndForThoseWhoAwaitThem) {
    const auto first = await(1);
    const auto second = await(2);
    const auto posted = std::make_shared<std::atomic<bool>>(false);
    workers->post([posted] { *posted = true; });
    gate->open();
    workers.reset();
    EXPECT_THAT(results, testing::UnorderedElementsAre(1, 2));
    EXPECT_TRUE(first.isReady() && second.isReady());
    EXPECT_TRUE(*posted);
}

TEST_F(WorkersTest, WhoWakesUpAtTheEndMayAskOnceMore) {
    const auto askTwice = [&]() -> QCoro::Task<> {
        Workers& same = *workers;
        co_await await(1);
        auto call = same.run([] { return 2; });
        results.push_back(co_await call);
    };
    const auto task = askTwice();
    gate->open();
    workers.reset();
    EXPECT_THAT(results, testing::ElementsAre(1, 2));
}

TEST_F(WorkersTest, WaitingIsLimited) {
    const auto task = await(1);
    EXPECT_FALSE(workers->waitForDone(1ms));
    gate->open();
    EXPECT_TRUE(workers->waitForDone(60s));
    workers.reset();
    EXPECT_THAT(results, testing::ElementsAre(1));
}

}  // namespace
}  // namespace ulvak
