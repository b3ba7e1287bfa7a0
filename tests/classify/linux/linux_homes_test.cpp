#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <variant>
#include <vector>

#include "../node.h"
#include "classify/rule_book.h"
#include "classify/rule_matcher.h"
#include "support/isolation.h"
#include "support/temp_tree.h"

namespace ulvak {
namespace {

using test::Node;
using test::TempTree;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::UnorderedElementsAre;

constexpr std::string_view cacheTag = "Signature: 8a477f597d28d172789f06886806bc55\n";

/// A home folder on the disk, with files that claim to be big.
class LinuxHome : public testing::Test {
protected:
    /// Adds a file of this many megabytes. With none, it is on the disk only, as scans do not keep small
    /// files.
    void add(const std::string& path, std::int64_t megabytes = 0, std::string_view text = "") {
        const std::filesystem::path place = folders.home + "/" + path;
        std::filesystem::create_directories(place.parent_path());
        std::ofstream(place) << text;
        if (megabytes > 0)
            sizes_[path] = megabytes * test::megabyte;
    }

    [[nodiscard]] std::vector<Finding> findingsBy(const std::vector<Rule>& rules) const {
        Analyzer analyzer = test::usualAnalyzer();
        analyzer.rules = rules;
        analyzer.applicationName = [this](std::string_view id) {
            const auto found = names.find(std::string(id));
            return found != names.end() ? found->second : std::string();
        };
        analyzer.trashes = trashes;
        analyzer.untouched = untouched;
        std::vector<DirNode> roots;
        roots.push_back(test::tree(home()));
        for (const Node& root : further)
            roots.push_back(test::tree(root));
        std::vector<Finding> found = analyzer.run(roots, folders);
        const NotedNames noted = Analyzer::evidence(rules);
        note(noted, roots.front(), folders.home);
        analyzer.noted = &noted;
        EXPECT_EQ(verdicts(analyzer.run(roots, folders)), verdicts(found)) << "with what the walk noted";
        return found;
    }

    /// "level path" of each, below the home folder.
    [[nodiscard]] std::vector<std::string> levels() const {
        std::vector<std::string> result;
        for (const Finding& finding : findingsBy(RuleBook::all()))
            result.push_back(std::string(info(finding.level).rawValue) + " " +
                             finding.urls.front().substr(folders.home.size() + 1));
        return result;
    }

    [[nodiscard]] Finding findingAt(const std::string& path) const {
        for (Finding& finding : findingsBy(RuleBook::all())) {
            if (finding.urls.front() == folders.home + "/" + path)
                return finding;
        }
        ADD_FAILURE() << "nothing at " << path;
        return {};
    }

    TempTree tree;
    UserFolders folders{.home = tree.path("ev"), .temp = tree.path("tmp"), .cache = tree.path("C")};
    std::map<std::string, std::string> names;
    std::vector<Node> further;  ///< roots beside the home folder
    std::vector<std::string> trashes;
    std::vector<std::string> untouched;

private:
    /// As a walk does.
    static void note(const NotedNames& names, DirNode& node, const std::filesystem::path& path) {
        NotedNames::Set seen;
        for (std::error_code error; const auto& entry : std::filesystem::directory_iterator(path, error))
            names.note(entry.path().filename().native(), seen);
        node.noted = NotedNames::ids(seen);
        for (DirNode& child : node.children)
            note(names, child, path / child.url);
    }

    static std::vector<std::string> verdicts(const std::vector<Finding>& findings) {
        std::vector<std::string> lines;
        std::ranges::transform(findings, std::back_inserter(lines), [](const Finding& finding) {
            return finding.id + "|" + std::string(info(finding.level).rawValue) + "|" + finding.title + "|" +
                   finding.explanation;
        });
        return lines;
    }

    static void insert(Node& node, std::string_view path, std::int64_t size) {
        node.size += size;
        const std::string name(path.substr(0, path.find('/')));
        auto child = std::ranges::find(node.children, name, &Node::url);
        if (child == node.children.end()) {
            node.children.push_back({.url = name});
            child = std::prev(node.children.end());
        }
        if (name.size() == path.size()) {
            child->size = size;
            return;
        }
        child->isDirectory = true;
        insert(*child, path.substr(name.size() + 1), size);
    }

