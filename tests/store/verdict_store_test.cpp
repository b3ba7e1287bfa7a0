#include "store/verdict_store.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <chrono>
#include <string>
#include <type_traits>
#include <utility>

#include "platform/files.h"
#include "support/environment.h"
#include "support/findings.h"
#include "support/temp_tree.h"

namespace ulvak {
namespace {

using test::folder;
using test::modeOf;
using test::TempTree;
using test::textFile;
using test::textOf;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

static_assert(!std::is_copy_constructible_v<VerdictStore> && !std::is_copy_assignable_v<VerdictStore>);

constexpr std::int64_t megabyte = 1'000'000;
const FileTime someDate = std::chrono::sys_days{std::chrono::year{2025} / 11 / 28} + std::chrono::hours(5);

const Verdict userVerdict{.level = SafetyLevel::keep,
                          .title = "Videolarım",
                          .explanation = "Benim.",
                          .source = VerdictSource::user};
const Verdict modelVerdict{.level = SafetyLevel::regenerable,
                           .title = "Önbellek",
                           .explanation = "Yeniden iner.",
                           .source = VerdictSource::ai,
                           .confidence = 85};
const Verdict guess{.level = SafetyLevel::caution,
                    .title = "Klasör",
                    .explanation = "Belki.",
                    .source = VerdictSource::heuristic};
const Verdict ruled{
    .level = SafetyLevel::safe, .title = "Kayıtlar", .explanation = "Gider.", .source = VerdictSource::rule};

/// A finding as an analysis returns it.
Finding findingOf(std::int64_t size, const Verdict& original = guess, const std::string& id = "/a") {
    Finding finding{.id = id, .size = size};
    setCurrentVerdict(finding, original);
    return test::asFound(std::move(finding));
}

class VerdictStoreTest : public testing::Test {
protected:
    [[nodiscard]] std::string path() const { return tree.path("Ulvak/verdicts.json"); }

    /// The verdict a later run gives a finding for which `verdict` was stored at `storedSize`.
    [[nodiscard]] Verdict afterwards(const Verdict& verdict, std::int64_t storedSize, Finding now) const {
        VerdictStore(path()).save(verdict, findingOf(storedSize));
        VerdictStore(path()).apply(now);
        return currentVerdict(now);
    }

