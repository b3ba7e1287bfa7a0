#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QEvent>
#include <QSignalSpy>
#include <QTimer>
#include <algorithm>
#include <atomic>
#include <chrono>
#include <expected>
#include <memory>
#include <new>
#include <ostream>
#include <thread>

#include "app/finding_action.h"
#include "support/app_test.h"

namespace ulvak {
namespace {

using namespace test;
using Phase = AppModel::Phase;
using testing::ElementsAre;
using testing::IsEmpty;

/// Records the intervals of every timer that fires on this thread, except the tests' own.
class PauseWatch : public QObject {
public:
    struct Pause {
        std::chrono::milliseconds length{};
        bool isOnce = false;
        bool isPrecise = false;

        friend bool operator==(const Pause&, const Pause&) = default;
        friend void PrintTo(const Pause& pause, std::ostream* stream) {
            *stream << pause.length.count() << " ms" << (pause.isOnce ? ", once" : "")
                    << (pause.isPrecise ? ", precise" : "");
        }
    };

    PauseWatch() { QCoreApplication::instance()->installEventFilter(this); }

    bool eventFilter(QObject* object, QEvent* event) override {
        const auto* timer = qobject_cast<QTimer*>(object);
        if (timer != nullptr && event->type() == QEvent::Timer && timer->objectName() != testsTimer)
            pauses.push_back({.length = timer->intervalAsDuration(),
                              .isOnce = timer->isSingleShot(),
                              .isPrecise = timer->timerType() == Qt::PreciseTimer});
        return false;
    }

    std::vector<Pause> pauses;
};

class AppModelScan : public AppTest {
protected:
    /// Starts a scan and waits until its walk is running.
    std::shared_ptr<Gate> startSlowScan(StagedScan scan = {}) {
        scan.gate = std::make_shared<Gate>();
        const auto gate = scan.gate;
        stage(std::move(scan));
        app().scan();
        EXPECT_TRUE(waitUntil([&] { return gate->arrived() > 0; }));
        return gate;
    }
    bool walkHasEnded() { return app().phase() == Phase::done; }

