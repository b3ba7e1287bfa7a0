// The home that scripts/demo-home makes as Linux users have it.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "core/paths.h"
#include "core/safety_level.h"
#include "core/shell.h"
#include "support/environment.h"
#include "support/temp_tree.h"
#include "survey/scanner.h"

namespace ulvak {
namespace {

using namespace test;

/// What nobody can make again, in places that look as if somebody could.
constexpr std::string_view traps[] = {
    ".cache/JetBrains/IntelliJIdea2025.2/LocalHistory",
    ".cache/huggingface/token",
    ".cache/pypoetry/virtualenvs/tahmin-8Jx2kQ1d-py3.11",
    ".cache/rclone/vfs",
    ".cache/simple-scan/autosaves",
    ".cache/vm/win11-deneme.qcow2",
    ".config/Code/User/History",
    ".config/chromium/Default/IndexedDB",
    ".local/share/Steam/steamapps/compatdata/1086940",
    ".local/share/kdenlive/.backup",
    ".m2/settings-security.xml",
    ".minecraft/saves",
    ".ollama/id_ed25519",
    ".wine/drive_c/users",
    "Belgeler/cache",
    "Projeler/altyapı/.terraform",
    "Projeler/build",
    "Projeler/kopya/node_modules",
    "Projeler/nisan/target",
    "Projeler/tahmin/data/cache",
    "gömülü/build/conf/local.conf",
    "yedek/tmp",
};

std::vector<Finding> findingsIn(const std::string& home) {
    const ScopedEnvironment environment({{"HOME", home},
                                         {"TMPDIR", home + "/.tmp/T"},
                                         {"XDG_CACHE_HOME", std::nullopt},
                                         {"XDG_CONFIG_HOME", std::nullopt},
                                         {"XDG_DATA_HOME", std::nullopt},
                                         {"XDG_STATE_HOME", std::nullopt}});
    ScanProgress progress;
    return Scanner{progress, UserFolders::ofCurrentUser()}.run().value();
}

void expectKept(const std::string& path, const std::vector<Finding>& findings) {
    ASSERT_TRUE(exists(path));
    for (const Finding& finding : findings) {
        if (finding.level != SafetyLevel::safe && finding.level != SafetyLevel::regenerable)
            continue;
        for (const std::string& url : finding.urls)
            EXPECT_FALSE(Paths::isWithin(path, url) || Paths::isWithin(url, path))
                << info(finding.level).rawValue << " " << url;
    }
}

TEST(DemoHome, ShowsEveryLevelAndGivesNoTrapAway) {
    const TempTree tree({folder("ev")});
    const std::string home = tree.path("ev");
    const std::vector<std::string> arguments = {home, "--linux"};
    const auto made = [&] {
        const ScopedEnvironment plain({{"LC_ALL", "C"}});  // for the system's messages below
        return Shell::run(ULVAK_SOURCE_DIR "/scripts/demo-home", arguments);
    }();
    ASSERT_TRUE(made);
    // There may be too little space, or another test may use it in the meantime.
    if (made->error.find("yeterli yer yok") != std::string::npos ||
        made->error.find("No space left") != std::string::npos)
        GTEST_SKIP() << made->error;
    ASSERT_EQ(made->status, 0) << made->error;
    const std::vector<Finding> findings = findingsIn(home);
    std::set<SafetyLevel> levels;
    std::set<VerdictSource> sources;
    for (const Finding& finding : findings) {
        levels.insert(finding.level);
        sources.insert(finding.source);
    }
    EXPECT_EQ(levels, std::set<SafetyLevel>(allSafetyLevels.begin(), allSafetyLevels.end()));
    EXPECT_THAT(sources, testing::IsSupersetOf({VerdictSource::rule, VerdictSource::heuristic}));
    for (const std::string_view trap : traps)
        expectKept(home + "/" + std::string(trap), findings);
}

}  // namespace
}  // namespace ulvak
