#include "ai/folder_context.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>

#include "ai/fact_world.h"
#include "support/isolation.h"

namespace ulvak {
namespace {

using namespace test;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

const std::string noSuchApp = "Hint: no app named \"";

void setAccessDate(const std::string& path, FileTime date) {
    const auto seconds = std::chrono::floor<std::chrono::seconds>(date.time_since_epoch()).count();
    const timespec times[2] = {{.tv_sec = seconds, .tv_nsec = 0}, {.tv_sec = 0, .tv_nsec = UTIME_OMIT}};
    ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
}

std::string numbered(std::string name, int number) {
    return name += std::to_string(number);
}

std::string ownerOf(std::string_view relative) {
    const UserFolders folders{.home = "/Users/ayşe"};
    return FolderContext::ownerName("/Users/ayşe" + std::string(relative), folders).value_or("none");
}

// The whole text

TEST(FolderContext, FullTextHasItsLinesInOrder) {
    FactWorld world(
        {folder("Library",
                {folder("Caches", {folder("com.example.Editor-old", {textFile("not.txt", "merhaba")})})}),
         folder("dev", {folder("editor-OLD", {folder(".git")})})},
        {folder("Editor-Old.app")});
    Finding about = world.finding("Library/Caches/com.example.Editor-old");
    setAccessDate(about.urls[0], world.before(14 * 24h));
    about.modified = world.before(3 * 24h);
    about.parentPath = world.home("Library/Caches");
    about.siblings = {{.name = "com.example.Editor", .size = 9'100'000'000, .isDirectory = true}};
    about.children = {{.name = "db", .size = 512'000'000, .isDirectory = true},
                      {.name = "x.bin", .size = 1'000'000}};
    const std::string types =
        ".txt ×1 (" +
        Format::bytes(world.tree.allocated("home/Library/Caches/com.example.Editor-old/not.txt")) + ")";
    EXPECT_THAT(
        linesOf(world.build(about, " benim \n", {"editor - old"})),
        ElementsAre(
            "Path: ~/Library/Caches/com.example.Editor-old",
            "Size: 1,2 GB, 3456 files, last modified 3 days ago.", "Last opened/read: 2 weeks ago.",
            "Hint: this looks like a backup copy of the sibling folder \"com.example.Editor\" (9,1 GB), "
            "which "
            "still exists. Deleting the backup keeps the original but loses the backup.",
            "Parent folder: ~/Library/Caches. Siblings: com.example.Editor (9,1 GB)",
            "Largest items inside:", "- db/ 512 MB", "- x.bin 1 MB", "File types (sampled): " + types,
            "Hint: the app \"Editor-Old.app\" is installed, so this folder most likely belongs to it.",
            "Hint: \"Editor-old\" is currently running.",
            "Hint: the user has a source code repository with the same name at ~/dev/editor-OLD. The user is "
            "probably developing this app, so benchmark, trace, build and test folders here are likely their "
            "own generated data.",
            "Small text files inside:", "- not.txt: merhaba", "The user says about this folder: \"benim\""));
}

TEST(FolderContext, MinimalTextIsPathSizeDatesAndTypes) {
    FactWorld world({folder("eski", {textFile("not.txt", "merhaba")})});
    Finding about = world.finding("eski");
    setAccessDate(about.urls[0], world.before(24h));
    about.parentPath = world.home("");
    about.children = {{.name = "not.txt", .size = 7}};
    const std::string types = ".txt ×1 (" + Format::bytes(world.tree.allocated("home/eski/not.txt")) + ")";
    EXPECT_THAT(linesOf(world.buildMinimal(about)),
                ElementsAre("Path: ~/eski", "Size: 1,2 GB, 3456 files, last modified unknown.",
                            "Last opened/read: 1 day ago.", "File types (sampled): " + types));
}

TEST(FolderContext, MinimalTextNeverHasTheUsersNote) {
    const FactWorld world({folder("a", {file("x")})});
    EXPECT_THAT(world.buildMinimal(world.finding("a"), "gizli not"), Not(HasSubstr("gizli not")));
    EXPECT_THAT(world.build(world.finding("a"), "gizli not"), HasSubstr("gizli not"));
}

TEST(FolderContext, AbsentModificationDateEndsTheSizeLineWithUnknown) {
    const FactWorld world;
    EXPECT_THAT(world.build(world.finding("yok")), HasSubstr("files, last modified unknown."));
}

TEST(FolderContext, FolderWhoseAccessDateCannotBeReadHasNoSuchLine) {
    const FactWorld world({folder("a")});
    EXPECT_THAT(world.build(world.finding("yok")), Not(HasSubstr("Last opened/read")));
    EXPECT_THAT(world.build(world.finding("a")), HasSubstr("Last opened/read: "));
}

TEST(FolderContext, BuildingATextDoesNotRenewTheAccessDateItReports) {
    FactWorld world({folder("a", {textFile("not.txt", "merhaba"), folder("b", {file("c")})})});
    const Finding about = world.finding("a");
    setAccessDate(about.urls[0], world.before(365 * 24h));
    const std::string first = world.build(about);
    EXPECT_EQ(lineAfter(first, "Last opened/read: "), "1 year ago.");
    EXPECT_EQ(world.build(about), first);
    EXPECT_THAT(world.buildMinimal(about), HasSubstr("Last opened/read: 1 year ago."));
}

TEST(FolderContextDeathTest, FindingWithoutUrlStopsTheProgram) {
    EXPECT_DEATH(
        (void)FolderContext::build(Finding{}, "", {}, FolderContext::Extent::full, FactWorld().around),
        "without a url");
}

TEST(FolderContext, MergedFindingIsToldByItsFirstMember) {
    const FactWorld world({folder("a", {file("inA")}), folder("b", {file("inB")})});
    Finding about = world.finding("a");
    about.urls.push_back(world.home("b"));
    EXPECT_EQ(lineAfter(world.build(about), "Items inside: "), "inA");
}

// Parent and siblings

TEST(FolderContext, ParentWithoutSiblingsEndsAfterItsPath) {
    const FactWorld world;
    Finding about = world.finding("a");
    about.parentPath = world.home("b");
    EXPECT_EQ(lineAfter(world.build(about), "Parent folder: "), "~/b");
    about.parentPath.reset();
    about.siblings = {{.name = "c", .size = 1}};
    EXPECT_EQ(lineAfter(world.build(about), "Parent folder: "), "none");
}

TEST(FolderContext, NamesTheFirstEightSiblingsInTheFindingsOrder) {
    const FactWorld world;
    Finding about = world.finding("a");
    about.parentPath = "/opt";
    for (int i = 0; i < 10; ++i)
        about.siblings.push_back({.name = numbered("s", i), .size = 1'000'000 * i});
    EXPECT_EQ(
        lineAfter(world.build(about), "Parent folder: "),
        "/opt. Siblings: s0 (Sıfır KB), s1 (1 MB), s2 (2 MB), s3 (3 MB), s4 (4 MB), s5 (5 MB), s6 (6 MB), "
        "s7 (7 MB)");
}

// Contents

TEST(FolderContext, FolderWithoutChildrenThatIsEmptyOrUnreadableHasNoContents) {
    const FactWorld world({folder("boş")});
    for (const char* place : {"boş", "yok"}) {
        const std::string text = world.build(world.finding(place));
        EXPECT_THAT(text, Not(HasSubstr("Items inside: "))) << place;
        EXPECT_THAT(text, Not(HasSubstr("Largest items inside:"))) << place;
    }
}

TEST(FolderContext, FolderThatMayNotBeListedHasNoContents) {
    const TempTree tree({folder("locked", {file("a")}).withMode(0000)}, TempTree::Owner::unprivileged);
    if (const auto reason = whyNotUnprivileged(tree.path()))
        GTEST_SKIP() << *reason;
    const FactWorld world;
    asUnprivileged([&] {
        const Finding about{.urls = {tree.path("locked")}};
        const std::string text = world.build(about);
        EXPECT_THAT(text, Not(HasSubstr("tems inside:")));
        EXPECT_THAT(text, Not(HasSubstr("File types")));
    });
}

TEST(FolderContext, WithoutChildrenTheFirstFifteenNamesAreListed) {
    std::vector<TreeEntry> entries;
    for (int i = 0; i < 20; ++i)
        entries.push_back(file(numbered(".n", i)));
    const FactWorld world({folder("a", std::move(entries))});
    const std::string names = lineAfter(world.build(world.finding("a")), "Items inside: ");
    EXPECT_EQ(std::ranges::count(names, ','), 14);
    EXPECT_TRUE(names.starts_with(".n"));
}

TEST(FolderContext, WithChildrenTheFirstTenAreListedWithTheirSizes) {
    const FactWorld world({folder("a", {file("x")})});
    Finding about = world.finding("a");
    for (int i = 0; i < 12; ++i)
        about.children.push_back({.name = numbered("c", i), .size = 50'000'000, .isDirectory = i == 0});
    const auto lines = linesOf(world.build(about));
    const auto header = std::ranges::find(lines, "Largest items inside:");
    ASSERT_NE(header, lines.end());
    EXPECT_EQ(*(header + 1), "- c0/ 50 MB");
    EXPECT_EQ(*(header + 2), "- c1 50 MB");
    EXPECT_EQ(*(header + 10), "- c9 50 MB");
    EXPECT_THAT(*(header + 11), StartsWith("File types"));
    EXPECT_EQ(lineAfter(world.build(about), "Items inside: "), "none");
}

// File types

TEST(FolderContext, TypesAreCountedByLowerCaseExtensionLargestFirst) {
    const FactWorld world(
        {folder("a", {file("x.MP4", 3'000'000), file("y.mp4", 3'000'000), file("z.jpg", 1'000'000),
                      file("README"), file(".gizli"), file("son."), folder("b", {file("t.JPG", 0)})})});
    const auto size = [&](const char* name) { return world.tree.allocated(std::string("home/a/") + name); };
    EXPECT_EQ(lineAfter(world.build(world.finding("a")), "File types (sampled): "),
              ".mp4 ×2 (" + Format::bytes(size("x.MP4") + size("y.mp4")) + "), .jpg ×2 (" +
                  Format::bytes(size("z.jpg")) + "), (no extension) ×3 (Sıfır KB)");
}

TEST(FolderContext, NamesTheEightLargestTypes) {
    std::vector<TreeEntry> entries;
    for (int i = 0; i < 10; ++i)
        entries.push_back(file("f.e" + std::to_string(i), 100'000 * (10 - i)));
    const FactWorld world({folder("a", std::move(entries))});
    const std::string types = lineAfter(world.build(world.finding("a")), "File types (sampled): ");
    EXPECT_TRUE(types.starts_with(".e0 ×1 ("));
    EXPECT_THAT(types, HasSubstr(".e7 ×1 ("));
    EXPECT_THAT(types, Not(HasSubstr(".e8")));
}

TEST(FolderContext, FiveThousandSmallFilesAreReportedAsFourThousand) {
    std::vector<TreeEntry> entries;
    for (int i = 0; i < 5'000; ++i)
        entries.push_back(file(numbered("f", i) + (i % 2 == 0 ? ".a" : ".b")));
    const FactWorld world({folder("a", std::move(entries))});
    const std::string types = lineAfter(world.build(world.finding("a")), "File types (sampled): ");
    int counted = 0;
    for (std::size_t at = types.find("×"); at != std::string::npos; at = types.find("×", at + 1))
        counted += std::stoi(types.substr(at + std::string_view("×").size()));
    EXPECT_EQ(counted, 4'000);
}

TEST(FolderContext, TypesStopAtPackagesAndLinks) {
    const FactWorld world({folder("a", {folder("E.app", {file("in.exe")}), link("l", ".."), file("x.bin")})});
    EXPECT_EQ(lineAfter(world.build(world.finding("a")), "File types (sampled): "), ".bin ×1 (Sıfır KB)");
}

TEST(FolderContext, FindingThatIsAFileHasNoTypes) {
    const FactWorld world({file("a.iso", 1'000'000)});
    EXPECT_EQ(lineAfter(world.build(world.finding("a.iso")), "File types (sampled): "), "none");
}

TEST(FolderContext, TypesEndEarlyWhenStopped) {
    FactWorld world({folder("a", {file("x.bin")})});
    std::stop_source stop;
    stop.request_stop();
    world.around.stop = stop.get_token();
    EXPECT_EQ(lineAfter(world.build(world.finding("a")), "File types (sampled): "), "none");
}

// Backup hint

TEST(FolderContext, EveryBackupWordGivesAHintAlsoInsideOfOtherWords) {
    const FactWorld world;
    const std::string hint = "Hint: the folder name suggests it is a backup or old copy.";
    for (const char* name : {"yedek", "MyBackup", "copy", "kopya2", "a.bak", "old", "ESKI", "placeholder"})
        EXPECT_THAT(world.build(world.finding(name)), HasSubstr(hint)) << name;
    for (const char* name : {"bac", "ol", "kebab", "fotoğraflar"})
        EXPECT_THAT(world.build(world.finding(name)), Not(HasSubstr("backup"))) << name;
}

TEST(FolderContext, OldCopyBesideItselfAndOlGetsTheGenericHint) {
    const FactWorld world;
    Finding about = world.finding("old-copy");
    about.siblings = {{.name = "old-copy", .size = 1}, {.name = "ol", .size = 1}};
    EXPECT_THAT(world.build(about), HasSubstr("Hint: the folder name suggests it is a backup or old copy."));
}

TEST(FolderContext, ThreeLettersOfASiblingAreCountedAsLetters) {
    const FactWorld world;
    Finding about = world.finding("şğ-yedek");
    about.siblings = {{.name = "şğ", .size = 1}};
    EXPECT_THAT(world.build(about), Not(HasSubstr("sibling folder")));
    about = world.finding("şğü-yedek");
    about.siblings = {{.name = "şğü", .size = 1}};
    EXPECT_THAT(world.build(about), HasSubstr("sibling folder \"şğü\""));
}

TEST(FolderContext, FirstSiblingThatBeginsTheNameIsTheOriginal) {
    const FactWorld world;
    Finding about = world.finding("proje-Yedek");
    about.siblings = {{.name = "Başka", .size = 5},
                      {.name = "PROJE", .size = 2'000'000'000},
                      {.name = "proje-", .size = 7}};
    EXPECT_THAT(
        world.build(about),
        HasSubstr("Hint: this looks like a backup copy of the sibling folder \"PROJE\" (2 GB), which still "
                  "exists. Deleting the backup keeps the original but loses the backup."));
}

TEST(FolderContext, SiblingsAloneMakeNoBackup) {
    const FactWorld world;
    Finding about = world.finding("proje-2");
    about.siblings = {{.name = "proje", .size = 2}};
    EXPECT_THAT(world.build(about), Not(HasSubstr("Hint:")));
}

// Owner

TEST(FolderContext, OwnerIsJudgedFromThePath) {
    struct Row {
        const char* path;
        const char* owner;
    };
    constexpr Row rows[] = {
        {"/Library/Containers/com.example.Editor", "Editor"},
        {"/Library/Containers/com.example.Editor/Data/Library", "Editor"},
        {"/Library/Group Containers/group.com.example.Notes", "Notes"},
        {"/Library/Application Support/Google", "none"},
        {"/Library/Application Support/Code/User", "Code"},
        {"/Library/Application Support/a.b", "a.b"},
        {"/Library/Application Support/com.example.App", "none"},
        {"/Library/Application Support//x", "x"},
        {"/Library/Application Support/...", "..."},
        {"/Library/Application Support", "none"},
        {"/Library/Caches/", "none"},
        {"/Library/Logs/Editor", "none"},
        {"/Documents", "none"},
        {"/.npm/_cacache", "npm"},
        {"/.local/share/Editor", "none"},
        {"/.CONFIG/x", "none"},
        {"/./x", "x"},
        {"/.", "none"},
        {"", "none"},
        {"-2/.npm", "none"},
    };
    for (const auto& [path, owner] : rows)
        EXPECT_EQ(ownerOf(path), owner) << path;
    EXPECT_EQ(FolderContext::ownerName("/Users/ali/.npm", {.home = "/Users/ayşe"}), std::nullopt);
    EXPECT_EQ(FolderContext::ownerName("/.npm", {.home = "/"}), "npm");
}

TEST(FolderContext, EveryGenericNameIsNobodysName) {
    for (const char* name : {"local", "share", "config", "bin", "cache", "data", "user", "apple", "google",
                             "microsoft", "com", "app", "macos"})
        EXPECT_EQ(ownerOf(std::string("/.") + name), "none") << name;
    EXPECT_EQ(ownerOf("/.Google"), "none");
    EXPECT_EQ(ownerOf("/.googler"), "googler");
}

TEST(FolderContext, FolderWithoutOwnerHasNoOwnerHints) {
    const FactWorld world({folder("src", {folder("Documents", {file("Makefile")})})},
                          {folder("Documents.app")});
    EXPECT_THAT(world.build(world.finding("Documents"), "", {"Documents"}), Not(HasSubstr("Hint:")));
}

TEST(FolderContext, InstalledAppIsRecognisedByItsName) {
    struct Row {
        const char* app;
        const char* owner;
        bool matches;
    };
    constexpr Row rows[] = {
        {"Editor.app", "editor", true},
        {"My Editor.app", "myeditor", true},
        {"Editor Pro.app", "Editor", true},
        {"Edit.app", "Editor", true},
        {"Edi.app", "Editor", false},
        {"Other.app", "Editor", false},
        {"Editor.v2.app", "editor.v2", true},
        {"Editor", "editor", true},
        {"vs.app", "vs", false},
        {"vscode.app", "vs", false},
        {".app", "Editor", false},
        {"İstanbul.app", "İSTANBUL", true},
        {"şğ.app", "şğ", false},
        {"şğü.app", "şğüler", false},
        {"şğüö.app", "şğüöler", true},
    };
    for (const auto& [app, owner, matches] : rows) {
        const FactWorld world({}, {folder(app)});
        const std::string text = world.build(world.finding("Library/Caches/" + std::string(owner)));
        const std::string hint = std::string("Hint: the app \"") + app +
                                 "\" is installed, so this folder most likely belongs to it.";
        EXPECT_EQ(text.contains(hint), matches) << app << " " << owner;
        EXPECT_EQ(text.contains(noSuchApp), !matches) << app << " " << owner;
    }
}

TEST(FolderContext, OwnerVsNeverMatchesAndYieldsTheNoAppLine) {
    const FactWorld world({}, {folder("vs.app"), folder("vs code.app")});
    EXPECT_THAT(world.build(world.finding(".vs"), "", {"vs", "vs code"}),
                testing::AllOf(
                    HasSubstr("Hint: no app named \"vs\" is installed in /Applications (it may be a command "
                              "line tool or a removed app)."),
                    Not(HasSubstr("running"))));
}

TEST(FolderContext, MissingApplicationsFolderCountsAsEmpty) {
    FactWorld world;
    world.around.applications = world.tree.path("yok");
    EXPECT_THAT(world.build(world.finding(".editor")), HasSubstr(noSuchApp + "editor\""));
}

TEST(FolderContext, RunningAppIsNamedOnceByTheOwnersName) {
    const FactWorld world;
    EXPECT_EQ(
        lineAfter(world.build(world.finding(".Editor"), "", {"Finder", "EDITOR PRO", "Editor"}), "Hint: \""),
        "Editor\" is currently running.");
    EXPECT_THAT(world.build(world.finding(".Editor"), "", {"Edi", "Finder"}), Not(HasSubstr("running")));
}

// Source folder

TEST(FolderContext, SourceFolderIsFoundInEachOfTheEightPlaces) {
    for (const std::string place :
         {"projects", "Developer", "code", "src", "dev", "GitHub", "repos", "Desktop"}) {
        const FactWorld world({folder(place, {folder("Editor", {file("Makefile")})})});
        EXPECT_THAT(world.build(world.finding(".editor")),
                    HasSubstr("with the same name at ~/" + place + "/Editor. The user is probably"));
    }
}

TEST(FolderContext, EveryMarkerMakesASourceFolder) {
    for (const char* marker : {".git", "package.json", "Package.swift", "project.yml", "Cargo.toml", "go.mod",
                               "Makefile", "CMakeLists.txt", "Editor.xcodeproj"}) {
        const FactWorld world({folder("src", {folder("editor", {folder(marker)})})});
        EXPECT_THAT(world.build(world.finding(".editor")), HasSubstr("~/src/editor")) << marker;
    }
    for (const char* other : {"makefile", "package.JSON", "xcodeproj", "README.md"}) {
        const FactWorld world({folder("src", {folder("editor", {folder(other)})})});
        EXPECT_THAT(world.build(world.finding(".editor")), Not(HasSubstr("repository"))) << other;
    }
}

TEST(FolderContext, OfTheEightPlacesTheEarlierOneWins) {
    const std::vector<std::string> places = {"projects", "Developer", "code",  "src",
                                             "dev",      "GitHub",    "repos", "Desktop"};
    for (std::size_t i = 1; i < places.size(); ++i) {
        const FactWorld world({folder(places[i], {folder("editor", {file("go.mod")})}),
                               folder(places[i - 1], {folder("editor", {file("go.mod")})})});
        EXPECT_THAT(world.build(world.finding(".editor")), HasSubstr("at ~/" + places[i - 1] + "/editor. "));
    }
}

TEST(FolderContext, EarlierPlaceWinsAndOneWithoutMarkerIsPassedOver) {
    const FactWorld world({folder("projects", {folder("editor", {file("notes")})}),
                           folder("repos", {folder("editor", {file("go.mod")})}),
                           folder("code", {folder("EDITOR", {file("go.mod")})})});
    EXPECT_THAT(world.build(world.finding(".editor")), HasSubstr("at ~/code/EDITOR. "));
}

// Excerpts

TEST(FolderContext, ExcerptsAreOfSmallTextFilesOfTheFolderItself) {
    for (const char* extension :
         {"json", "txt", "md", "toml", "yaml", "yml", "ini", "cfg", "conf", "plist", "log", "reg", "TXT"}) {
        const std::string name = std::string("n.") + extension;
        const FactWorld world({folder("a", {textFile(name, " bir\niki\n")})});
        EXPECT_THAT(world.build(world.finding("a")),
                    HasSubstr("Small text files inside:\n- " + name + ": bir iki"));
    }
    const FactWorld world({folder("a", {textFile("x.cpp", "x"), textFile("txt", "x"), textFile(".json", "x"),
                                        folder("b", {textFile("c.txt", "x")})})});
    EXPECT_THAT(world.build(world.finding("a")), Not(HasSubstr("Small text files inside:")));
}

TEST(FolderContext, HiddenFilesAreExcerptedAsWell) {
    const FactWorld world({folder("a", {textFile(".ayarlar.json", "{}")})});
    EXPECT_EQ(lineAfter(world.build(world.finding("a")), "- .ayarlar.json: "), "{}");
}

TEST(FolderContext, FileOf200000BytesIsNotExcerptedNorIsAnEmptyOne) {
    const FactWorld world(
        {folder("a", {textFile("big.txt", std::string(200'000, 'x')), textFile("empty.txt", "")}),
         folder("b", {textFile("less.txt", std::string(199'999, 'x'))})});
    EXPECT_THAT(world.build(world.finding("a")), Not(HasSubstr("Small text files inside:")));
    EXPECT_EQ(lineAfter(world.build(world.finding("b")), "- less.txt: "), std::string(200, 'x'));
}

TEST(FolderContext, AtMostTwoFilesAreExcerpted) {
    const FactWorld world({folder("a", {textFile("1.txt", "x"), textFile("2.txt", "x"),
                                        textFile("3.txt", "x"), textFile("boşluk.txt", " \n ")})});
    const auto lines = linesOf(world.build(world.finding("a")));
    EXPECT_EQ(std::ranges::count_if(lines, [](const std::string& line) { return line.ends_with(".txt: x"); }),
              2);
}

TEST(FolderContext, CharacterCutAtByte300BecomesAReplacement) {
    // The letter's first byte is the file's 300th; leading blanks keep it among the first 200 characters.
    const FactWorld world(
        {folder("a", {textFile("a.txt", std::string(200, ' ') + std::string(99, 'x') + "ş son")})});
    EXPECT_EQ(lineAfter(world.build(world.finding("a")), "- a.txt: "), std::string(99, 'x') + "\uFFFD");
}

// The user's note

TEST(FolderContext, NoteStandsAsItIsBetweenStraightQuotationMarks) {
    const FactWorld world;
    const Finding about = world.finding("a");
    EXPECT_TRUE(world.build(about, "\n\t \u00a0işim \"önemli\"\r\n")
                    .ends_with("\nThe user says about this folder: \"işim \"önemli\"\""));
    for (const char* empty : {"", " \n\t\u00a0\u2028 "})
        EXPECT_THAT(world.build(about, empty), Not(HasSubstr("The user says")));
}

}  // namespace
}  // namespace ulvak