    [[nodiscard]] Node home() const {
        Node root{.url = folders.home, .isDirectory = true};
        for (const auto& [path, size] : sizes_)
            insert(root, path, size);
        return root;
    }

    std::map<std::string, std::int64_t> sizes_;
};

// Which rule ------------------------------------------------------------------------------------------------

TEST_F(LinuxHome, WhatNoRuleNamesInAHiddenFolderIsKept) {
    add(".bilinmeyen/x", 400);
    EXPECT_THAT(levels(), ElementsAre("keep .bilinmeyen"));
}

TEST_F(LinuxHome, APlaceThatTheCommonRulesNameOutrightIsTheirs) {
    add(".npm/_cacache/x", 60);
    add(".rustup/toolchains/x", 70);
    add("src/a/.venv/lib/x", 180);
    add("src/a/.venv/pyvenv.cfg");
    for (const std::string path : {".npm", ".rustup", "src/a/.venv"}) {
        const RuleMatcher both(RuleBook::all(), folders);
        const RuleMatcher common(RuleBook::reference(), folders);
        const Rule* rule = both.match(folders.home + "/" + path, true, ScanContext::personal);
        ASSERT_NE(rule, nullptr) << path;
        EXPECT_EQ(rule->match, common.match(folders.home + "/" + path, true, ScanContext::personal)->match);
    }
    EXPECT_THAT(levels(), ElementsAre("regenerable src/a/.venv", "caution .rustup", "regenerable .npm"));
}

TEST_F(LinuxHome, ACacheIsRegenerableButForWhatTheRulesKeepInIt) {
    add(".cache/pip/http-v2/x", 90);
    add(".cache/JetBrains/PyCharm2024.3/LocalHistory/x", 80);
    add(".cache/JetBrains/PyCharm2024.3/caches/x", 300);
    EXPECT_THAT(levels(), UnorderedElementsAre("regenerable .cache/pip",
                                               "caution .cache/JetBrains/PyCharm2024.3/LocalHistory",
                                               "regenerable .cache/JetBrains/PyCharm2024.3/caches"));
}

TEST_F(LinuxHome, AHomeLaidOutAsOnMacOsIsLeftToTheCommonRules) {
    for (const std::string path :
         {"Library/Caches/com.a.b/x", "Library/Application Support/Ofis/Cache/x", ".gizli/x",
          ".cache/huggingface/hub/x", ".npm/x", ".config/Code/Cache/x", "Projeler/a/target/x",
          ".m2/repository/x", "Library/Application Support/Ofis/steamapps/common/x", ".vscode/extensions/x"})
        add(path, 400);
    add("Projeler/a/pom.xml");
    add("Projeler/a/target/classes/x");
    add("Library/Application Support/Ofis/pyvenv.cfg");
    add(".m2/settings-security.xml");
    const auto line = [](const Finding& finding) {
        return finding.id + "\n" + finding.title + "\n" + finding.explanation + "\n" +
               std::string(info(finding.level).rawValue) + std::to_string(finding.action.value.index());
    };
    std::vector<std::string> both;
    std::vector<std::string> common;
    std::ranges::transform(findingsBy(RuleBook::all()), std::back_inserter(both), line);
    std::ranges::transform(findingsBy(RuleBook::reference()), std::back_inserter(common), line);
    EXPECT_EQ(both, common);
    EXPECT_FALSE(common.empty());
}

TEST_F(LinuxHome, AFolderNamedLibraryDoesNotMakeItAnotherSystems) {
    add("Library/Caches/com.a.b/x", 400);
    add(".gizli/x", 400);
    EXPECT_THAT(levels(), Contains("unknown .gizli"));
    add(".config/user-dirs.dirs");
    EXPECT_THAT(levels(), Contains("keep .gizli"));
}

TEST_F(LinuxHome, NamesOfThisSystemsRulesMeanNothingInALibrary) {
    const RuleMatcher matcher(RuleBook::all(), folders);
    for (const std::string place : {"Library/a", "Belgeler/a"})
        add(place + "/pyvenv.cfg");
    const auto ruleOf = [&](const std::string& path) {
        return matcher.match(folders.home + "/" + path, true, ScanContext::normal);
    };
    EXPECT_EQ(ruleOf("Library/a"), nullptr);
    EXPECT_NE(ruleOf("Belgeler/a"), nullptr);
}

TEST_F(LinuxHome, NamesNeedTheirEvidence) {
    add("src/a/derleme/x", 400);
    add("src/b/derleme/x", 350);
    add("src/b/derleme/.rustc_info.json");
    EXPECT_THAT(levels(), ElementsAre("keep src/a", "regenerable src/b/derleme"));
}

TEST_F(LinuxHome, ACacheTagNeedsItsSignature) {
    add("iş/bir/x", 400);
    add("iş/bir/CACHEDIR.TAG", 0, "Signature: none");
    add("iş/iki/x", 350);
    add("iş/iki/CACHEDIR.TAG", 0, cacheTag);
    EXPECT_EQ(findingAt("iş/bir").level, SafetyLevel::keep);
    EXPECT_EQ(findingAt("iş/iki").level, SafetyLevel::caution);
    EXPECT_EQ(findingAt("iş/iki").title, "iş · iki");
}

TEST_F(LinuxHome, NamesOfAnyBytesAreNobodysRule) {
    const std::string hostile = ".cache/\xff\xfe[*]{a,b}\n$cache";
    add(hostile + "/x", 400);
    add(".var/app/\xff/cache/" + std::string(200, '[') + "/x", 400);
    EXPECT_THAT(levels(), UnorderedElementsAre("regenerable " + hostile,
                                               "regenerable .var/app/\xff/cache/" + std::string(200, '[')));
}

// Where -----------------------------------------------------------------------------------------------------

TEST_F(LinuxHome, SandboxesAreReadLikeHomesAndTitledByTheirApplication) {
    names["com.discordapp.Discord"] = "Discord";
    names["org.mozilla.firefox"] = "Ateş Tilkisi";
    add(".var/app/com.discordapp.Discord/config/discord/Cache/x", 120);
    add(".var/app/com.discordapp.Discord/config/discord/IndexedDB/x", 90);
    add(".var/app/org.mozilla.firefox/cache/mozilla/x", 200);
    add("snap/spotify/common/.cache/spotify/x", 150);
    add("snap/hiç/42/.local/share/Trash/x", 80);
    const Finding cache = findingAt(".var/app/com.discordapp.Discord/config/discord/Cache");
    EXPECT_EQ(cache.level, SafetyLevel::regenerable);
    EXPECT_EQ(findingAt(".var/app/com.discordapp.Discord/config/discord/IndexedDB").level, SafetyLevel::keep);
    EXPECT_EQ(findingAt(".var/app/org.mozilla.firefox/cache/mozilla").title,
              "Firefox önbelleği (Ateş Tilkisi)");
    EXPECT_EQ(findingAt("snap/spotify/common/.cache/spotify").level, SafetyLevel::regenerable);
}

TEST_F(LinuxHome, ASandboxWithoutADesktopEntryIsTitledByItsId) {
    add(".var/app/org.acme.Maps/x", 80);
    EXPECT_EQ(findingAt(".var/app/org.acme.Maps").title, "Maps verileri");
    EXPECT_EQ(findingAt(".var/app/org.acme.Maps").level, SafetyLevel::keep);
}

TEST_F(LinuxHome, MovedFoldersAreKnownAndTheUsualOnesToo) {
    folders.userCache = folders.home + "/xdg/önbellek";
    folders.userConfig = folders.home + "/xdg/ayar";
    add("xdg/önbellek/mozilla/x", 90);
    add("xdg/önbellek/hiç-bilinmeyen/x", 80);
    add("xdg/ayar/discord/Cache/x", 120);
    add(".config/Slack/Cache/x", 110);
    EXPECT_THAT(levels(), UnorderedElementsAre(
                              "regenerable xdg/önbellek/mozilla", "regenerable xdg/önbellek/hiç-bilinmeyen",
                              "regenerable xdg/ayar/discord/Cache", "regenerable .config/Slack/Cache"));
}

TEST_F(LinuxHome, OneFolderForCacheAndDataHoldsData) {
    folders.userCache = folders.userData = folders.home + "/.xdg";
    add(".xdg/hiç-bilinmeyen/x", 400);
    EXPECT_THAT(levels(), ElementsAre("keep .xdg/hiç-bilinmeyen"));
}

TEST_F(LinuxHome, ACacheThatAMovedFolderLiesInIsNoCache) {
    add(".cache/a/ayar/program/x", 120);
    add(".cache/a/veri/program/x", 110);
    add(".cache/a/durum/program/x", 100);
    EXPECT_THAT(levels(), ElementsAre("regenerable .cache/a"));
    folders.userConfig = folders.home + "/.cache/a/ayar";
    folders.userData = folders.home + "/.cache/a/veri";
    folders.userState = folders.home + "/.cache/a/durum";
    EXPECT_THAT(levels(), UnorderedElementsAre("keep .cache/a/ayar/program", "keep .cache/a/veri/program",
                                               "keep .cache/a/durum/program"));
}

// Applications' folders -------------------------------------------------------------------------------------

TEST_F(LinuxHome, AnApplicationsFolderIsOneFindingUnlessSomethingKnownIsBig) {
    add(".config/hiç-bilinmeyen/a/x", 70);
    add(".config/hiç-bilinmeyen/b/x", 400);
    add(".config/hiç-bilinmeyen/b/Cache/x", 60);
    EXPECT_THAT(levels(), ElementsAre("keep .config/hiç-bilinmeyen"));
    EXPECT_EQ(findingAt(".config/hiç-bilinmeyen").title, "hiç-bilinmeyen ayarları");
    EXPECT_EQ(findingAt(".config/hiç-bilinmeyen").source, VerdictSource::rule);
    EXPECT_FALSE(findingAt(".config/hiç-bilinmeyen").explanation.empty());
}

TEST_F(LinuxHome, KnownCachesDeepInAnApplicationsFolderAreFoundAndTheRestIsIts) {
    add(".config/hiç-bilinmeyen/a/b/c/Code Cache/x", 150);
    add(".config/hiç-bilinmeyen/a/b/belge/x", 70);
    add(".config/hiç-bilinmeyen/küçük/x", 10);
    EXPECT_THAT(levels(), ElementsAre("regenerable .config/hiç-bilinmeyen/a/b/c/Code Cache",
                                      "keep .config/hiç-bilinmeyen/a/b/belge"));
    EXPECT_EQ(findingAt(".config/hiç-bilinmeyen/a/b/belge").title, "hiç-bilinmeyen ayarları › belge");
}

TEST_F(LinuxHome, ACacheInsideNamesWhatToQuitAsItsContainerDoes) {
    add(".config/discord/sürüm/Cache/x", 120);
    const Finding cache = findingAt(".config/discord/sürüm/Cache");
    EXPECT_THAT(cache.quitApps, Contains("Discord"));
    EXPECT_THAT(cache.processes, Not(IsEmpty()));
    EXPECT_EQ(std::ranges::count(cache.quitApps, "Discord"), 1);
}

TEST_F(LinuxHome, WhatTheProgramNeverCleansStaysSoInItsParts) {
    std::vector<Rule> rules = RuleBook::ranked(std::vector<RuleBook::Row>{
        {.path = "~/.a",
         .container = ScanContext::application,
         .level = SafetyLevel::caution,
         .title = "A",
         .explanation = "Bir A.",
         .actionable = false},
        {.path = "~/.a/{b,c}/önbellek", .level = SafetyLevel::safe, .title = "Ö", .explanation = "Bir ö."},
        {.path = "~/.a/b", .container = ScanContext::normal}});
    add(".a/b/önbellek/x", 120);
    add(".a/b/d/x", 90);
    for (const Finding& finding : findingsBy(rules)) {
        const bool isPart = finding.id.ends_with("/d");
        EXPECT_EQ(std::holds_alternative<CleanAction::None>(finding.action.value), isPart);
        EXPECT_EQ(finding.title, isPart ? "A › d" : "Ö") << "a plain container changes nothing";
        EXPECT_EQ(finding.level, isPart ? SafetyLevel::caution : SafetyLevel::safe);
    }
    EXPECT_EQ(findingsBy(rules).size(), 2U);
}

// What speaks against it ------------------------------------------------------------------------------------

TEST_F(LinuxHome, WhatHoldsWorkIsNotCalledEasyToDelete) {
    const std::vector<std::pair<std::string, std::string>> signs = {{".git/HEAD", "git deposu"},
                                                                    {"disk.qcow2", "sanal makine diskleri"}};
    for (const auto& [sign, reason] : signs) {
        const std::string place = ".cache/hiç-" + sign.substr(1, 3);
        add(place + "/x", 90);
        EXPECT_EQ(findingAt(place).level, SafetyLevel::regenerable) << sign;
        add(place + "/" + sign);
        EXPECT_EQ(findingAt(place).level, SafetyLevel::caution) << sign;
        EXPECT_THAT(findingAt(place).explanation, HasSubstr(reason));
        EXPECT_EQ(findingAt(place).original.level, SafetyLevel::caution) << sign;
    }
}

TEST_F(LinuxHome, AMaildirIsNoCache) {
    add(".cache/posta/cur/x", 90);
    EXPECT_EQ(findingAt(".cache/posta").level, SafetyLevel::regenerable);
    add(".cache/posta/new/y");
    EXPECT_EQ(findingAt(".cache/posta").level, SafetyLevel::caution);
}

TEST_F(LinuxHome, GuessesAreCautiousToo) {
    add("Library/traces/x", 400);
    add("Library/traces/.git/HEAD");
    const Finding guessed = findingAt("Library/traces");
    EXPECT_EQ(guessed.source, VerdictSource::heuristic);
    EXPECT_EQ(guessed.level, SafetyLevel::caution);
}

TEST_F(LinuxHome, WhereAnotherDiskIsMountedIsNotEasyToDelete) {
    if (const auto reason = test::whyNoPrivateMounts())
        GTEST_SKIP() << *reason;
    add(".cache/bağ/x", 90);
    add(".cache/bağ/disk/y", 20);
    add(".cache/bağımsız/x", 80);
    EXPECT_EQ(findingAt(".cache/bağ").level, SafetyLevel::regenerable);
    test::withPrivateMounts([&] {
        ASSERT_TRUE(test::mountMemory(folders.home + "/.cache/bağ/disk"));
        EXPECT_EQ(findingAt(".cache/bağ").level, SafetyLevel::caution);
        EXPECT_EQ(findingAt(".cache/bağımsız").level, SafetyLevel::regenerable);
        const std::string link = tree.path("ev-bağı");
        std::filesystem::create_directory_symlink(folders.home, link);
        folders.home = link;
        EXPECT_EQ(findingAt(".cache/bağ").level, SafetyLevel::caution) << "through a link";
        EXPECT_EQ(findingAt(".cache/bağımsız").level, SafetyLevel::regenerable);
    });
}

TEST_F(LinuxHome, NothingThatHoldsWhatCannotBeMadeAgainIsEasyToDelete) {
    const std::pair<std::string, std::string> evidence[] = {
        {"logins.json", "parolalar"}, {"kasa.kdbx", "parolalar"}, {"Local State", "oturumlar"},
        {"PG_VERSION", "veritabanı"}, {"disk.qcow2", "makine"},   {"tez.docx", "belgeler"},
        {"cur/1:2,S", "e-posta"},     {"config", "yedek deposu"}, {".git/HEAD", "git deposu"},
    };
    for (const auto& [name, reason] : evidence) {
        const std::string place = ".cache/" + name.substr(0, name.find('/')) + " yeri";
        add(place + "/büyük", 90);
        EXPECT_EQ(findingAt(place).level, SafetyLevel::regenerable) << name;
        add(place + "/" + name);
        if (name == "config") {
            add(place + "/data/0");
            add(place + "/keys/0");
        }
        if (name.starts_with("cur"))
            add(place + "/new/x");
        const Finding found = findingAt(place);
        EXPECT_EQ(found.level, SafetyLevel::caution) << name;
        EXPECT_THAT(found.explanation, HasSubstr(reason)) << name;
    }
}

TEST_F(LinuxHome, WhatIsPreciousMayLieInABigFolderBelow) {
    add(".cache/profil/Default/büyük", 90);
    EXPECT_EQ(findingAt(".cache/profil").level, SafetyLevel::regenerable);
    add(".cache/profil/Default/Login Data");
    EXPECT_EQ(findingAt(".cache/profil").level, SafetyLevel::caution);
}

TEST_F(LinuxHome, AWarningByContentsWinsOverAnyCache) {
    add(".cache/bilinmez/drive/büyük", 90);
    EXPECT_EQ(findingAt(".cache/bilinmez").level, SafetyLevel::regenerable);
    add(".cache/bilinmez/CACHEDIR.TAG", 0, cacheTag);
    EXPECT_EQ(findingAt(".cache/bilinmez").level, SafetyLevel::regenerable) << "no warning";
    add(".cache/bilinmez/system.reg");
    EXPECT_EQ(findingAt(".cache/bilinmez").level, SafetyLevel::caution);
}

TEST_F(LinuxHome, LargeFilesOfKnownKindsAreFoundAmongPersonalFiles) {
    using namespace std::string_literals;
    add(".config/user-dirs.dirs", 0, "XDG_DOWNLOAD_DIR=\"$HOME/İndirilenler\"\n");
    add("İndirilenler/kurulum.deb", 160, "!<arch>\ndebian-binary");
    add("İndirilenler/film.mkv", 700);
    add("Belgeler/kurulum.deb", 160, "!<arch>\ndebian-binary");
    add("vm/deneme.qcow2", 900, "QFI\xfb\0\0\0\x03"s);
    EXPECT_THAT(levels(), UnorderedElementsAre("caution İndirilenler/kurulum.deb",
                                               "keep İndirilenler/film.mkv", "caution vm/deneme.qcow2"));
    EXPECT_EQ(findingAt("vm/deneme.qcow2").title, "Sanal makine diski: deneme.qcow2");
    EXPECT_TRUE(findingAt("vm/deneme.qcow2").isPersonal);
}

TEST_F(LinuxHome, ABuildWithSettingsWrittenByHandIsNotEasyToDelete) {
    add("Projeler/yocto/build/tmp/x", 190);
    add("Projeler/yocto/Makefile");
    EXPECT_EQ(findingAt("Projeler/yocto/build").level, SafetyLevel::regenerable);
    add("Projeler/yocto/build/conf/local.conf");
    EXPECT_EQ(findingAt("Projeler/yocto/build").level, SafetyLevel::caution);
}

TEST_F(LinuxHome, ABuildAmongItsSourcesIsNotEasyToDelete) {
    add("Projeler/c-build/CMakeCache.txt");
    add("Projeler/c-build/x", 190);
    add("Projeler/meson/meson-private/x", 180);
    add("Projeler/rust/.rustc_info.json");
    add("Projeler/rust/x", 170);
    for (const char* place : {"Projeler/c-build", "Projeler/meson", "Projeler/rust"})
        EXPECT_EQ(findingAt(place).level, SafetyLevel::regenerable) << place;
    add("Projeler/c-build/CMakeLists.txt");
    add("Projeler/meson/meson.build");
    add("Projeler/rust/Cargo.toml");
    for (const char* place : {"Projeler/c-build", "Projeler/meson", "Projeler/rust"})
        EXPECT_EQ(findingAt(place).level, SafetyLevel::caution) << place;
}

// Opening ---------------------------------------------------------------------------------------------------

TEST_F(LinuxHome, AUnitThatHoldsSomethingToKeepIsOpened) {
    add(".m2/repository/org/x", 300);
    add(".m2/başka/x", 80);
    EXPECT_THAT(levels(), ElementsAre("regenerable .m2")) << "as ever";
    add(".m2/settings-security.xml");
    EXPECT_THAT(levels(), Contains("regenerable .m2/repository"));
    EXPECT_THAT(levels(), Not(Contains("regenerable .m2")));
    EXPECT_EQ(findingAt(".m2/başka").level, SafetyLevel::caution);
}

TEST_F(LinuxHome, SomethingBigToKeepIsFoundAmongAnyNumberOfEntries) {
    add(".cache/program/biri/autosave/x", 60);
    add(".cache/program/büyük/x", 90);
    for (int i = 0; i < 1500; ++i)
        std::filesystem::create_directory(folders.home + "/.cache/program/" + std::to_string(i));
    EXPECT_THAT(levels(),
                UnorderedElementsAre("keep .cache/program/biri/autosave", "caution .cache/program/büyük"));
}

TEST_F(LinuxHome, AnOpenedUnitIsNeverAWholeAgain) {
    std::vector<Rule> rules = RuleBook::ranked(std::vector<RuleBook::Row>{
        {.path = "~/.a", .level = SafetyLevel::safe, .title = "A", .explanation = "Bir A."},
        {.path = "~/.a/*/gizli/anahtar", .level = SafetyLevel::keep, .title = "K", .explanation = "Bir k."}});
    add(".a/b/gizli/anahtar");
    add(".a/b/gizli/x", 90);
    add(".a/c/x", 80);
    std::vector<std::string> found;
    for (const Finding& finding : findingsBy(rules))
        found.push_back(std::string(info(finding.level).rawValue) + " " + finding.title);
    EXPECT_THAT(found, ElementsAre("caution A › x", "caution A › c"));
}

TEST_F(LinuxHome, ALinkThatIsNamedLikeSomethingToKeepOpensNothing) {
    add(".m2/repository/x", 90);
    std::filesystem::create_symlink("/nonexistent", folders.home + "/.m2/settings-security.xml");
    EXPECT_THAT(levels(), ElementsAre("regenerable .m2"));
}

TEST_F(LinuxHome, ACacheOfAnyProgramThatHoldsUnsavedWorkOrAKeyIsOpened) {
    for (const std::string kept : {"autosave/belge", "token", "credentials.json"}) {
        const std::string place = ".cache/hiç-" + kept.substr(0, 3);
        add(place + "/x", 90);
        EXPECT_EQ(findingAt(place).level, SafetyLevel::regenerable) << kept;
        add(place + "/" + kept);
        EXPECT_EQ(findingAt(place + "/x").level, SafetyLevel::caution) << kept;
        EXPECT_THAT(levels(), Not(Contains("regenerable " + place))) << kept;
    }
}

TEST_F(LinuxHome, ContainersInEachOtherAreNotFollowedWithoutEnd) {
    const std::vector<Rule> rules =
        RuleBook::ranked(std::vector<RuleBook::Row>{{.name = "a",
                                                     .container = ScanContext::application,
                                                     .level = SafetyLevel::keep,
                                                     .title = "A",
                                                     .explanation = "Bir A."}});
    std::string path = "a";
    for (int level = 0; level < 100; ++level)
        path += "/a";
    add(path + "/x", 400);
    const std::vector<Finding> found = findingsBy(rules);
    ASSERT_EQ(found.size(), 1U);
    EXPECT_LT(found.front().id.size(), (folders.home + "/" + path).size());
}

// The Trash and the system
// ------------------------------------------------------------------------------------

TEST_F(LinuxHome, TrashesAreOneFindingThatIsEmptied) {
    add(".local/share/Trash/files/x", 60);
    EXPECT_FALSE(isTrash(findingAt(".local/share/Trash"))) << "somebody else's";
    folders.trash = folders.home + "/.local/share/Trash";
    trashes = {folders.trash};
    const Finding one = findingAt(".local/share/Trash");
    EXPECT_TRUE(isTrash(one));
    EXPECT_FALSE(canBeCleaned(one));
    EXPECT_EQ(one.title, "Çöp Kutusu");
    EXPECT_EQ(one.level, SafetyLevel::safe);

    further = {test::dir("/media/disk/.Trash-0", 10 * test::megabyte)};
    trashes.emplace_back("/media/disk/.Trash-0");
    const Finding both = findingAt(".local/share/Trash");
    EXPECT_EQ(both.size, 70 * test::megabyte);
    EXPECT_EQ(both.urls, trashes);
    EXPECT_EQ(both.title, "Çöp Kutusu");
}

TEST_F(LinuxHome, SmallTrashesAreNoFinding) {
    add(".local/share/Trash/files/x", 30);
    trashes = {folders.home + "/.local/share/Trash", folders.home + "/elsewhere"};
    EXPECT_THAT(levels(), IsEmpty());
}

TEST_F(LinuxHome, WhatIsBeyondTheHomeFolderIsExplainedAndNeverCleaned) {
    further = {test::dir("/var/cache/hiç-bilinmeyen", 60 * test::megabyte)};
    untouched = {"/var/cache"};
    const std::vector<Finding> found = findingsBy(RuleBook::all());
    ASSERT_EQ(found.size(), 1U);
    EXPECT_FALSE(canBeCleaned(found.front()));
    EXPECT_EQ(found.front().level, SafetyLevel::regenerable);
}

TEST_F(LinuxHome, OnesOwnFoldersBelowASystemFolderAreOnesOwn) {
    add(".npm/x", 60);
    untouched = {std::filesystem::path(folders.home).parent_path()};
    EXPECT_TRUE(canBeCleaned(findingAt(".npm")));
    untouched = {folders.home + "/.npm"};
    EXPECT_FALSE(canBeCleaned(findingAt(".npm")));
}

// Order -----------------------------------------------------------------------------------------------------

std::vector<std::string> patterns(const std::vector<Rule>& rules) {
    std::vector<std::string> result;
    for (const Rule& rule : rules) {
        const auto* path = std::get_if<Rule::Path>(&rule.match);
        result.push_back(path != nullptr ? path->pattern : std::get<Rule::Name>(rule.match).pattern);
    }
    return result;
}

TEST(RankedRules, TheMoreSpecificPatternComesFirst) {
    const std::vector<Rule> rules = RuleBook::ranked(std::vector<RuleBook::Row>{{.name = "*"},
                                                                                {.name = "a*"},
                                                                                {.name = "a"},
                                                                                {.name = "b/*"},
                                                                                {.path = "~/*/b"},
                                                                                {.path = "~/a*/b"},
                                                                                {.path = "~/ab*/b"},
                                                                                {.path = "~/abc/*"},
                                                                                {.path = "~/abc/[x]y*"}});
    EXPECT_THAT(patterns(rules),
                ElementsAre("~/abc/[x]y*", "~/abc/*", "~/ab*/b", "~/a*/b", "~/*/b", "b/*", "a", "a*", "*"));
}

TEST(RankedRules, BracesStandForSeveralPatternsOneInTheOther) {
    const std::vector<Rule> rules =
        RuleBook::ranked(std::vector<RuleBook::Row>{{.path = "{~/a,$data/{b,c}}/{d,e/f}"}});
    EXPECT_THAT(patterns(rules), UnorderedElementsAre("~/a/d", "~/a/e/f", "$data/b/d", "$data/b/e/f",
                                                      "$data/c/d", "$data/c/e/f"));
    EXPECT_THAT(patterns(RuleBook::ranked(std::vector<RuleBook::Row>{{.path = "~/{a"}})),
                ElementsAre("~/{a"));
}

TEST(RankedRules, WinWhateverTheirOrderInTheTable) {
    const UserFolders user{.home = "/home/ayse", .temp = "/tmp", .cache = "/C"};
    for (const bool isReversed : {false, true}) {
        std::vector<RuleBook::Row> rows = {
            {.path = "$cache/a/*"}, {.path = "$cache/*/b"}, {.path = "$cache/a/b"}};
        if (isReversed)
            std::ranges::reverse(rows);
        const std::vector<Rule> rules = RuleBook::ranked(rows);
        const RuleMatcher matcher(rules, user);
        const auto ruleOf = [&](const std::string& path) {
            const Rule* rule = matcher.match("/home/ayse/" + path, false, ScanContext::normal);
            return rule != nullptr ? std::get<Rule::Path>(rule->match).pattern : "";
        };
        EXPECT_EQ(ruleOf(".cache/a/b"), "$cache/a/b");
        EXPECT_EQ(ruleOf(".cache/A/c"), "$cache/a/*");
        EXPECT_EQ(ruleOf(".cache/x/B"), "$cache/*/b");
        EXPECT_EQ(ruleOf(".cache/x/c"), "");
        EXPECT_EQ(ruleOf(".var/app/org.a.B/cache/a/b"), "$cache/a/b");
        EXPECT_EQ(ruleOf(".var/app/org.a.B/.cache/a/b"), "$cache/a/b");
        EXPECT_EQ(ruleOf("snap/s/current/.cache/a/b"), "$cache/a/b");
        EXPECT_EQ(ruleOf("snap/.cache/a/b"), "") << "not a snap's folder";
        EXPECT_EQ(ruleOf(".var/app/.cache/a/b"), "");
        EXPECT_EQ(ruleOf("x/.cache/a/b"), "");
    }
}

}  // namespace
}  // namespace ulvak
