// What happens to running work when the program exits, normally or killed.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <atomic>
#include <csignal>
#include <filesystem>
#include <functional>
#include <memory>
#include <thread>

#include "platform/durable_file.h"
#include "platform/files.h"
#include "support/app_test.h"
#include "support/environment.h"
#include "support/system.h"

namespace ulvak {
namespace {

using namespace test;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using testing::ElementsAre;
using testing::IsEmpty;

class AppModelEnding : public AppTest {
protected:
    AppModelEnding() {
        services.classify = [gate = gate](const Finding&, std::string_view,
                                          const FolderContext::Applications&,
                                          const std::stop_token& stop) -> AIClassifier::Result {
            gate->pass(stop);
            return answer();
        };
    }

    /// Makes removals wait at the gate; stops do not open it.
    void makeCleaningSlow() {
        services.clean = [gate = gate, record = cleaned](
                             const Finding& finding, CleanMode,
                             CleanRun&) -> std::expected<std::int64_t, CleanFailure> {
            record->add(finding.id);
            gate->pass();
            return finding.size;
        };
    }
    void scanSlowly(bool heedsStop = true) {
        stage({.findings = {staged("/new")}, .gate = gate, .heedsStop = heedsStop});
        app().scan();
        ASSERT_TRUE(waitUntil([&] { return gate->arrived() > 0; }));
    }
    /// Ends the application; fails if that blocks on something that never ends or prints anything.
    void endQuickly() {
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        const auto start = Clock::now();
        end();
        EXPECT_LT(Clock::now() - start, 60s);
        EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    }

    std::shared_ptr<Gate> gate = std::make_shared<Gate>();
};

TEST_F(AppModelEnding, AScanThatRunsIsStopped) {
    start();
    scanSlowly();
    endQuickly();
}

/// Ends the application just before the second of two coroutines resumes.
class EndAtSecond : public QObject {
public:
    explicit EndAtSecond(std::function<void()> end) : end_(std::move(end)) {
        QCoreApplication::instance()->installEventFilter(this);
    }
    [[nodiscard]] bool hasEnded() const { return seen_ > 1; }

