#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "classify/analyzer.h"
#include "classify/rule_book.h"
#include "core/paths.h"
#include "platform/trash.h"
#include "support/app_test.h"

namespace ulvak {
namespace {

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto most = std::numeric_limits<std::int64_t>::max();

Finding usedBy(const std::string& id, std::vector<std::string> applications,
               VerdictSource source = VerdictSource::rule) {
    Finding finding = source == VerdictSource::heuristic ? guessed(id) : staged(id);
    finding.quitApps = std::move(applications);
    return finding;
}

/// A folder with only this in it.
DirNode around(std::string name, DirNode inside) {
    DirNode node{
        .url = std::move(name), .isDirectory = true, .size = inside.size, .fileCount = inside.fileCount};
    node.children.push_back(std::move(inside));
    return node;
}

/// What a scan reports for a home folder with a large Trash: on macOS by a rule, elsewhere as the unknown
/// folder that accounts for most of its unknown ancestors.
std::vector<Finding> scannedTrash() {
    DirNode node{.url = "eski", .size = 3'000'000'000, .fileCount = 1};
    if (const std::string& items = platform::trashLayout().items; !items.empty())
        node = around(items, std::move(node));
    std::string path = ayse().trash;
    for (; path != ayse().home && path != "/"; path = Paths::parent(path))
        node = around(std::string(Paths::lastComponent(path)), std::move(node));
    const DirNode root = around(path, std::move(node));
    const Analyzer analyzer{
        .rules = RuleBook::all(), .unitMinimum = 50'000'000, .defaultMinimum = 300'000'000};
    return analyzer.run({&root, 1}, ayse());
}

class AppModelClean : public AppTest {
protected:
    AppModelClean() {
        services.classify = [](const Finding& finding, std::string_view, const FolderContext::Applications&,
                               const std::stop_token&) -> AIClassifier::Result {
            Verdict verdict = answer();
            verdict.title = "model: " + finding.id;
            return verdict;
        };
    }

    /// Makes the Trash have no room for anything with this id.
    void makeTrashFullFor(const std::string& id) {
        services.clean = [record = cleaned, id](const Finding& finding, CleanMode,
                                                CleanRun&) -> std::expected<std::int64_t, CleanFailure> {
            record->add(finding.id);
            if (finding.id == id)
                return std::unexpected(fullTrash(id));
            return finding.size;
        };
    }
    static CleanFailure fullTrash(const std::string& path) {
        return platform::FileError{.code = {ENOSPC, std::generic_category()}, .path = path};
    }
    void letRun(const std::string& application) {
        services.runningAmong = [application](std::span<const std::string> among) {
            AppServices::Names running;
            for (const std::string& name : among) {
                if (name == application)
                    running.push_back(name);
            }
            return running;
        };
    }
    /// Has the model rename findings, so that their titles differ from the analysis.
    void renameByModel(const std::vector<std::string>& which) {
        for (const std::string& id : which) {
            analyze(id);
            ASSERT_EQ(app().finding(id)->title, "model: " + id);
            ASSERT_EQ(app().finding(id)->original.title, "ad " + id);
        }
    }
    /// Makes cleaning wait at the gate.
    void makeCleaningSlow() {
        services.clean = [record = cleaned, gate = gate](
                             const Finding& finding, CleanMode,
                             CleanRun&) -> std::expected<std::int64_t, CleanFailure> {
            record->add(finding.id);
            gate->pass();
            return finding.size;
        };
    }

    std::shared_ptr<Gate> gate = std::make_shared<Gate>();
};

TEST_F(AppModelClean, WhatGoesToTheTrashIsNotFreedYet) {
    startWith({staged("/a", SafetyLevel::safe, 70), staged("/b")});
    clean({"/a"});
    EXPECT_THAT(ids(), ElementsAre("/b"));
    EXPECT_EQ(app().trashedBytes(), 70);
    EXPECT_EQ(app().freedBytes(), 0);
    EXPECT_EQ(app().alert(), std::nullopt);
    EXPECT_THAT(app().cleaning(), IsEmpty());
}

TEST_F(AppModelClean, WhatIsRemovedForGoodIsFreed) {
    startWith({staged("/a", SafetyLevel::safe, 70)});
    clean({"/a"}, CleanMode::permanent);
    EXPECT_THAT(ids(), IsEmpty());
    EXPECT_EQ(app().trashedBytes(), 0);
    EXPECT_EQ(app().freedBytes(), 70);
}

TEST_F(AppModelClean, ASimulatorIsFreedInBothModes) {
    startWith(
        {simulator(staged("/a", SafetyLevel::safe, 30)), simulator(staged("/b", SafetyLevel::safe, 40))});
    clean({"/a"}, CleanMode::trash);
    EXPECT_EQ(app().freedBytes(), 30);
    clean({"/b"}, CleanMode::permanent);
    EXPECT_EQ(app().freedBytes(), 70);
    EXPECT_EQ(app().trashedBytes(), 0);
}

TEST_F(AppModelClean, WhatCannotBeCleanedIsPassedOverInSilence) {
    Finding kept = staged("/a");
    kept.action = {CleanAction::None{"Sebep."}};
    startWith({kept, staged("/b")});
    clean({"/a", "/gone", "/b"});
    EXPECT_THAT(cleaned->values(), ElementsAre("/b"));
    EXPECT_THAT(ids(), ElementsAre("/a"));
    EXPECT_EQ(app().alert(), std::nullopt);
}

TEST_F(AppModelClean, WhatARunningApplicationUsesStaysAndTheRestGoes) {
    letRun("Tarayıcı");
    startWith({usedBy("/1", {"Başka"}), usedBy("/2", {"Başka", "Tarayıcı"}), staged("/3")});
    clean({"/1", "/2", "/3"});
    EXPECT_THAT(cleaned->values(), ElementsAre("/1", "/3"));
    EXPECT_THAT(ids(), ElementsAre("/2"));
    ASSERT_TRUE(app().alert());
    EXPECT_EQ(app().alert()->title, "ad /2 temizlenemedi");
    EXPECT_EQ(app().alert()->message,
              "Önce şunları kapat: Tarayıcı. Açıkken dosyaları kullanmaya devam edebilirler.");
}

TEST_F(AppModelClean, AllRunningApplicationsAreNamedInTheirOrder) {
    services.runningAmong = [](std::span<const std::string> among) {
        return AppServices::Names(among.begin(), among.end());
    };
    startWith({usedBy("/1", {"Tarayıcı", "Posta", "Takvim"})});
    clean({"/1"});
    EXPECT_EQ(app().alert()->message,
              "Önce şunları kapat: Tarayıcı, Posta, Takvim. Açıkken dosyaları "
              "kullanmaya devam edebilirler.");
}

TEST_F(AppModelClean, WhatARunningProcessUsesStays) {
    const auto asked = std::make_shared<Record<std::string>>();
    services.processesAmong = [asked](std::span<const std::string> among) {
        for (const std::string& name : among)
            asked->add(name);
        return AppServices::Names{"qemu-system-*"};
    };
    Finding machine = usedBy("/1", {"Makineler"});
    machine.processes = {"makineler-bin", "qemu-system-*"};
    Finding mail = usedBy("/2", {});
    mail.processes = {"posta"};
    startWith({machine, mail, staged("/3")});
    clean({"/1", "/2", "/3"});
    EXPECT_THAT(asked->values(), ElementsAre("makineler-bin", "qemu-system-*", "posta"));
    EXPECT_THAT(ids(), ElementsAre("/1"));
    ASSERT_TRUE(app().alert());
    EXPECT_EQ(app().alert()->message,
              "Önce şunları kapat: qemu-system. Açıkken dosyaları kullanmaya devam edebilirler.");
}

TEST_F(AppModelClean, ARunningProcessIsCalledByItsApplicationsName) {
    services.processesAmong = [](std::span<const std::string> among) {
        return AppServices::Names(among.begin(), among.end());
    };
    letRun("Tarayıcı");
    Finding pages = usedBy("/1", {"Tarayıcı", "Visual Studio Code"});
    pages.processes = {"code", "tarayıcı-bin", "wineserver"};
    startWith({pages});
    clean({"/1"});
    EXPECT_THAT(cleaned->values(), IsEmpty());
    ASSERT_TRUE(app().alert());
    EXPECT_EQ(app().alert()->message,
              "Önce şunları kapat: Tarayıcı, Visual Studio Code, wineserver. "
              "Açıkken dosyaları kullanmaya devam edebilirler.");
}

TEST_F(AppModelClean, AFailureLeavesTheFindingAndNamesIt) {
    makeTrashFullFor("/1");
    startWith({staged("/1", SafetyLevel::safe, 5), staged("/2", SafetyLevel::safe, 7)});
    clean({"/1", "/2"});
    EXPECT_THAT(ids(), ElementsAre("/1"));
    EXPECT_EQ(app().trashedBytes(), 7);
    EXPECT_EQ(app().freedBytes(), 0);
    EXPECT_THAT(app().cleaning(), IsEmpty());
    ASSERT_TRUE(app().alert());
    EXPECT_EQ(app().alert()->title, "ad /1 temizlenemedi");
    EXPECT_EQ(app().alert()->message, errorDescription(fullTrash("/1"), ayse()));
}

TEST_F(AppModelClean, OfSeveralFailuresTheLastIsShown) {
    letRun("Tarayıcı");
    makeTrashFullFor("/1");
    startWith({staged("/1"), usedBy("/2", {"Tarayıcı"}), staged("/3")});
    clean({"/1", "/2", "/3"});
    EXPECT_EQ(app().alert()->title, "ad /2 temizlenemedi");
}

TEST_F(AppModelClean, WhatIsLeftIsCalledByThePresentTitle) {
    makeTrashFullFor("/1");
    letRun("Tarayıcı");
    startWith({guessed("/1"), usedBy("/2", {"Tarayıcı"}, VerdictSource::heuristic)});
    renameByModel({"/1", "/2"});
    clean({"/1"});
    ASSERT_TRUE(app().alert());
    EXPECT_EQ(app().alert()->title, "model: /1 temizlenemedi");
    EXPECT_EQ(app().alert()->message, errorDescription(fullTrash("/1"), ayse()));
    clean({"/2"});
    EXPECT_EQ(app().alert()->title, "model: /2 temizlenemedi");
    EXPECT_TRUE(app().alert()->message.starts_with("Önce şunları kapat: Tarayıcı."));
}

TEST_F(AppModelClean, WhatAStopLeavesIsCalledByThePresentTitle) {
    makeCleaningSlow();
    startWith({staged("/1"), guessed("/2")});
    renameByModel({"/2"});
    const auto task = app().clean({"/1", "/2"}, CleanMode::trash);
    ASSERT_TRUE(waitUntil([&] { return gate->arrived() == 1; }));
    app().stopCleaning();
    gate->open();
    ASSERT_TRUE(waitUntil([&] { return task.isReady(); }));
    ASSERT_TRUE(app().alert());
    EXPECT_EQ(app().alert()->message,
              "2 öğeden yalnız 1 tanesi temizlendi. Kalanlar:\n• model: /2: dokunulmadı.");
}

/// A long list, and the largest number cleaned at once.
class AppModelCleanMany : public AppModelClean {
protected:
    void startWithMany() {
        std::vector<Finding> many;
        for (int number = 0; number < 300; ++number) {
            many.push_back(staged("/" + std::to_string(number)));
            all.push_back(many.back().id);
        }
        startWith(std::move(many));
        QObject::connect(&app(), &AppModel::cleaningChanged,
                         [this] { maxAtOnce = std::max(maxAtOnce, app().cleaning().size()); });
    }
    std::vector<std::string> all;
    std::size_t maxAtOnce = 0;
};

TEST_F(AppModelCleanMany, WhatAStopLeavesIsNotMarkedAsBeingCleaned) {
    makeCleaningSlow();
    startWithMany();
    const auto task = app().clean(all, CleanMode::trash);
    ASSERT_TRUE(waitUntil([&] { return gate->arrived() == 1; }));
    app().stopCleaning();
    gate->open();
    ASSERT_TRUE(waitUntil([&] { return task.isReady(); }));
    EXPECT_EQ(maxAtOnce, 1U);
    ASSERT_TRUE(app().alert());
    EXPECT_TRUE(app().alert()->message.starts_with("300 öğeden yalnız 1 tanesi temizlendi. "));
    EXPECT_TRUE(app().alert()->message.ends_with("ve 294 öğe daha"));
}

TEST_F(AppModelCleanMany, ThoseThatHaveGoneDoNotMakeTheRestOneLongTurn) {
    startWithMany();
    std::vector<std::string> chosen;
    for (int number = 0; number < 1023; ++number)  // 1 + 2 + 4 + ... + 512
        chosen.push_back("/gone/" + std::to_string(number));
    chosen.insert(chosen.end(), all.begin(), all.end());
    clean(chosen);
    EXPECT_THAT(ids(), IsEmpty());
    EXPECT_LE(maxAtOnce, 64U);
}

TEST_F(AppModelClean, CleansOneAfterTheOtherInTheGivenOrder) {
    startWith({staged("/1"), staged("/2"), staged("/3")});
    std::vector<std::set<std::string>> states;
    QObject::connect(&app(), &AppModel::cleaningChanged, [&] { states.push_back(app().cleaning()); });
    clean({"/3", "/1", "/3"});
    EXPECT_THAT(cleaned->values(), ElementsAre("/3", "/1"));
    using Ids = std::set<std::string>;
    EXPECT_THAT(states, ElementsAre(Ids{"/3"}, Ids{}, Ids{"/1"}, Ids{}));
}

TEST_F(AppModelClean, TheFindingGoesBeforeTheTotalGrowsAndTheMarkGoesLast) {
    startWith({staged("/1")});
    // Its first signal may come after the scan's result.
    ASSERT_TRUE(waitUntil([&] { return app().aiStatus().isAvailable(); }));
    services.diskInfo = [] { return std::optional<DiskInfo>(); };
    signalled = std::make_shared<Record<std::string>>();
    clean({"/1"});
    EXPECT_THAT(signalled->values(), ElementsAre("cleaning", "findings", "trashedBytes", "cleaning"));
}

TEST_F(AppModelClean, AllFindingsWithTheIdGo) {
    startWith({staged("/1", SafetyLevel::safe, 1), staged("/2"), staged("/1", SafetyLevel::safe, 2)});
    clean({"/1"});
    EXPECT_THAT(ids(), ElementsAre("/2"));
    EXPECT_EQ(app().trashedBytes(), 1);
}

TEST_F(AppModelClean, TheDiskIsLookedAtOnceAtTheEnd) {
    const auto looks = std::make_shared<Record<int>>();
    services.diskInfo = [looks] {
        looks->add(0);
        return std::optional(DiskInfo{.total = 1000, .available = static_cast<std::int64_t>(looks->size())});
    };
    startWith({staged("/1"), staged("/2")});
    const std::size_t before = looks->size();
    clean({"/1", "/2"});
    EXPECT_EQ(looks->size(), before + 1);
    EXPECT_EQ(app().disk()->available, static_cast<std::int64_t>(before + 1));
    clean({});
    EXPECT_EQ(looks->size(), before + 2);
}

TEST_F(AppModelClean, AFindingIsNotCleanedTwiceAtOnce) {
    makeCleaningSlow();
    startWith({usedBy("/1", {"Tarayıcı"})});
    const auto first = app().clean({"/1"}, CleanMode::trash);
    const auto together = app().clean({"/1"}, CleanMode::trash);
    ASSERT_TRUE(waitUntil([&] { return first.isReady() != together.isReady() && gate->arrived() == 1; }));
    EXPECT_EQ(app().cleaning(), std::set<std::string>{"/1"});
    clean({"/1"});
    gate->open();
    ASSERT_TRUE(waitUntil([&] { return first.isReady() && together.isReady(); }));
    EXPECT_THAT(cleaned->values(), ElementsAre("/1"));
    EXPECT_EQ(app().trashedBytes(), 100);
}

TEST_F(AppModelClean, TwoRemovalsTakeTurns) {
    makeCleaningSlow();
    const auto emptied = std::make_shared<Record<int>>();
    services.emptyTrash = [emptied](const Cleaner::TrashContents&, const std::stop_token&) {
        emptied->add(0);
        return Cleaner::EmptiedTrash();
    };
    startWith({staged("/1"), staged("/2")});
    const auto first = app().clean({"/1"}, CleanMode::trash);
    ASSERT_TRUE(waitUntil([&] { return gate->arrived() == 1; }));
    const auto second = app().clean({"/2"}, CleanMode::trash);
    const auto third = app().emptyTrash();
    analyze("/2");
    EXPECT_EQ(gate->arrived(), 1);
    EXPECT_EQ(emptied->size(), 0U);
    gate->open();
    EXPECT_TRUE(waitUntil([&] { return first.isReady() && second.isReady() && third.isReady(); }));
    EXPECT_EQ(emptied->size(), 1U);
    EXPECT_EQ(cleaned->size(), 2U);
}

TEST_F(AppModelClean, WhatAScanReplacedWhileApplicationsWereLookedAtIsCleanedAsItIsNow) {
    services.runningAmong = [gate = gate](std::span<const std::string> among) {
        gate->pass();
        return among[0] == "Yeni" ? AppServices::Names{"Yeni"} : AppServices::Names();
    };
    startWith({usedBy("/1", {"Eski"}), usedBy("/2", {"Eski"})});
    const auto first = app().clean({"/1"}, CleanMode::trash);
    const auto second = app().clean({"/2"}, CleanMode::trash);
    ASSERT_TRUE(waitUntil([&] { return gate->arrived() == 2; }));
    Finding kept = usedBy("/2", {"Eski"});
    kept.action = {CleanAction::None{"Sebep."}};
    scanFor({usedBy("/1", {"Yeni"}), kept});
    gate->open();
    ASSERT_TRUE(waitUntil([&] { return first.isReady() && second.isReady(); }));
    EXPECT_THAT(cleaned->values(), IsEmpty());
    ASSERT_TRUE(app().alert());
    EXPECT_EQ(app().alert()->message,
              "Önce şunları kapat: Yeni. Açıkken dosyaları kullanmaya devam edebilirler.");
}

TEST_F(AppModelClean, WhatIsGoneWhenTheApplicationsAreKnownIsNotCleaned) {
    services.runningAmong = [gate = gate](std::span<const std::string> among) {
        gate->pass();
        return AppServices::Names(among.begin(), among.end());
    };
    startWith({usedBy("/1", {"Tarayıcı"})});
    const auto task = app().clean({"/1"}, CleanMode::trash);
    ASSERT_TRUE(waitUntil([&] { return gate->arrived() == 1; }));
    scanFor({});
    gate->open();
    ASSERT_TRUE(waitUntil([&] { return task.isReady(); }));
    EXPECT_THAT(cleaned->values(), IsEmpty());
    EXPECT_EQ(app().alert(), std::nullopt);
}

TEST_F(AppModelClean, TheVerdictOfWhatIsCleanedStaysRemembered) {
    startWith({staged("/1")});
    app().setLevel(SafetyLevel::regenerable, "/1");
    clean({"/1"});
    EXPECT_TRUE(app().store().entries().contains("/1"));
}

TEST_F(AppModelClean, AnEmptiedTrashFreesWhatWasInItAndLeavesTheList) {
    std::vector<Finding> findings = scannedTrash();
    ASSERT_THAT(findings, ElementsAre(testing::Field(&Finding::id, ayse().trash)));
    const std::string above(Paths::parent(ayse().trash));
    findings.insert(findings.end(), {staged("/1", SafetyLevel::safe, 30), staged("/2", SafetyLevel::safe, 4),
                                     staged("/3"), staged(above, SafetyLevel::unknown)});
    startWith(std::move(findings));
    clean({"/1"}, CleanMode::trash);
    clean({"/2"}, CleanMode::permanent);
    emptyTrash();
    EXPECT_EQ(app().freedBytes(), 34);
    EXPECT_EQ(app().trashedBytes(), 0);
    EXPECT_THAT(ids(), ElementsAre("/3", above));
    EXPECT_EQ(app().alert(), std::nullopt);
}

TEST_F(AppModelClean, ATrashThatCannotBeEmptiedLeavesTheTotals) {
    const CleanFailure failure = CleanError{CleanError::Failed{"Olmadı."}};
    services.emptyTrash = [failure](const Cleaner::TrashContents&, const std::stop_token&) {
        return Cleaner::EmptiedTrash{.itemsLeft = 1, .failure = failure};
    };
    const auto looks = std::make_shared<Record<int>>();
    services.diskInfo = [looks] {
        looks->add(0);
        return std::optional<DiskInfo>();
    };
    startWith({staged("/1", SafetyLevel::safe, 30), staged(ayse().trash)});
    clean({"/1"});
    const std::size_t before = looks->size();
    emptyTrash();
    EXPECT_EQ(app().freedBytes(), 0);
    EXPECT_EQ(app().trashedBytes(), 30);
    EXPECT_THAT(ids(), ElementsAre(ayse().trash));
    ASSERT_TRUE(app().alert());
    EXPECT_EQ(app().alert()->title, "Çöp kutusu boşaltılamadı");
    EXPECT_EQ(app().alert()->message, "Olmadı.");
    EXPECT_EQ(looks->size(), before + 1);
}

TEST_F(AppModelClean, ATrashThatHoldsMoreIsEmptiedOnlyWhenTheAnswerIsYes) {
    startWith({staged("/1", SafetyLevel::safe, 90), staged(ayse().trash)});
    clean({"/1"});
    trash->others = 420;
    emptyTrash();
    ASSERT_TRUE(app().trashQuestion());
    EXPECT_EQ(app().trashQuestion()->contents->bytes, 510);
    EXPECT_EQ(app().trashQuestion()->contents->bytesFromHere, 90);
    EXPECT_EQ(trash->others, 420);
    EXPECT_EQ(app().trashedBytes(), 90);
    const QUuid asked = app().trashQuestion()->id;
    runToEnd(app().emptyTrashAsAsked(QUuid::createUuid()));
    EXPECT_EQ(trash->others, 420) << "the answer to another question";
    app().dismissTrashQuestion();
    runToEnd(app().emptyTrashAsAsked(asked));
    EXPECT_EQ(trash->others, 420) << "no is no";
    emptyTrash();
    ASSERT_TRUE(app().trashQuestion());
    runToEnd(app().emptyTrashAsAsked(app().trashQuestion()->id));
    EXPECT_EQ(app().trashQuestion(), std::nullopt);
    EXPECT_EQ(trash->others, 0);
    EXPECT_EQ(app().freedBytes(), 510);
    EXPECT_EQ(app().trashedBytes(), 0);
    EXPECT_THAT(ids(), IsEmpty());
}

TEST_F(AppModelClean, TheTrashAsAFindingIsAlwaysAskedAboutAndNeverCleaned) {
    startWith(
        {staged("/1", SafetyLevel::safe, 90), test::trash(staged("/disk/.Trash-1", SafetyLevel::safe, 500))});
    clean({"/1", "/disk/.Trash-1"});
    clean({"/disk/.Trash-1"}, CleanMode::permanent);
    EXPECT_THAT(cleaned->values(), ElementsAre("/1"));
    runToEnd(app().askToEmptyTrash());
    ASSERT_TRUE(app().trashQuestion()) << "though all in it is from here";
    EXPECT_EQ(app().freedBytes(), 0);
    runToEnd(app().emptyTrashAsAsked(app().trashQuestion()->id));
    EXPECT_EQ(app().freedBytes(), 90);
    EXPECT_THAT(ids(), IsEmpty());
}

TEST_F(AppModelClean, ATrashThatWentInPartIsThatMuchSmaller) {
    services.emptyTrash = [](const Cleaner::TrashContents&, const std::stop_token&) {
        return Cleaner::EmptiedTrash{.bytes = 300, .itemsLeft = 1};
    };
    startWith({test::trash(staged("/disk/.Trash-1", SafetyLevel::safe, 500))});
    trash->others = 500;
    runToEnd(app().askToEmptyTrash());
    runToEnd(app().emptyTrashAsAsked(app().trashQuestion()->id));
    ASSERT_THAT(ids(), ElementsAre("/disk/.Trash-1"));
    EXPECT_EQ(app().findings().front()->size, 200);
}

TEST_F(AppModelClean, ATrashThatCannotBeToldIsAskedAbout) {
    services.trashContents = [](std::span<const platform::TrashedItem>) {
        return Cleaner::TrashContents{.isComplete = false};
    };
    startWith({});
    emptyTrash();
    EXPECT_TRUE(app().trashQuestion());
}

TEST_F(AppModelClean, WhatHasComeSinceTheQuestionIsAskedAboutInItsTurn) {
    services.emptyTrash = [trash = trash](const Cleaner::TrashContents& asked, const std::stop_token&) {
        trash->fromHere = 0;
        trash->others = 7;
        return Cleaner::EmptiedTrash{.bytes = asked.bytes, .itemsNew = 1};
    };
    startWith({staged("/1", SafetyLevel::safe, 90), staged(ayse().trash)});
    clean({"/1"});
    trash->others = 420;
    emptyTrash();
    const QUuid first = app().trashQuestion()->id;
    runToEnd(app().emptyTrashAsAsked(first));
    EXPECT_EQ(app().freedBytes(), 510);
    EXPECT_EQ(app().trashedBytes(), 0);
    EXPECT_THAT(ids(), ElementsAre(ayse().trash)) << "it is not empty";
    ASSERT_TRUE(app().trashQuestion());
    EXPECT_NE(app().trashQuestion()->id, first);
    EXPECT_EQ(app().trashQuestion()->contents->bytes, 7);
    EXPECT_EQ(app().alert(), std::nullopt);
}

TEST_F(AppModelClean, OfATrashThatWentInPartCountsWhatWent) {
    services.emptyTrash = [trash = trash](const Cleaner::TrashContents&, const std::stop_token&) {
        trash->fromHere = 10;
        return Cleaner::EmptiedTrash{
            .bytes = 20, .itemsLeft = 2, .failure = CleanError{CleanError::Failed{"Olmadı."}}};
    };
    startWith({staged("/1", SafetyLevel::safe, 30), staged(ayse().trash)});
    clean({"/1"});
    emptyTrash();
    EXPECT_EQ(app().freedBytes(), 20);
    EXPECT_EQ(app().trashedBytes(), 10);
    EXPECT_THAT(ids(), ElementsAre(ayse().trash));
    ASSERT_TRUE(app().alert());
    EXPECT_EQ(app().alert()->message, "Olmadı.\nÇöp kutusunda 2 öğe kaldı.");
}

TEST_F(AppModelClean, WhileTheDesktopEmptiesOtherRemovalsGoOn) {
    services.emptyTrash = [](const Cleaner::TrashContents&, const std::stop_token&) {
        return Cleaner::EmptiedTrash{
            .bytes = 5, .itemsLeft = 1, .failure = CleanError{}, .mayAskDesktop = true};
    };
    services.emptyTrashByDesktop = [gate = gate](const Cleaner::TrashContents&, const std::stop_token& stop) {
        gate->pass(stop);
        return Cleaner::EmptiedTrash{.bytes = 25};
    };
    startWith({staged("/1", SafetyLevel::safe, 30), staged("/2", SafetyLevel::safe, 4)});
    clean({"/1"});
    const auto emptying = app().emptyTrash();
    ASSERT_TRUE(waitUntil([&] { return gate->arrived() == 1; }));
    clean({"/2"}, CleanMode::permanent);
    EXPECT_EQ(app().freedBytes(), 4);
    gate->open();
    ASSERT_TRUE(waitUntil([&] { return emptying.isReady(); }));
    EXPECT_EQ(app().freedBytes(), 34);
    EXPECT_EQ(app().trashedBytes(), 0);
    EXPECT_EQ(app().alert(), std::nullopt);
}

TEST_F(AppModelClean, WhatStaysIsToldAlsoWhenTheDesktopIsNotAskedAfterAll) {
    services.emptyTrash = [](const Cleaner::TrashContents&, const std::stop_token&) {
        return Cleaner::EmptiedTrash{
            .itemsLeft = 1, .failure = CleanError{CleanError::Failed{"Olmadı."}}, .mayAskDesktop = true};
    };
    services.emptyTrashByDesktop = [](const Cleaner::TrashContents&, const std::stop_token&) {
        return Cleaner::EmptiedTrash{.itemsLeft = 1, .itemsNew = 1};
    };
    startWith({});
    emptyTrash();
    ASSERT_TRUE(app().alert());
    EXPECT_EQ(app().alert()->message, "Olmadı.");
}

TEST_F(AppModelClean, WhatWasTrashedIsKnownAgainWhenItIsEmptiedAndRecordedOnceABatch) {
    const auto known = std::make_shared<Record<std::size_t>>();
    const auto recorded = std::make_shared<Record<std::size_t>>();
    services.clean = [](const Finding& finding, CleanMode,
                        CleanRun& run) -> std::expected<std::int64_t, CleanFailure> {
        run.trashed = {{.origin = finding.id + "/x", .location = "/t/x", .identity = {}}};
        if (finding.id == "/2")
            return std::unexpected(CleanError{CleanError::Failed{"yarıda"}});
        return finding.size;
    };
    services.trashContents = [known](std::span<const platform::TrashedItem> fromHere) {
        known->add(fromHere.size());
        return Cleaner::TrashContents();
    };
    services.recordTrashed = [recorded](std::span<const platform::TrashedItem> items) {
        recorded->add(items.size());
    };
    startWith({staged("/1"), staged("/2")});
    clean({"/1", "/2"});
    ASSERT_TRUE(waitUntil([&] { return recorded->size() == 1; }));
    EXPECT_THAT(recorded->values(), ElementsAre(2U)) << "also of what failed later";
    emptyTrash();
    emptyTrash();
    EXPECT_THAT(known->values(), ElementsAre(2U, 0U));
}

TEST_F(AppModelClean, TotalsThatOverflowEndTheProgram) {
    startWith(
        {staged("/1", SafetyLevel::safe, most), staged("/2"), simulator(staged("/3", SafetyLevel::safe, 1))});
    clean({"/1"}, CleanMode::trash);
    EXPECT_EQ(app().trashedBytes(), most);
    EXPECT_DEATH(clean({"/2"}, CleanMode::trash), "");
    clean({"/3"}, CleanMode::trash);
    EXPECT_DEATH(emptyTrash(), "");
}

TEST_F(AppModelClean, CleaningDoesNotWaitForAScanAndWhatIsGoneDoesNotComeBackWithIt) {
    startWith({staged("/1"), staged("/2")});
    const auto scanGate = std::make_shared<Gate>();
    stage({.findings = {staged("/1"), staged("/1/in it"), staged("/2"), staged("/10")}, .gate = scanGate});
    app().scan();
    clean({"/1"});
    EXPECT_THAT(ids(), ElementsAre("/2"));
    EXPECT_EQ(app().phase(), AppModel::Phase::scanning);
    scanGate->open();
    ASSERT_TRUE(waitUntil([&] { return app().phase() == AppModel::Phase::done; }));
    EXPECT_THAT(ids(), ElementsAre("/2", "/10"));
    scanFor({staged("/1")});
    EXPECT_THAT(ids(), ElementsAre("/1")) << "a scan that began later counts";
}

/// A scan during which something is cleaned, and the follow-up scan, if one is started.
class AppModelCleanedMeanwhile : public AppModelClean {
protected:
    void scanAndClean(std::vector<Finding> stale, const std::string& id, CleanMode mode = CleanMode::trash) {
        const auto first = std::make_shared<Gate>();
        stage({.findings = std::move(stale), .gate = first});
        stage({.findings = {staged("/again")}});
        app().scan();
        ASSERT_TRUE(waitUntil([&] { return first->arrived() == 1; }));
        clean({id}, mode);
        first->open();
        ASSERT_TRUE(waitUntil([&] { return app().phase() == AppModel::Phase::done; }));
    }
};

TEST_F(AppModelCleanedMeanwhile, WhatIsThereAgainIsScannedAgain) {
    tree.add({folder("cache")});
    startWith({staged(tree.path("cache")), staged("/other")});
    scanAndClean({staged(tree.path("cache")), staged("/other")}, tree.path("cache"));
    EXPECT_THAT(ids(), ElementsAre("/again"));
}

TEST_F(AppModelCleanedMeanwhile, WhatHoldsItIsScannedAgain) {
    startWith({staged("/a/b")});
    scanAndClean({staged("/a")}, "/a/b");
    EXPECT_THAT(ids(), ElementsAre("/again"));
}

TEST_F(AppModelCleanedMeanwhile, AGroupThatHasLostSomeOfItsMembersIsScannedAgain) {
    services.clean = [](const Finding&, CleanMode,
                        CleanRun& run) -> std::expected<std::int64_t, CleanFailure> {
        run.done = 1;
        return std::unexpected(fullTrash("/b"));
    };
    Finding group = staged("/a");
    group.urls = {"/a", "/b", "/c"};
    startWith({group});
    scanAndClean({group, staged("/d")}, "/a");
    EXPECT_THAT(ids(), ElementsAre("/again"));
}

TEST_F(AppModelCleanedMeanwhile, WhatCouldNotBeRemovedForGoodMayHaveLostAPartAndIsScannedAgain) {
    makeTrashFullFor("/a");
    startWith({staged("/a")});
    scanAndClean({staged("/a")}, "/a", CleanMode::permanent);
    EXPECT_THAT(ids(), ElementsAre("/again"));
}

TEST_F(AppModelCleanedMeanwhile, WhatCouldNotBeMovedToTheTrashStaysAsItWasFound) {
    makeTrashFullFor("/a");
    startWith({staged("/a")});
    scanAndClean({staged("/a"), staged("/b")}, "/a");
    EXPECT_THAT(ids(), ElementsAre("/a", "/b"));
}

TEST_F(AppModelCleanedMeanwhile, AGroupGoesWhenAllOfItHasGone) {
    Finding group = staged("/a");
    group.urls = {"/a", "/b"};
    startWith({group});
    scanAndClean({group, staged("/b/c"), staged("/d")}, "/a");
    EXPECT_THAT(ids(), ElementsAre("/d"));
}

TEST_F(AppModelCleanedMeanwhile, ATrashThatWasEmptiedIsScannedAgain) {
    startWith({staged("/1")});
    const auto first = std::make_shared<Gate>();
    stage({.findings = {staged(ayse().trash)}, .gate = first});
    stage({.findings = {staged("/again")}});
    app().scan();
    ASSERT_TRUE(waitUntil([&] { return first->arrived() == 1; }));
    emptyTrash();
    first->open();
    ASSERT_TRUE(waitUntil([&] { return app().phase() == AppModel::Phase::done; }));
    EXPECT_THAT(ids(), ElementsAre("/again"));
}

/// A scan that ends during a removal.
class AppModelCleanedAcross : public AppModelClean {
protected:
    /// A follow-up scan would find "/again".
    void scanWhileCleaning(std::vector<Finding> found, const std::string& id) {
        const auto task = app().clean({id}, CleanMode::permanent);
        ASSERT_TRUE(waitUntil([&] { return gate->arrived() == 1; }));
        scanFor(std::move(found));
        stage({.findings = {staged("/again")}});
        gate->open();
        ASSERT_TRUE(waitUntil([&] { return task.isReady(); }));
        ASSERT_TRUE(waitUntil([&] { return app().phase() == AppModel::Phase::done; }));
    }
};

TEST_F(AppModelCleanedAcross, WhatWasCleanedGoesFromTheNewListToo) {
    makeCleaningSlow();
    startWith({staged("/a")});
    scanWhileCleaning({staged("/a"), staged("/b"), staged("/ab")}, "/a");
    EXPECT_THAT(ids(), ElementsAre("/b", "/ab"));
}

TEST_F(AppModelCleanedAcross, WhatHoldsItIsScannedAgain) {
    makeCleaningSlow();
    startWith({staged("/a/b")});
    scanWhileCleaning({staged("/a")}, "/a/b");
    EXPECT_THAT(ids(), ElementsAre("/again"));
}

TEST_F(AppModelCleanedAcross, AGroupThatHasNewMembersDoesNotGoUnseen) {
    makeCleaningSlow();
    Finding group = staged("/a");
    group.urls = {"/a", "/b"};
    startWith({group});
    group.urls.emplace_back("/c");
    scanWhileCleaning({group}, "/a");
    EXPECT_THAT(ids(), ElementsAre("/again"));
}

TEST_F(AppModelCleanedAcross, WhatMayHaveLostAPartIsScannedAgain) {
    services.clean = [gate = gate](const Finding&, CleanMode,
                                   CleanRun&) -> std::expected<std::int64_t, CleanFailure> {
        gate->pass();
        return std::unexpected(fullTrash("/a"));
    };
    startWith({staged("/a")});
    scanWhileCleaning({staged("/a")}, "/a");
    EXPECT_THAT(ids(), ElementsAre("/again"));
}

TEST_F(AppModelClean, ManyFindingsAreToldOfTogetherAndInTheirOrder) {
    std::vector<Finding> many;
    std::vector<std::string> chosen;
    for (int number = 0; number < 1000; ++number) {
        many.push_back(
            usedBy("/" + std::to_string(number), {"Posta", number == 500 ? "Takvim" : "Tarayıcı"}));
        if (number % 2 == 0)
            chosen.push_back(many.back().id);
    }
    letRun("Takvim");
    startWith(std::move(many));
    std::size_t changes = 0;
    QObject::connect(&app(), &AppModel::findingsChanged, [&] { ++changes; });
    clean(chosen);
    EXPECT_EQ(app().findings().size(), 501U);
    EXPECT_FALSE(app().finding("/0"));
    EXPECT_TRUE(app().finding("/500"));
    EXPECT_TRUE(app().finding("/999"));
    EXPECT_EQ(app().total(SafetyLevel::safe), 50'100);
    EXPECT_EQ(app().trashedBytes(), 49'900);
    EXPECT_EQ(app().alert()->title, "ad /500 temizlenemedi");
    EXPECT_LT(changes, 250U) << "each change is heard of by all that shows the list";
    chosen.erase(std::ranges::find(chosen, "/500"));
    EXPECT_EQ(cleaned->values(), chosen);
}

}  // namespace
}  // namespace ulvak