    /// Starts an application whose walks can all be waited for.
    AppModel& startCounting() {
        services.scan = [held = held_, scan = services.scan](ScanProgress& progress,
                                                             const std::stop_token& stop) {
            return scan(progress, stop);
        };
        AppModel& app = start();
        heldWithoutWalks_ = held_.use_count();
        return app;
    }
    /// 0 once all have returned.
    [[nodiscard]] long heldByWalks() const { return held_.use_count() - heldWithoutWalks_; }
    /// Waits until every walk, cancelled or not, has returned and the application has handled its result;
    /// `butThoseThatHold` references may remain. A worker releases a walk after reporting its end.
    void awaitAllWalks(long butThoseThatHold = 0) {
        ASSERT_TRUE(waitUntil([&] { return heldByWalks() == butThoseThatHold; }));
        QCoreApplication::processEvents();
    }

private:
    std::shared_ptr<int> held_ = std::make_shared<int>();  ///< by the application, and by each walk
    long heldWithoutWalks_ = 0;
};

TEST_F(AppModelScan, ThatRunsOutOfMemorySaysSoAndLeavesWhatThereWas) {
    const auto isShort = std::make_shared<std::atomic<int>>(0);
    services.scan = [isShort, scan = services.scan](
                        ScanProgress& progress,
                        const std::stop_token& stop) -> std::expected<std::vector<Finding>, ScanError> {
        if (*isShort == 1)
            return std::unexpected(ScanError::outOfMemory);
        if (*isShort == 2)
            throw std::bad_alloc();
        return scan(progress, stop);
    };
    AppModel& app = start();
    *isShort = 1;
    app.scan();
    ASSERT_TRUE(waitUntil([&] { return app.phase() == Phase::idle; }));
    ASSERT_TRUE(app.alert());
    EXPECT_EQ(app.alert()->title, "Tarama tamamlanamadı");
    EXPECT_TRUE(app.alert()->message.starts_with("Bellek yetmedi."));
    app.dismissAlert();

    *isShort = 0;
    stage({.findings = {staged("/v/a")}});
    app.scan();
    ASSERT_TRUE(waitUntil([&] { return app.phase() == Phase::done; }));
    EXPECT_FALSE(app.alert());
    *isShort = 2;
    app.scan();
    ASSERT_TRUE(waitUntil([&] { return app.alert().has_value(); }));
    EXPECT_EQ(app.phase(), Phase::done);
    EXPECT_EQ(app.findings().size(), 1U);
}

TEST_F(AppModelScan, StartsEmptyWithoutScanning) {
    const AppModel& app = start();
    EXPECT_EQ(app.phase(), Phase::idle);
    EXPECT_THAT(app.findings(), IsEmpty());
    EXPECT_EQ(app.disk(), (DiskInfo{.total = 1000, .available = 400}));
    EXPECT_EQ(app.scannedFiles(), 0);
    EXPECT_EQ(app.scannedBytes(), 0);
    EXPECT_EQ(app.currentPath(), "");
    EXPECT_EQ(app.deniedCount(), 0);
    EXPECT_EQ(app.scanDuration(), std::nullopt);
    EXPECT_THAT(app.analyzing(), IsEmpty());
    EXPECT_EQ(app.batchProgress(), std::nullopt);
    EXPECT_THAT(app.cleaning(), IsEmpty());
    EXPECT_EQ(app.trashedBytes(), 0);
    EXPECT_EQ(app.freedBytes(), 0);
    EXPECT_EQ(app.alert(), std::nullopt);
    EXPECT_THAT(app.store().entries(), IsEmpty());
}

TEST_F(AppModelScan, TheModelCountsAsAbsentUntilItHasAnswered) {
    const AppModel& app = start();
    EXPECT_FALSE(app.aiStatus().isAvailable());
    EXPECT_TRUE(waitUntil([&] { return app.aiStatus().isAvailable(); }));
}

TEST_F(AppModelScan, AHintThatChangesIsHeardOfWhenTheReasonStays) {
    const auto hints = std::make_shared<Record<std::string>>();
    services.aiStatus = [hints](const std::stop_token&) {
        hints->add("");
        return AIStatus{.unavailable = "yok", .hint = std::to_string(hints->size())};
    };
    start();
    ASSERT_TRUE(waitUntil([&] { return app().aiStatus().hint == "1"; }));
    scanFor({});
    EXPECT_TRUE(waitUntil([&] { return app().aiStatus().hint == "2"; }));
    EXPECT_EQ(std::ranges::count(signalled->values(), "aiStatus"), 2);
}

TEST_F(AppModelScan, ADiskThatCannotBeReadIsAbsent) {
    services.diskInfo = [] { return std::optional<DiskInfo>(); };
    EXPECT_EQ(startWith({staged("/a")}).disk(), std::nullopt);
}

TEST_F(AppModelScan, FromIdleToScanningToDone) {
    start();
    const auto gate = startSlowScan({.findings = {staged("/b"), staged("/a")}});
    EXPECT_EQ(app().phase(), Phase::scanning);
    gate->open();
    ASSERT_TRUE(waitUntil([&] { return walkHasEnded(); }));
    EXPECT_THAT(ids(), ElementsAre("/b", "/a"));
}

TEST_F(AppModelScan, TheResultIsSetInOrderAndThePhaseLast) {
    const auto asked = std::make_shared<Record<int>>();
    services.diskInfo = [asked] {
        asked->add(0);
        return std::optional(DiskInfo{.total = 1000, .available = static_cast<std::int64_t>(asked->size())});
    };
    services.aiStatus = [asked](const std::stop_token&) {
        return AIStatus{.unavailable = "yok", .hint = std::to_string(asked->size())};
    };
    start();
    ASSERT_TRUE(waitUntil([&] { return app().aiStatus().unavailable == "yok"; }));
    signalled = std::make_shared<Record<std::string>>();
    const auto gate = startSlowScan({.findings = {staged("/a")}, .files = 3, .bytes = 5, .denied = 1});
    gate->open();
    ASSERT_TRUE(waitUntil([&] { return walkHasEnded(); }));
    std::vector<std::string> order = signalled->values();
    order.erase(order.begin(), std::ranges::find(order, "findings"));
    std::erase_if(order, [](const std::string& name) {
        return name == "scannedFiles" || name == "scannedBytes" || name == "deniedCount" ||
               name == "currentPath" || name == "aiStatus";
    });
    EXPECT_THAT(order, ElementsAre("findings", "scanDuration", "disk", "phase"));
}

TEST_F(AppModelScan, TheProgressIsLookedAtOnceBeforeTheFirstPause) {
    start();
    const auto first = startSlowScan({.files = 12, .bytes = 34, .denied = 5, .current = ayse().home + "/x"});
    // A poll may fall between two updates of the walk's counters.
    ASSERT_TRUE(waitUntil([&] {
        return app().scannedFiles() == 12 && app().scannedBytes() == 34 && app().deniedCount() == 5 &&
               app().currentPath() == "~/x";
    }));
    first->open();
    ASSERT_TRUE(waitUntil([&] { return walkHasEnded(); }));
    // The poll before the walk starts is done when the call returns: no timer has fired yet.
    stage({.gate = std::make_shared<Gate>()});
    signalled = std::make_shared<Record<std::string>>();
    app().scan();
    EXPECT_THAT(signalled->values(),
                ElementsAre("phase", "scannedFiles", "scannedBytes", "deniedCount", "currentPath"));
}

TEST_F(AppModelScan, TheNextLookIsAFifthOfASecondAfterTheLast) {
    PauseWatch watch;
    start();
    signalled = std::make_shared<Record<std::string>>();
    const auto gate = startSlowScan({.files = 12, .current = ayse().home + "/x"});
    ASSERT_TRUE(waitUntil([&] { return watch.pauses.size() >= 3; }));
    gate->open();
    ASSERT_TRUE(waitUntil([&] { return walkHasEnded(); }));
    const PauseWatch::Pause pause{
        .length = std::chrono::milliseconds(200), .isOnce = true, .isPrecise = true};
    EXPECT_THAT(watch.pauses, testing::Each(pause));
    // Unchanged values are not signalled again, though there were many polls.
    EXPECT_EQ(std::ranges::count(signalled->values(), "scannedFiles"), 1);
    EXPECT_EQ(std::ranges::count(signalled->values(), "currentPath"), 1);
}

TEST_F(AppModelScan, WhatIsCountedAfterTheLastLookIsInTheFinalCounters) {
    const auto gate = std::make_shared<Gate>();
    services.scan = [gate](ScanProgress& progress, const std::stop_token& stop) {
        progress.addFiles(1);
        gate->pass(stop);
        progress.addFiles(11);
        progress.addBytes(34);
        progress.addDenied(5);
        return std::vector<Finding>();
    };
    start();
    // During a poll: the next is an interval away, by which time the walk has ended.
    QObject::connect(&app(), &AppModel::scannedFilesChanged, [gate] { gate->open(); });
    app().scan();
    ASSERT_TRUE(waitUntil([&] { return walkHasEnded(); }));
    EXPECT_EQ(app().scannedFiles(), 12);
    EXPECT_EQ(app().scannedBytes(), 34);
    EXPECT_EQ(app().deniedCount(), 5);
}

TEST_F(AppModelScan, ProgressIsToldAtMostFiveTimesASecond) {
    const auto isOver = std::make_shared<std::atomic<bool>>(false);
    services.scan = [isOver](ScanProgress& progress, const std::stop_token& stop) {
        while (!*isOver && !stop.stop_requested()) {
            progress.addFiles(1);
            std::this_thread::yield();
        }
        return std::vector<Finding>();
    };
    start();
    std::vector<std::chrono::steady_clock::time_point> times;
    QObject::connect(&app(), &AppModel::scannedFilesChanged,
                     [&] { times.push_back(std::chrono::steady_clock::now()); });
    app().scan();
    ASSERT_TRUE(waitUntil([&] { return times.size() >= 5; }));
    *isOver = true;
    for (std::size_t i = 1; i < 5; ++i)
        EXPECT_GE(times[i] - times[i - 1], std::chrono::milliseconds(195));
    ASSERT_TRUE(waitUntil([&] { return walkHasEnded(); }));
}

TEST_F(AppModelScan, ASecondScanIsIgnoredWhileOneRuns) {
    start();
    const auto gate = startSlowScan({.findings = {staged("/first")}, .files = 7});
    ASSERT_TRUE(waitUntil([&] { return app().scannedFiles() == 7; }));
    const auto second = std::make_shared<Gate>();
    stage({.findings = {staged("/second")}, .gate = second});
    const std::size_t signalsBefore = signalled->size();
    app().scan();
    EXPECT_EQ(signalled->size(), signalsBefore);
    EXPECT_EQ(app().scannedFiles(), 7);
    gate->open();
    ASSERT_TRUE(waitUntil([&] { return walkHasEnded(); }));
    EXPECT_THAT(ids(), ElementsAre("/first"));
    EXPECT_EQ(second->arrived(), 0);
}

TEST_F(AppModelScan, AnotherScanResetsTheCountersAndLeavesTheRest) {
    startWith({staged("/old", SafetyLevel::safe, 70)});
    clean({"/old"});
    ASSERT_EQ(app().trashedBytes(), 70);
    const auto first = startSlowScan(
        {.findings = {staged("/older")}, .files = 9, .bytes = 8, .denied = 7, .current = ayse().home + "/x"});
    ASSERT_TRUE(waitUntil([&] { return app().currentPath() == "~/x"; }));
    first->open();
    ASSERT_TRUE(waitUntil([&] { return walkHasEnded(); }));
    ASSERT_EQ(app().scannedFiles(), 9);
    ASSERT_EQ(app().scannedBytes(), 8);
    ASSERT_EQ(app().deniedCount(), 7);
    const auto duration = app().scanDuration();
    // Nothing may come from the walk before the test has checked.
    const auto gate = std::make_shared<Gate>();
    stage({.findings = {staged("/new")}, .gate = gate});
    app().scan();
    EXPECT_EQ(app().phase(), Phase::scanning);
    EXPECT_EQ(app().scannedFiles(), 0);
    EXPECT_EQ(app().scannedBytes(), 0);
    EXPECT_EQ(app().deniedCount(), 0);
    EXPECT_EQ(app().currentPath(), "");
    EXPECT_THAT(ids(), ElementsAre("/older"));
    EXPECT_EQ(app().scanDuration(), duration);
    EXPECT_TRUE(app().disk());
    EXPECT_EQ(app().trashedBytes(), 70);
    gate->open();
    ASSERT_TRUE(waitUntil([&] { return walkHasEnded(); }));
    EXPECT_THAT(ids(), ElementsAre("/new"));
}

TEST_F(AppModelScan, ACancelledFirstScanLeavesNothing) {
    startCounting();
    const auto gate = startSlowScan({.findings = {staged("/a")}});
    app().cancelScan();
    EXPECT_EQ(app().phase(), Phase::idle);
    gate->open();
    awaitAllWalks();
    EXPECT_EQ(app().phase(), Phase::idle);
    EXPECT_THAT(ids(), IsEmpty());
    EXPECT_EQ(app().scanDuration(), std::nullopt);
}

TEST_F(AppModelScan, ACancelledScanBringsThePreviousResultBack) {
    startCounting();
    scanFor({staged("/kept")});
    const auto duration = app().scanDuration();
    ASSERT_TRUE(duration);
    const auto gate = startSlowScan({.findings = {staged("/dropped")}, .files = 4});
    app().cancelScan();
    EXPECT_EQ(app().phase(), Phase::done);
    EXPECT_THAT(ids(), ElementsAre("/kept"));
    signalled = std::make_shared<Record<std::string>>();
    gate->open();
    awaitAllWalks();
    EXPECT_EQ(app().phase(), Phase::done);
    EXPECT_THAT(ids(), ElementsAre("/kept"));
    EXPECT_EQ(app().scanDuration(), duration);
    EXPECT_FALSE(std::ranges::count(signalled->values(), "findings"));
}

TEST_F(AppModelScan, ACancelledWalkGoesOnAndIsStillCounted) {
    const auto counted = std::make_shared<std::atomic<bool>>(false);
    const auto gate = std::make_shared<Gate>();
    const auto end = std::make_shared<Gate>();
    services.scan = [counted, gate, end](ScanProgress& progress, const std::stop_token& stop) {
        gate->pass(stop);
        *counted = !stop.stop_requested();
        progress.addFiles(31);
        end->pass(stop);
        return std::vector<Finding>{staged("/late")};
    };
    start();
    app().scan();
    ASSERT_TRUE(waitUntil([&] { return gate->arrived() > 0; }));
    app().cancelScan();
    gate->open();
    EXPECT_TRUE(waitUntil([&] { return app().scannedFiles() == 31; }));
    EXPECT_TRUE(*counted) << "the walk was told to stop";
    EXPECT_EQ(app().phase(), Phase::idle);
    end->open();
}

TEST_F(AppModelScan, OfTwoWalksAtOnceOnlyTheNewerCounts) {
    startCounting();
    const auto older = startSlowScan({.findings = {staged("/older")}});
    app().cancelScan();
    const auto newer = startSlowScan({.findings = {staged("/newer")}});
    EXPECT_EQ(older->arrived(), 1);
    newer->open();
    ASSERT_TRUE(waitUntil([&] { return walkHasEnded(); }));
    EXPECT_THAT(ids(), ElementsAre("/newer"));
    older->open();
    awaitAllWalks();
    EXPECT_THAT(ids(), ElementsAre("/newer"));
}

TEST_F(AppModelScan, BothCountersOfTwoWalksAreShownUntilTheOlderEnds) {
    startCounting();
    const auto older = startSlowScan({.files = 100});
    const long heldByOne = heldByWalks();
    app().cancelScan();
    const auto newer = startSlowScan({.files = 200});
    std::set<std::int64_t> shown;
    QObject::connect(&app(), &AppModel::scannedFilesChanged, [&] { shown.insert(app().scannedFiles()); });
    EXPECT_TRUE(waitUntil([&] { return shown.contains(100) && shown.contains(200); }));
    older->open();
    awaitAllWalks(heldByOne);  // except the newer; otherwise the last poll might be of the older
    newer->open();
    ASSERT_TRUE(waitUntil([&] { return walkHasEnded(); }));
    EXPECT_EQ(app().scannedFiles(), 200);
}

TEST_F(AppModelScan, CancellingWhenNothingRunsChangesNothing) {
    start();
    app().cancelScan();
    EXPECT_EQ(app().phase(), Phase::idle);
    scanFor({staged("/a")});
    app().cancelScan();
    EXPECT_EQ(app().phase(), Phase::done);
    EXPECT_THAT(ids(), ElementsAre("/a"));
}

TEST_F(AppModelScan, WhoeverHearsOfAScanMayCancelItAtOnce) {
    startCounting();
    QObject::connect(&app(), &AppModel::phaseChanged, &app(), [this] {
        if (app().phase() == Phase::scanning)
            app().cancelScan();
    });
    stage({.findings = {staged("/a")}});
    app().scan();
    EXPECT_EQ(app().phase(), Phase::idle);
    awaitAllWalks();
    EXPECT_EQ(app().phase(), Phase::idle);
    EXPECT_THAT(ids(), IsEmpty());
}

TEST_F(AppModelScan, IsShownWithoutWaitingForAModelThatIsSilent) {
    const auto gate = std::make_shared<Gate>();
    services.aiStatus = [gate](const std::stop_token& stop) {
        gate->pass(stop);
        return AIStatus{};
    };
    startWith({staged("/a")});
    EXPECT_THAT(ids(), ElementsAre("/a"));
    EXPECT_EQ(app().phase(), Phase::done);
    EXPECT_FALSE(app().aiStatus().isAvailable());
    scanFor({staged("/b")});
    EXPECT_THAT(ids(), ElementsAre("/b"));
    gate->open();
    EXPECT_TRUE(waitUntil([&] { return app().aiStatus().isAvailable(); })) << "it comes on its own";
}

TEST_F(AppModelScan, TheTimeAModelTakesToAnswerIsNotTheScans) {
    using Clock = std::chrono::steady_clock;
    const auto gate = std::make_shared<Gate>();
    const auto asked = std::make_shared<Record<Clock::time_point>>();
    services.aiStatus = [gate, asked](const std::stop_token& stop) {
        asked->add(Clock::now());
        gate->pass(stop);
        return AIStatus{};
    };
    start();
    ASSERT_TRUE(waitUntil([&] { return gate->arrived() == 1; }));
    stage({.findings = {staged("/a")}});
    const auto began = Clock::now();
    app().scan();
    const auto underWay = Clock::now();
    ASSERT_TRUE(waitUntil([&] { return gate->arrived() == 2; }));
    const auto ended = asked->values().back();
    // The model takes longer than the scan's start may have been delayed.
    ASSERT_TRUE(waitUntil([&] { return Clock::now() - ended > underWay - began; }));
    gate->open();
    ASSERT_TRUE(waitUntil([&] { return walkHasEnded(); }));
    EXPECT_GE(*app().scanDuration(), 0.0);
    EXPECT_LE(*app().scanDuration(), std::chrono::duration<double>(ended - began).count());
}

TEST_F(AppModelScan, RememberedVerdictsAreLaidOverTheResult) {
    startWith({staged("/a"), staged("/b")});
    app().setLevel(SafetyLevel::keep, "/b");
    scanFor({staged("/a"), staged("/b")});
    EXPECT_EQ(app().finding("/a")->level, SafetyLevel::safe);
    EXPECT_EQ(app().finding("/b")->level, SafetyLevel::keep);
    EXPECT_EQ(app().finding("/b")->source, VerdictSource::user);
    EXPECT_EQ(app().finding("/b")->original.level, SafetyLevel::safe);
}

TEST_F(AppModelScan, FindingsOfALevelKeepTheOrderOfTheList) {
    startWith({staged("/1", SafetyLevel::safe, 5), staged("/2", SafetyLevel::keep, 90),
               staged("/3", SafetyLevel::safe, 7)});
    const Findings safe = app().findings(SafetyLevel::safe);
    ASSERT_EQ(safe.size(), 2U);
    EXPECT_EQ(safe[0]->id, "/1");
    EXPECT_EQ(safe[1]->id, "/3");
    EXPECT_EQ(app().total(SafetyLevel::safe), 12);
    EXPECT_EQ(app().total(SafetyLevel::keep), 90);
}

TEST_F(AppModelScan, ALevelWithoutFindingsTotalsNothing) {
    EXPECT_EQ(start().total(SafetyLevel::safe), 0);
    scanFor({staged("/1", SafetyLevel::keep)});
    EXPECT_EQ(app().total(SafetyLevel::safe), 0);
    EXPECT_THAT(app().findings(SafetyLevel::safe), IsEmpty());
}

TEST_F(AppModelScan, ASumThatOverflowsEndsTheProgram) {
    startWith({staged("/1", SafetyLevel::safe, std::numeric_limits<std::int64_t>::max()), staged("/2")});
    EXPECT_DEATH((void)app().total(SafetyLevel::safe), "");
}

TEST_F(AppModelScan, AFindingIsFoundByExactlyItsIdAndTheFirstCounts) {
    startWith({staged("/a", SafetyLevel::safe, 1), staged("/a", SafetyLevel::keep, 2), staged("/B\xff")});
    EXPECT_EQ(app().finding("/a")->size, 1);
    EXPECT_EQ(app().finding("/B\xff")->id, "/B\xff");
    EXPECT_EQ(app().finding("/b\xff"), nullptr);
    EXPECT_EQ(app().finding("/"), nullptr);
    EXPECT_EQ(app().finding(""), nullptr);
}

TEST_F(AppModelScan, RevealsAllItemsOfAFindingAtOnce) {
    const auto revealed = std::make_shared<Record<std::vector<std::string>>>();
    services.reveal = [revealed](std::span<const std::string> paths) {
        revealed->add({paths.begin(), paths.end()});
        return true;
    };
    start();
    Finding group = staged("/a");
    group.urls = {"/a", "/b", "/c\n"};
    app().reveal(group);
    ASSERT_TRUE(waitUntil([&] { return revealed->size() > 0; }));
    EXPECT_THAT(revealed->values(), ElementsAre(ElementsAre("/a", "/b", "/c\n")));
    EXPECT_FALSE(app().alert());
}

TEST_F(AppModelScan, TellsWhenNothingOpensTheFolder) {
    services.reveal = [](std::span<const std::string>) { return false; };
    start();
    app().reveal(staged("/v/önbellek"));
    ASSERT_TRUE(waitUntil([&] { return app().alert().has_value(); }));
    EXPECT_EQ(app().alert()->title, "Klasör açılamadı");
    EXPECT_EQ(app().alert()->message,
              "“/v/önbellek” gösterilemedi: klasörleri açacak bir dosya yöneticisi bulunamadı.");
}

TEST_F(AppModelScan, AnActionThatNobodyKnowsDoesNothing) {
    start();
    app().perform("revea", staged("/a"));
    EXPECT_FALSE(app().alert());
    EXPECT_EQ(findingAction("revea"), nullptr);
    for (const FindingAction& action : findingActions())
        EXPECT_EQ(findingAction(action.name), &action) << "two rows have one name";
}

TEST_F(AppModelScan, OpensThePageOfTheDiskAccessSettings) {
    const auto opened = std::make_shared<Record<std::string>>();
    services.openUrl = [opened](std::string_view url) { opened->add(std::string(url)); };
    start().openFullDiskAccessSettings();
    ASSERT_TRUE(waitUntil([&] { return opened->size() > 0; }));
    EXPECT_THAT(opened->values(),
                ElementsAre("x-apple.systempreferences:com.apple.preference.security?Privacy_AllFiles"));
}

// Every operation, by name, to be called from another thread.
class AppModelThreads : public AppTest, public testing::WithParamInterface<const char*> {
protected:
    void callFromAnotherThread(const std::string& name) {
        std::thread([&] { call(name); }).join();
    }

private:
    void call(const std::string& name) {
        if (name == "scan")
            app().scan();
        else if (name == "cancelScan")
            app().cancelScan();
        else if (name == "setLevel")
            app().setLevel(SafetyLevel::safe, "/a");
        else if (name == "resetVerdict")
            app().resetVerdict("/a");
        else if (name == "analyze")
            app().analyze("/a", "");
        else if (name == "analyzeAllUncertain")
            app().analyzeAllUncertain();
        else if (name == "cancelBatch")
            app().cancelBatch();
        else if (name == "clean")
            app().clean({"/a"}, CleanMode::trash);
        else if (name == "emptyTrash")
            app().emptyTrash();
        else if (name == "reveal")
            app().reveal({});
        else if (name == "openFullDiskAccessSettings")
            app().openFullDiskAccessSettings();
        else if (name == "findings")
            (void)app().findings(SafetyLevel::safe);
        else if (name == "total")
            (void)app().total(SafetyLevel::safe);
        else if (name == "finding")
            (void)app().finding("/a");
        else if (name == "uncertainCount")
            (void)app().uncertainCount();
        else if (name == "dismissAlert")
            app().dismissAlert();
    }
};

TEST_P(AppModelThreads, ACallFromAnotherThreadEndsTheProgram) {
    start();
    EXPECT_DEATH(callFromAnotherThread(GetParam()), "belongs to the UI thread");
}

INSTANTIATE_TEST_SUITE_P(Operations, AppModelThreads,
                         testing::Values("scan", "cancelScan", "setLevel", "resetVerdict", "analyze",
                                         "analyzeAllUncertain", "cancelBatch", "clean", "emptyTrash",
                                         "reveal", "openFullDiskAccessSettings", "findings", "total",
                                         "finding", "uncertainCount", "dismissAlert"),
                         [](const auto& operation) { return std::string(operation.param); });

}  // namespace
}  // namespace ulvak