    bool eventFilter(QObject* receiver, QEvent* event) override {
        if (event->type() != QEvent::User || ++seen_ != 2)
            return false;
        QCoreApplication::postEvent(receiver, new QEvent(QEvent::User));  // replaces this event
        end_();
        return true;
    }

private:
    std::function<void()> end_;
    int seen_ = 0;
};

TEST_F(AppModelEnding, AScanThatIsComparedWithWhatWasCleanedMeanwhileIsDropped) {
    startWith({staged("/1")});
    scanSlowly();
    clean({"/1"});
    // First the walk ends, then the disk check.
    const EndAtSecond ending([&] { end(); });
    gate->open();
    EXPECT_TRUE(waitUntil([&] { return ending.hasEnded(); }));
}

TEST_F(AppModelEnding, AnAnalysisThatRunsIsStoppedAndItsAnswerDropped) {
    startWith({guessed("/a")});
    const auto task = app().analyze("/a", "");
    ASSERT_TRUE(waitUntil([&] { return gate->arrived() == 1; }));
    endQuickly();
    EXPECT_TRUE(task.isReady());
    EXPECT_THAT(remembered(), IsEmpty());
}

TEST_F(AppModelEnding, ABatchThatRunsIsStopped) {
    startWith({guessed("/a"), guessed("/b")});
    app().analyzeAllUncertain();
    ASSERT_TRUE(waitUntil([&] { return gate->arrived() == 1; }));
    endQuickly();
    EXPECT_EQ(gate->arrived(), 1);
}

TEST_F(AppModelEnding, AModelThatIsBeingLookedForIsNoLongerWaitedFor) {
    services.aiStatus = [gate = gate](const std::stop_token& stop) {
        gate->pass(stop);
        return AIStatus{};
    };
    start();
    const auto task = app().analyze("/a", "");
    ASSERT_TRUE(waitUntil([&] { return gate->arrived() == 2; }));
    endQuickly();
    EXPECT_TRUE(task.isReady());
}

TEST_F(AppModelEnding, ARemovalThatRunsIsWaitedForAndTheNextDoesNotBegin) {
    makeCleaningSlow();
    startWith({staged("/1"), staged("/2"), staged("/3")});
    const auto first = app().clean({"/1", "/2"}, CleanMode::trash);
    ASSERT_TRUE(waitUntil([&] { return gate->arrived() == 1; }));
    const auto other = app().clean({"/3"}, CleanMode::trash);
    EXPECT_FALSE(app().finish(1ms));
    gate->open();
    endQuickly();
    EXPECT_TRUE(first.isReady() && other.isReady());
    EXPECT_THAT(cleaned->values(), ElementsAre("/1"));
}

TEST_F(AppModelEnding, ARemovalThatRunsIsWaitedForAsLongAsItTakes) {
    makeCleaningSlow();
    startWith({staged("/1")});
    const auto task = app().clean({"/1"}, CleanMode::permanent);
    ASSERT_TRUE(waitUntil([&] { return gate->arrived() == 1; }));
    EXPECT_FALSE(app().finish(1ms));
    std::atomic<bool> hasOpened = false;
    std::thread opener([&] {
        hasOpened = true;
        gate->open();
    });
    app().finishLasting();
    EXPECT_TRUE(hasOpened) << "what is being removed was given up";
    opener.join();
    EXPECT_TRUE(app().finish(60s));
}

TEST_F(AppModelEnding, ALabelThatADiskIsSlowToTakeIsWaitedFor) {
    startWith({staged("/a")});
    // A lock holder may take any amount of time to read and write; the label is written after that.
    auto held = std::make_unique<platform::FileLock>(verdictsPath, 1s);
    ASSERT_TRUE(held->isHeld());
    app().setLevel(SafetyLevel::keep, "/a");
    EXPECT_FALSE(app().finish(1ms)) << "nothing is to be waited for";
    EXPECT_FALSE(remembered().contains("/a"));
    std::thread other([&] { held.reset(); });
    app().finishLasting();
    other.join();
    EXPECT_TRUE(remembered().contains("/a"));
}

TEST_F(AppModelEnding, ALabelThatTheDiskDidNotTakeIsTriedAgainAtTheEnd) {
    startWith({staged("/a")});
    std::filesystem::remove(verdictsPath);
    std::filesystem::create_directory(verdictsPath);
    app().setLevel(SafetyLevel::keep, "/a");
    EXPECT_TRUE(app().finish(60s));
    std::filesystem::remove(verdictsPath);
    app().finishLasting();
    EXPECT_TRUE(remembered().contains("/a"));
}

TEST_F(AppModelEnding, AllAtOnceEndSoonAndNoLabelIsLost) {
    startWith({guessed("/a"), staged("/b")});
    scanSlowly();
    const auto task = app().analyze("/a", "");
    ASSERT_TRUE(waitUntil([&] { return gate->arrived() == 2; }));
    app().setLevel(SafetyLevel::keep, "/b");
    app().setLevel(SafetyLevel::unknown, "/a");
    endQuickly();
    EXPECT_EQ(remembered().size(), 2U);
}

TEST_F(AppModelEnding, ALabelIsOnTheDiskEvenWhenAWalkHangsForGood) {
    startWith({staged("/a")});
    scanSlowly(false);
    app().setLevel(SafetyLevel::keep, "/a");
    const auto start = Clock::now();
    EXPECT_FALSE(app().finish(5s)) << "the walk does not end; the time is for the disk";
    EXPECT_LT(Clock::now() - start, 60s);
    EXPECT_TRUE(remembered().contains("/a"));
    gate->open();
    endQuickly();
}

TEST_F(AppModelEnding, AfterTheEndNothingIsAppliedAndNothingIsTold) {
    startWith({guessed("/a")});
    scanSlowly();
    const auto task = app().analyze("/a", "");
    ASSERT_TRUE(waitUntil([&] { return gate->arrived() == 2; }));
    signalled = std::make_shared<Record<std::string>>();
    EXPECT_TRUE(app().finish(60s));
    ASSERT_TRUE(waitUntil([&] { return task.isReady(); }));
    EXPECT_THAT(ids(), ElementsAre("/a"));
    EXPECT_THAT(signalled->values(), IsEmpty());
}

/// Cleaning that is stopped because the window is closing: each finding has three items and waits at the gate
/// after the first.
class AppModelStopping : public AppModelEnding {
protected:
    void SetUp() override {
        services.clean = [gate = gate, record = cleaned](
                             const Finding& finding, CleanMode,
                             CleanRun& run) -> std::expected<std::int64_t, CleanFailure> {
            record->add(finding.id);
            run.done = 1;
            gate->pass();
            if (run.stop.stop_requested())
                return std::unexpected(CleanError{CleanError::Failed{.message = "üçte bir"}});
            run.done = 3;
            return finding.size;
        };
        startWith({staged("/1"), staged("/2"), staged("/3")});
    }
    /// Cleans these, stops during the first and lets it finish.
    void stopMidway(const std::vector<std::vector<std::string>>& calls) {
        std::vector<QCoro::Task<>> tasks;
        for (const auto& ids : calls) {
            tasks.push_back(app().clean(ids, CleanMode::permanent));
            ASSERT_TRUE(waitUntil([&] { return gate->arrived() == 1; }));
        }
        EXPECT_TRUE(app().isCleaning());
        int ends = 0;
        QObject::connect(&app(), &AppModel::cleaningEnded, [&] {
            ++ends;
            EXPECT_FALSE(app().isCleaning());
        });
        app().stopCleaning();
        EXPECT_TRUE(app().isCleaning()) << "the item that is being removed is finished";
        gate->open();
        ASSERT_TRUE(waitUntil([&] { return ends == 1; }));
    }
};

TEST_F(AppModelStopping, EndsAfterTheItemAndTellsWhatIsLeft) {
    stopMidway({{"/1", "/2"}, {"/3"}});
    EXPECT_THAT(cleaned->values(), ElementsAre("/1"));
    EXPECT_THAT(ids(), ElementsAre("/1", "/2", "/3"));
    EXPECT_THAT(app().cleaning(), IsEmpty());
    ASSERT_TRUE(app().alert());
    EXPECT_EQ(app().alert()->title, "Temizlik durduruldu");
    EXPECT_THAT(app().alert()->message, testing::StartsWith("3 öğeden hiçbiri tümüyle temizlenmedi:\n"));
    for (const char* line : {"• ad /1: üçte bir", "• ad /2: dokunulmadı.", "• ad /3: dokunulmadı."})
        EXPECT_THAT(app().alert()->message, testing::HasSubstr(line));
}

TEST_F(AppModelStopping, CountsWhatWasDone) {
    const auto late = std::make_shared<Gate>();
    services.clean = [late](const Finding& finding, CleanMode,
                            CleanRun&) -> std::expected<std::int64_t, CleanFailure> {
        if (finding.id == "/2")
            late->pass();
        return finding.size;
    };
    startWith({staged("/1"), staged("/2"), staged("/3")});
    const auto task = app().clean({"/1", "/2", "/3"}, CleanMode::permanent);
    ASSERT_TRUE(waitUntil([&] { return late->arrived() == 1; }));
    app().stopCleaning();
    late->open();
    ASSERT_TRUE(waitUntil([&] { return !app().isCleaning(); }));
    EXPECT_THAT(ids(), ElementsAre("/3"));
    EXPECT_EQ(app().alert()->message,
              "3 öğeden yalnız 2 tanesi temizlendi. Kalanlar:\n• ad /3: dokunulmadı.");
}

TEST_F(AppModelStopping, SaysNothingWhenNothingIsLeft) {
    gate->open();
    const auto task = app().clean({"/1"}, CleanMode::permanent);
    ASSERT_TRUE(waitUntil([&] { return !app().isCleaning(); }));
    app().stopCleaning();
    EXPECT_EQ(app().alert(), std::nullopt);
    EXPECT_THAT(ids(), ElementsAre("/2", "/3"));
}

/// A program that is trashing folders when it is killed or exits.
class AppModelKilled : public AppModelEnding {
protected:
    static constexpr int items = 40;
    static constexpr int filesInEach = 5;
    enum class End { killed, finished };

