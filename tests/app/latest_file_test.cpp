#include "app/latest_file.h"

#include <gtest/gtest.h>

#include <QThread>
#include <atomic>
#include <memory>

#include "app/app_world.h"
#include "platform/durable_file.h"
#include "support/temp_tree.h"

namespace ulvak {
namespace {

using namespace test;

struct LatestFileTest : testing::Test {
    TempTree tree;
    std::unique_ptr<Workers> workers = std::make_unique<Workers>();
    LatestFile file{*workers};

    void write(const std::string& name, const std::string& text) {
        file.write(tree.path(name), [text] { return std::optional(text); });
    }
    [[nodiscard]] std::string read(const std::string& name) const {
        return platform::readFile(tree.path(name), 10'000'000).value_or("?");
    }
};

TEST_F(LatestFileTest, IsWrittenAtTheLatestWhenTheWorkersAreDone) {
    write("f", "bir");
    workers.reset();
    EXPECT_EQ(read("f"), "bir");
}

TEST_F(LatestFileTest, IsWrittenWithoutWaitingForAnEnd) {
    write("f", "bir");
    EXPECT_TRUE(eventually([&] { return read("f") == "bir"; }));
    write("f", "iki");
    EXPECT_TRUE(eventually([&] { return read("f") == "iki"; }));
}

TEST_F(LatestFileTest, TheLastOfManyVersionsIsTheOneThatStays) {
    for (int round = 0; round < 20; ++round) {
        for (int i = 0; i < 50; ++i)
            write("f", std::string(2000, 'x') + std::to_string(i));
        ASSERT_TRUE(workers->waitForDone(std::chrono::minutes(1)));
        ASSERT_EQ(read("f"), std::string(2000, 'x') + "49");
    }
}

TEST_F(LatestFileTest, WhatCannotBeWrittenIsDroppedAndTheNextIsTried) {
    write("none/f", "bir");
    ASSERT_TRUE(workers->waitForDone(std::chrono::minutes(1)));
    tree.add({folder("none")});
    write("none/f", "iki");
    workers.reset();
    EXPECT_EQ(read("none/f"), "iki");
}

TEST_F(LatestFileTest, WhatHasNoContentsLeavesTheFile) {
    write("f", "bir");
    ASSERT_TRUE(workers->waitForDone(std::chrono::minutes(1)));
    file.write(tree.path("f"), [] { return std::optional<std::string>(); });
    workers.reset();
    EXPECT_EQ(read("f"), "bir");
}

TEST_F(LatestFileTest, ContentsArePutIntoWordsElsewhere) {
    const auto ran = std::make_shared<std::atomic<Qt::HANDLE>>(nullptr);
    file.write(tree.path("f"), [ran] {
        *ran = QThread::currentThreadId();
        return std::optional<std::string>("bir");
    });
    workers.reset();
    EXPECT_NE(ran->load(), nullptr);
    EXPECT_NE(ran->load(), QThread::currentThreadId());
}

}  // namespace
}  // namespace ulvak