    TempTree tree;
};

TEST_F(VerdictStoreTest, IsEmptyWithoutAFileAndMakesNoneByReading) {
    const VerdictStore store(path());
    EXPECT_THAT(store.entries(), IsEmpty());
    EXPECT_EQ(store.path(), path());
    EXPECT_THAT(platform::listNames(tree.path("Ulvak")), IsEmpty()) << "the folder is there";
}

TEST_F(VerdictStoreTest, MakesItsFolderWithThoseAboveForThisUserAlone) {
    const VerdictStore store(tree.path("x/y/Ulvak/verdicts.json"));
    for (const char* made : {"x", "x/y", "x/y/Ulvak"})
        EXPECT_EQ(modeOf(tree.path(made)), 0700U) << made;
}

TEST_F(VerdictStoreTest, AFolderThatCannotBeMadeIsNoError) {
    tree.add({textFile("Ulvak", "a file in its place")});
    VerdictStore store(path());
    store.save(userVerdict, findingOf(1));
    EXPECT_THAT(store.entries(), SizeIs(1)) << "remembered until the program ends";
    EXPECT_EQ(textOf(tree.path("Ulvak")), "a file in its place");
}

TEST_F(VerdictStoreTest, SavesTheVerdictWithTheFindingsSizeAndTheTime) {
    VerdictStore store(path(), [] { return someDate; });
    store.save(modelVerdict, findingOf(4096));
    ASSERT_THAT(store.entries(), SizeIs(1));
    EXPECT_EQ(store.entries().at("/a"),
              (VerdictEntry{.verdict = modelVerdict, .size = 4096, .date = StoredDate::from(someDate)}));
    EXPECT_EQ(textOf(path()),
              R"({"/a":{"verdict":{"level":"regenerable","title":"Önbellek","explanation":"Yeniden iner.",)"
              R"("source":"ai","confidence":85},"size":4096,"date":785998800.0}})");
}

TEST_F(VerdictStoreTest, TakesTheTimeFromTheSystemUnlessToldOtherwise) {
    const auto seconds = [] {
        const auto now = std::chrono::system_clock::now();
        return StoredDate::from(std::chrono::floor<FileTime::duration>(now)).secondsSince2001;
    };
    VerdictStore store(path());
    const double before = seconds();
    store.save(userVerdict, findingOf(1));
    const double stored = store.entries().at("/a").date.secondsSince2001;
    EXPECT_LE(before, stored);
    EXPECT_LE(stored, seconds());
}

TEST_F(VerdictStoreTest, TheNextRunKnowsWhatThisOneSaved) {
    VerdictStore store(path(), [] { return someDate; });
    store.save(userVerdict, findingOf(1, guess, "/a"));
    store.save(modelVerdict, findingOf(2, guess, "/b"));
    store.save(modelVerdict, findingOf(3, guess, "/a\xff"));
    store.save(modelVerdict, findingOf(4, guess, "/a"));
    EXPECT_EQ(VerdictStore(path()).entries(), store.entries());
    EXPECT_EQ(store.entries().at("/a").verdict, modelVerdict) << "a later verdict takes the place";
    store.remove("/a");
    EXPECT_EQ(VerdictStore(path()).entries(), store.entries());
    EXPECT_FALSE(store.entries().contains("/a"));
    EXPECT_THAT(store.entries(), SizeIs(2));
}

TEST_F(VerdictStoreTest, RemovingAnIdWithoutAnEntryStillRewritesTheFile) {
    VerdictStore store(path());
    store.save(userVerdict, findingOf(1));
    tree.add("Ulvak", {textFile("gone", "")});
    ASSERT_EQ(::rename(tree.path("Ulvak/gone").c_str(), path().c_str()), 0);
    store.remove("/absent");
    EXPECT_EQ(VerdictStore(path()).entries(), store.entries());
    EXPECT_THAT(store.entries(), SizeIs(1));
}

TEST_F(VerdictStoreTest, KeepsEntriesForPathsThatNoLongerExist) {
    VerdictStore(path()).save(userVerdict, findingOf(1, guess, tree.path("never-there")));
    VerdictStore(path()).save(userVerdict, findingOf(1, guess, "/another"));
    EXPECT_TRUE(VerdictStore(path()).entries().contains(tree.path("never-there")));
}

TEST_F(VerdictStoreTest, AMalformedFileIsAnEmptyStoreAndTheNextSaveAFreshFile) {
    for (const std::string text : {"", "{", "[]", "null", "garbage \xff", R"({"/b":{"size":1}})"}) {
        tree.add({folder("Ulvak" + std::to_string(text.size()), {textFile("verdicts.json", text)})});
        const std::string file = tree.path("Ulvak" + std::to_string(text.size()) + "/verdicts.json");
        VerdictStore store(file);
        EXPECT_THAT(store.entries(), IsEmpty()) << text;
        EXPECT_EQ(textOf(file), text) << "reading changes nothing";
        store.save(userVerdict, findingOf(1));
        EXPECT_EQ(VerdictStore(file).entries(), store.entries()) << text;
        EXPECT_THAT(store.entries(), SizeIs(1)) << text;
    }
}

TEST_F(VerdictStoreTest, WhatIsNoFileIsAnEmptyStoreAndNothingIsWaitedFor) {
    tree.add({folder("Ulvak", {test::fifo("verdicts.json")}), folder("b", {folder("verdicts.json")}),
              folder("c", {test::link("verdicts.json", "/dev/zero")}),
              folder("d", {test::sparseFile("verdicts.json", 300'000'000)})});
    for (const char* name : {"Ulvak", "b", "c", "d"})
        EXPECT_THAT(VerdictStore(tree.path(std::string(name) + "/verdicts.json")).entries(), IsEmpty())
            << name;
}

TEST_F(VerdictStoreTest, AModelsVerdictAppliesWhileTheSizeIsBetweenHalfAndDouble) {
    for (const std::int64_t size : {60, 190, 100, 51, 199})
        EXPECT_EQ(afterwards(modelVerdict, 100 * megabyte, findingOf(size * megabyte)), modelVerdict) << size;
    for (const std::int64_t size : {50, 200, 49, 201, 0, 1'000'000})
        EXPECT_EQ(afterwards(modelVerdict, 100 * megabyte, findingOf(size * megabyte)), guess) << size;
    EXPECT_EQ(afterwards(modelVerdict, 100 * megabyte, findingOf(50 * megabyte + 1)), modelVerdict);
    EXPECT_EQ(afterwards(modelVerdict, 100 * megabyte, findingOf(200 * megabyte - 1)), modelVerdict);
}

TEST_F(VerdictStoreTest, AStoredSizeOfZeroCountsAsOneByte) {
    EXPECT_EQ(afterwards(modelVerdict, 0, findingOf(1)), modelVerdict);
    EXPECT_EQ(afterwards(modelVerdict, 0, findingOf(0)), guess);
    EXPECT_EQ(afterwards(modelVerdict, 0, findingOf(2)), guess);
    EXPECT_EQ(afterwards(modelVerdict, -5, findingOf(1)), modelVerdict);
}

TEST_F(VerdictStoreTest, TheUsersVerdictAppliesWhateverTheSizes) {
    for (const std::int64_t stored : {std::int64_t{0}, 100 * megabyte, INT64_MAX}) {
        for (const std::int64_t size : {std::int64_t{0}, std::int64_t{1}, 50 * megabyte, INT64_MAX})
            EXPECT_EQ(afterwards(userVerdict, stored, findingOf(size)), userVerdict) << stored << " " << size;
    }
}

TEST_F(VerdictStoreTest, AModelsVerdictNeverOverridesADefiniteRuleOutsidePersonalAreas) {
    Finding finding = findingOf(100, ruled);
    EXPECT_EQ(afterwards(modelVerdict, 100, finding), ruled);
    finding.isPersonal = true;
    EXPECT_EQ(afterwards(modelVerdict, 100, finding), modelVerdict);
}

TEST_F(VerdictStoreTest, AModelsVerdictAppliesWhereTheRuleIsUnsureOrTheNameWasGuessed) {
    Verdict unsure = ruled;
    unsure.level = SafetyLevel::unknown;
    EXPECT_EQ(afterwards(modelVerdict, 100, findingOf(100, unsure)), modelVerdict);
    EXPECT_EQ(afterwards(modelVerdict, 100, findingOf(100, guess)), modelVerdict);
}

TEST_F(VerdictStoreTest, WhatTheFindingShowsNowDoesNotMatterOnlyWhatTheAnalysisSaid) {
    Finding relabelled = findingOf(100, ruled);
    relabel(relabelled, SafetyLevel::unknown);
    const Verdict shown = currentVerdict(relabelled);
    EXPECT_EQ(afterwards(modelVerdict, 100, relabelled), shown);
}

TEST_F(VerdictStoreTest, TheUsersVerdictOverridesADefiniteRule) {
    EXPECT_EQ(afterwards(userVerdict, 100, findingOf(100, ruled)), userVerdict);
}

TEST_F(VerdictStoreTest, StoredVerdictsOfRulesAndGuessesAreNeverApplied) {
    for (const Verdict& stored : {ruled, guess}) {
        Verdict other = stored;
        other.title = "Başka";
        EXPECT_EQ(afterwards(other, 100, findingOf(100, guess)), guess);
    }
}

TEST_F(VerdictStoreTest, AFindingWithoutAnEntryStaysAsItWas) {
    EXPECT_EQ(afterwards(userVerdict, 100, findingOf(100, guess, "/other")), guess);
    EXPECT_EQ(afterwards(userVerdict, 100, findingOf(100, guess, "/a/")), guess)
        << "ids are compared by bytes";
    Finding finding = findingOf(100);
    VerdictStore(tree.path("none/verdicts.json")).apply(finding);
    EXPECT_EQ(currentVerdict(finding), guess);
}

TEST_F(VerdictStoreTest, ApplyingChangesTheCurrentVerdictAndNothingElse) {
    VerdictStore store(path());
    Finding finding = findingOf(100, ruled);
    finding.isPersonal = true;
    finding.confidence = 12;
    finding.action = {CleanAction::None{"Sistem dosyalarını Ulvak silmez."}};
    finding.children = {{.name = "b", .size = 5, .isDirectory = true}};
    finding.groupKey = "xrgpu";
    for (const Verdict& verdict : {userVerdict, modelVerdict}) {
        store.save(verdict, finding);
        finding.size = 120;
        store.apply(finding);
        EXPECT_EQ(currentVerdict(finding), verdict) << "an absent confidence, too";
        EXPECT_EQ(finding.original, ruled);
        EXPECT_EQ(finding.size, 120);
        EXPECT_EQ(finding.action, (CleanAction{CleanAction::None{"Sistem dosyalarını Ulvak silmez."}}));
        EXPECT_EQ(finding.children,
                  (std::vector<ChildSummary>{{.name = "b", .size = 5, .isDirectory = true}}));
        EXPECT_EQ(finding.groupKey, "xrgpu");
        EXPECT_TRUE(finding.isPersonal);
        EXPECT_EQ(finding.id, "/a");
    }
}

TEST_F(VerdictStoreTest, ALabelOfANameThatIsNotUtf8IsThereOnTheNextRun) {
    VerdictStore(path()).save(userVerdict, findingOf(5, guess, "/foto\xff"));
    VerdictStore(path()).save(modelVerdict, findingOf(5, guess, "/foto\xfe"));
    Finding finding = findingOf(5, guess, "/foto\xff");
    VerdictStore(path()).apply(finding);
    EXPECT_EQ(currentVerdict(finding), userVerdict);
}

TEST_F(VerdictStoreTest, TellsItsObserverOfEveryChangeAfterTheFileIsWritten) {
    VerdictStore store(path());
    std::vector<std::size_t> seen;
    store.observe([&] {
        EXPECT_EQ(VerdictStore(path()).entries(), store.entries());
        seen.push_back(store.entries().size());
    });
    store.save(userVerdict, findingOf(1, guess, "/a"));
    store.save(modelVerdict, findingOf(1, guess, "/b"));
    store.remove("/absent");
    store.remove("/a");
    Finding finding = findingOf(1, guess, "/b");
    store.apply(finding);
    EXPECT_THAT(seen, ElementsAre(1, 2, 1));
}

TEST_F(VerdictStoreTest, TheFileIsForThisUserAloneAndNothingElseIsLeftBesideIt) {
    VerdictStore store(path());
    store.save(userVerdict, findingOf(1));
    EXPECT_EQ(modeOf(path()), 0600U);
    EXPECT_THAT(platform::listNames(tree.path("Ulvak")), ElementsAre("verdicts.json"));
}

TEST_F(VerdictStoreTest, WritesThroughALinkToWhereItLeads) {
    tree.add({folder("sync", {textFile("mine.json", "{}")}), folder("Ulvak")});
    tree.add("Ulvak", {test::link("verdicts.json", "../sync/mine.json")});
    VerdictStore store(path());
    store.save(userVerdict, findingOf(1));
    EXPECT_EQ(VerdictStore(tree.path("sync/mine.json")).entries(), store.entries());
    EXPECT_EQ(VerdictStore(path()).entries(), store.entries());
}

TEST(VerdictStorePath, LiesAmongTheDataOfTheUsersApplications) {
    const UserFolders ayse{.home = "/home/ayse"};
    {
        const test::ScopedEnvironment environment({{"XDG_DATA_HOME", "/data/"}});
        EXPECT_EQ(VerdictStore::defaultPath(ayse), "/data/Ulvak/verdicts.json");
    }
    const test::ScopedEnvironment environment({{"XDG_DATA_HOME", "not/absolute"}});
    EXPECT_EQ(VerdictStore::defaultPath(ayse), "/home/ayse/.local/share/Ulvak/verdicts.json");
}

}  // namespace
}  // namespace ulvak