    static std::string name(int item) { return "klasör-" + std::to_string(item); }

    AppModelKilled() {
        std::vector<TreeEntry> entries;
        for (int item = 0; item < items; ++item) {
            std::vector<TreeEntry> files;
            for (int i = 0; i < filesInEach; ++i)
                files.push_back(textFile("dosya-" + std::to_string(i), "içerik"));
            entries.push_back(folder(name(item), std::move(files)));
        }
        tree.add({folder("ev", std::move(entries)), folder("tmp")});
    }

    /// The program itself; exits at the latest when it is done.
    void program(End end) {
        const ScopedEnvironment environment({{"HOME", tree.path("ev")},
                                             {"TMPDIR", tree.path("tmp")},
                                             {"XDG_DATA_HOME", std::nullopt},
                                             {"XDG_CONFIG_HOME", std::nullopt}});
        // Pauses for good halfway: whenever the end comes, it comes midway.
        services.clean = [clean = AppServices::system(UserFolders::ofCurrentUser()).clean,
                          begun = std::make_shared<std::atomic<int>>(0)](const Finding& finding,
                                                                         CleanMode mode, CleanRun& run) {
            while (*begun == items / 2)
                ::pause();
            ++*begun;
            return clean(finding, mode, run);
        };
        std::vector<Finding> findings;
        std::vector<std::string> paths;
        for (int item = 0; item < items; ++item) {
            paths.push_back(tree.path("ev/" + name(item)));
            findings.push_back(staged(paths.back()));
        }
        startWith(std::move(findings));
        const auto task = app().clean(paths, CleanMode::trash);
        (void)waitUntil([&] { return end == End::finished ? inTrash() > 3 : task.isReady(); });
        (void)app().finish(0ms);
        ::_exit(0);
    }
    [[nodiscard]] std::string trashed() const { return tree.path("ev/.local/share/Trash/files"); }
    [[nodiscard]] int inTrash() const { return entriesIn(trashed()); }
    static int entriesIn(const std::string& path) {
        return static_cast<int>(platform::listNames(path).size());
    }
    void expectEveryItemWholeInOnePlace() {
        for (int item = 0; item < items; ++item) {
            const int here = entriesIn(tree.path("ev/" + name(item)));
            const int there = entriesIn(trashed() + "/" + name(item));
            EXPECT_EQ(here + there, filesInEach) << item;
            EXPECT_TRUE(here == 0 || there == 0) << item << ": " << here << " here, " << there << " there";
        }
    }
};

TEST_F(AppModelKilled, AnItemIsEitherHereOrInTheTrash) {
    if (const auto reason = whyNoTrashOfItsOwn())
        GTEST_SKIP() << *reason;
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0)
        program(End::killed);
    // Not with the event loop, whose handles the child shares.
    const auto deadline = Clock::now() + 60s;
    while (inTrash() < 3 && Clock::now() < deadline)
        std::this_thread::yield();
    ::kill(child, SIGKILL);
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_GE(inTrash(), 3);
    EXPECT_LT(inTrash(), items);
    expectEveryItemWholeInOnePlace();
}

TEST_F(AppModelKilled, AProgramThatEndsMidwayLeavesEveryItemWhole) {
    if (const auto reason = whyNoTrashOfItsOwn())
        GTEST_SKIP() << *reason;
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0)
        program(End::finished);
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    EXPECT_GE(inTrash(), 3);
    EXPECT_LT(inTrash(), items);
    expectEveryItemWholeInOnePlace();
}

}  // namespace
}  // namespace ulvak
