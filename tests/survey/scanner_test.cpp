#include "survey/scanner.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <set>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "support/environment.h"
#include "support/isolation.h"
#include "support/temp_tree.h"

namespace ulvak {
namespace {

using test::file;
using test::folder;
using test::link;
using test::ScopedEnvironment;
using test::TempTree;

struct Scan {
    ScanProgress progress;
    std::vector<Finding> findings;

    explicit Scan(const UserFolders& folders, std::stop_token stop = {}) {
        findings = Scanner{progress, folders}.run(std::move(stop)).value();
    }

    [[nodiscard]] std::set<std::string> ids() const {
        std::set<std::string> result;
        for (const Finding& finding : findings)
            EXPECT_TRUE(result.insert(finding.id).second) << finding.id << " is listed twice";
        return result;
    }
    [[nodiscard]] const Finding& at(const std::string& id) const {
        static const Finding none;
        const auto found = std::ranges::find(findings, id, &Finding::id);
        EXPECT_NE(found, findings.end()) << id;
        return found == findings.end() ? none : *found;
    }
};

/// A user's folders with this home and temporary folder.
UserFolders user(const std::string& home, const std::string& temp) {
    const ScopedEnvironment environment({{"HOME", home}, {"TMPDIR", temp}, {"XDG_DATA_HOME", std::nullopt}});
    return UserFolders::ofCurrentUser();
}

TEST(Scanner, RootsAndExclusionsAreFixed) {
    const UserFolders folders{.home = "/home/ayşe", .temp = "/tmp", .cache = "/C", .trash = ""};
    EXPECT_THAT(Scanner::roots(folders),
                testing::ElementsAre("/home/ayşe", "/tmp", "/C", "/Applications", "/Library",
                                     "/private/var/vm", "/opt/homebrew", "/Users/Shared"));
    EXPECT_THAT(Scanner::excluded(folders),
                testing::UnorderedElementsAre(
                    "/home/ayşe/Library/CloudStorage", "/home/ayşe/Library/Mobile Documents",
                    "/home/ayşe/Library/Metadata/CoreSpotlight", "/Library/Developer/CoreSimulator/Volumes",
                    "/Library/Developer/CoreSimulator/Cryptex"));
}

TEST(Scanner, MissingRootsContributeNothing) {
    const TempTree tree({folder("h", {folder(".npm", {file("x", 60'000'000)})})});
    {
        const Scan scan(user(tree.path("h"), tree.path("missing/T")));
        EXPECT_THAT(scan.ids(), testing::ElementsAre(tree.path("h/.npm")));
        EXPECT_EQ(scan.progress.files(), 1);
    }
    EXPECT_TRUE(Scan(user(tree.path("nobody"), tree.path("missing/T"))).findings.empty());
}

/// A folder with ten names of one file.
test::TreeEntry tenNames(const std::string& folderName, const std::string& where) {
    std::vector<test::TreeEntry> names = {file("film", 409'600'000)};
    for (int i = 1; i < 10; ++i)
        names.push_back(test::hardLink("film " + std::to_string(i), where + "/film"));
    return folder(folderName, names);
}

TEST(Scanner, TenNamesOfOneFileAreReportedOnce) {
    const TempTree tree({folder("h", {tenNames("Documents", "h/Documents"), tenNames(".npm", "h/.npm")}),
                         folder("T", {tenNames("a", "T/a"), file("loose", 409'600'000),
                                      test::hardLink("loose too", "T/loose")})});
    const Scan scan(user(tree.path("h"), tree.path("T")));
    ASSERT_EQ(scan.findings.size(), 4U);
    std::int64_t all = 0;
    for (const Finding& finding : scan.findings) {
        EXPECT_EQ(finding.heldElsewhere, 0) << finding.id;
        all += finding.size;
    }
    EXPECT_EQ(all, tree.allocated("h/Documents/film") + tree.allocated("h/.npm/film") +
                       tree.allocated("T/a/film") + tree.allocated("T/loose"));
    EXPECT_EQ(scan.progress.files(), 32);
    EXPECT_EQ(scan.progress.bytes(), all);
    const auto film = std::ranges::find(scan.findings, true, &Finding::isPersonal);
    EXPECT_EQ(film->urls.size(), 10U) << "all of them go, or nothing is freed";
    EXPECT_TRUE(film->title.ends_with(" (10 öğe)")) << film->title;
    EXPECT_EQ(film->original.title, film->title);
}

TEST(Scanner, NamesOfDifferentFilesAreReportedApart) {
    const TempTree tree({folder(
        "h", {folder("Documents", {file("film", 409'600'000), test::hardLink("film 2", "h/Documents/film"),
                                   file("show", 409'600'000), test::hardLink("show 2", "h/Documents/show")}),
              folder("Desktop", {file("film", 409'600'000), test::hardLink("film 2", "h/Desktop/film")})})});
    const Scan scan(user(tree.path("h"), tree.path("missing/T")));
    EXPECT_EQ(scan.findings.size(), 3U);
    for (const Finding& finding : scan.findings)
        EXPECT_EQ(finding.urls.size(), 2U) << finding.id;
}

TEST(Scanner, TellsWhatStaysElsewhere) {
    const TempTree tree(
        {folder("h", {folder("Documents", {file("film", 409'600'000)}),
                      folder(".npm", {file("x", 61'440'000), file("own", 61'440'000)})}),
         folder("outside", {test::hardLink("film", "h/Documents/film"), test::hardLink("x", "h/.npm/x")})});
    const Scan scan(user(tree.path("h"), tree.path("missing/T")));
    const Finding& film = scan.at(tree.path("h/Documents/film"));
    EXPECT_EQ(film.size, tree.allocated("h/Documents/film"));
    EXPECT_EQ(film.heldElsewhere, film.size);
    EXPECT_EQ(bytesFreed(film), 0);
    EXPECT_EQ(scan.at(tree.path("h/.npm")).heldElsewhere, tree.allocated("h/.npm/x"));
    EXPECT_EQ(bytesFreed(scan.at(tree.path("h/.npm"))), tree.allocated("h/.npm/own"));
}

TEST(Scanner, StoppedScanIsEmpty) {
    const TempTree tree({folder("h", {folder(".npm", {file("x", 60'000'000)})}), folder("T")});
    std::stop_source source;
    source.request_stop();
    EXPECT_TRUE(Scan(user(tree.path("h"), tree.path("T")), source.get_token()).findings.empty());
}

TEST(Scanner, CacheLiesBesideTheTemporaryFolder) {
    const TempTree tree(
        {folder("h"), folder("u", {folder("T", {file("x", 60'000'000)}),
                                   folder("C", {folder("com.example.app", {file("y", 70'000'000)})})})});
    const Scan scan(user(tree.path("h"), tree.path("u/T/")));
    EXPECT_EQ(scan.at(tree.path("u/T/x")).title, "Geçici dosya: x");
    EXPECT_EQ(scan.at(tree.path("u/C/com.example.app")).title, "Sistem önbelleği: com.example.app");
    EXPECT_EQ(scan.at(tree.path("u/C/com.example.app")).level, SafetyLevel::regenerable);
}

TEST(Scanner, WhatLiesBesideATemporaryFolderOfAnyOtherNameIsNoCache) {
    const TempTree tree(
        {folder("h"), folder("data", {folder("tmp", {file("x", 60'000'000)}),
                                      folder("C", {folder("work", {file("y", 70'000'000)})})})});
    const Scan scan(user(tree.path("h"), tree.path("data/tmp")));
    EXPECT_THAT(scan.ids(), testing::ElementsAre(tree.path("data/tmp/x")));
    EXPECT_EQ(scan.progress.files(), 1);
}

TEST(Scanner, TemporaryFolderBelowHomeIsCountedOnce) {
    const TempTree tree({folder(
        "h", {folder("tmp", {file("x", 60'000'000)}), folder(".npm", {file("y", 60'000'000)}),
              folder("Documents", {file("z", 400'000'000)}), folder("C", {file("work", 400'000'000)})})});
    const Scan scan(user(tree.path("h"), tree.path("h/tmp")));
    EXPECT_THAT(scan.ids(), testing::UnorderedElementsAre(tree.path("h/tmp/x"), tree.path("h/.npm"),
                                                          tree.path("h/Documents/z"), tree.path("h/C/work")));
    EXPECT_EQ(scan.at(tree.path("h/tmp/x")).level, SafetyLevel::safe);
    EXPECT_EQ(scan.at(tree.path("h/C/work")).level, SafetyLevel::keep)
        << "a guessed cache does not make it one";
    EXPECT_EQ(scan.progress.files(), 4);
}

TEST(Scanner, HomeBelowTheTemporaryFolderIsCountedOnceAndNoTemporaryFile) {
    const TempTree tree(
        {folder("T", {folder("users", {folder("h", {folder("Documents", {file("x", 400'000'000)}),
                                                    folder(".npm", {file("y", 60'000'000)})}),
                                       file("old", 400'000'000)}),
                      file("loose", 60'000'000)})});
    const Scan scan(user(tree.path("T/users/h"), tree.path("T")));
    EXPECT_THAT(scan.ids(),
                testing::UnorderedElementsAre(tree.path("T/users/h/Documents/x"), tree.path("T/users/h/.npm"),
                                              tree.path("T/users/old"), tree.path("T/loose")))
        << "what holds the home folder is never one finding";
    EXPECT_EQ(scan.at(tree.path("T/users/h/Documents/x")).level, SafetyLevel::keep);
    EXPECT_EQ(scan.progress.files(), 4);
}

TEST(Scanner, HomeThatIsTheTemporaryFolderIsHome) {
    const TempTree tree({folder("h", {folder("Documents", {file("x", 400'000'000)})})});
    const Scan scan(user(tree.path("h"), tree.path("h")));
    EXPECT_EQ(scan.at(tree.path("h/Documents/x")).level, SafetyLevel::keep);
    EXPECT_EQ(scan.progress.files(), 1);
}

TEST(Scanner, OneFolderUnderTwoNamesIsCountedOnce) {
    const TempTree tree({folder("h", {folder("Documents", {file("x", 400'000'000)})}), link("T", "h")});
    const Scan scan(user(tree.path("h"), tree.path("T")));
    EXPECT_THAT(scan.ids(), testing::ElementsAre(tree.path("h/Documents/x")));
    EXPECT_EQ(scan.progress.files(), 1);
}

TEST(Scanner, HomeThatALinkLeadsIntoTheTemporaryFolderIsStillItself) {
    const TempTree tree(
        {folder("T", {folder("h", {folder("Documents", {file("x", 400'000'000)})})}), link("home", "T/h")});
    const Scan scan(user(tree.path("home"), tree.path("T")));
    EXPECT_THAT(scan.ids(), testing::ElementsAre(tree.path("home/Documents/x")));
    EXPECT_EQ(scan.progress.files(), 1);
}

TEST(Scanner, HomeThatIsAFileIsOneFinding) {
    const TempTree tree({file("h", 400'000'000), folder("T")});
    const Scan scan(user(tree.path("h"), tree.path("T")));
    EXPECT_THAT(scan.ids(), testing::ElementsAre(tree.path("h")));
}

TEST(Scanner, RootThatIsAFileInsideAnotherIsOneOfItsFiles) {
    const TempTree tree({folder("T", {file("h", 400'000'000)})});
    const Scan scan(user(tree.path("T/h"), tree.path("T")));
    EXPECT_THAT(scan.ids(), testing::ElementsAre(tree.path("T/h")));
    EXPECT_EQ(scan.progress.files(), 1);
}

TEST(Scanner, GuessedCacheAmongPersonalFilesStaysPersonal) {
    const TempTree tree(
        {folder("h", {folder("Documents",
                             {folder("x", {folder("tmp"),
                                           folder("C", {folder("logs", {file("y", 120'000'000)})})})})}),
         link("via", "h")});
    for (const char* home : {"h", "via"}) {
        const Scan scan(user(tree.path(home), tree.path("h/Documents/x/tmp")));
        EXPECT_TRUE(scan.findings.empty()) << "nothing personal of that size is listed";
        EXPECT_EQ(scan.progress.files(), 1);
    }
}

TEST(Scanner, GuessedCacheIsNotBelievedThroughALinkEither) {
    const TempTree tree(
        {folder("r", {folder("tmp"), folder("C", {folder("work", {file("thesis", 400'000'000)})})}),
         link("h", "r")});
    for (const auto& [home, temp] :
         {std::pair("h", "r/tmp"), std::pair("r", "h/tmp"), std::pair("h", "h/tmp")}) {
        const Scan scan(user(tree.path(home), tree.path(temp)));
        ASSERT_EQ(scan.findings.size(), 1U);
        EXPECT_EQ(scan.findings.front().level, SafetyLevel::keep);
    }
}

TEST(Scanner, PlaceThatIsToBeKeptIsKeptWholeAroundAnotherRoot) {
    const TempTree tree({folder(
        "h",
        {folder("Library",
                {folder("Messages", {folder("Att", {folder("tmp"), folder("logs", {file("x", 60'000'000)})}),
                                     file("db", 400'000'000)})})})});
    const Scan scan(user(tree.path("h"), tree.path("h/Library/Messages/Att/tmp")));
    EXPECT_THAT(scan.ids(), testing::ElementsAre(tree.path("h/Library/Messages")));
    EXPECT_EQ(scan.findings.front().level, SafetyLevel::keep);
    EXPECT_TRUE(std::holds_alternative<CleanAction::None>(scan.findings.front().action.value));
}

TEST(Scanner, FolderMountedAtTwoRootsIsCountedOnce) {
    if (const auto reason = test::whyNoPrivateMounts())
        GTEST_SKIP() << *reason;
    const TempTree tree({folder("h", {folder("Documents", {file("x", 400'000'000)})}), folder("T")});
    test::withPrivateMounts([&] {
        ASSERT_TRUE(test::mountAgain(tree.path("h"), tree.path("T")));
        const Scan scan(user(tree.path("h"), tree.path("T")));
        EXPECT_THAT(scan.ids(), testing::ElementsAre(tree.path("h/Documents/x")));
        EXPECT_EQ(scan.progress.files(), 1);
    });
}

TEST(Scanner, ExcludedPlacesAreNotEntered) {
    const TempTree tree(
        {folder("h", {folder("Library", {folder("CloudStorage", {file("x", 400'000'000)}),
                                         folder("Mobile Documents", {file("y", 400'000'000)})})}),
         folder("T")});
    const Scan scan(user(tree.path("h"), tree.path("T")));
    EXPECT_TRUE(scan.findings.empty());
    EXPECT_EQ(scan.progress.files(), 0);
}

}  // namespace
}  // namespace ulvak
