#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <array>
#include <chrono>
#include <filesystem>
#include <string>

#include "clean_support.h"
#include "platform/posix/removal_calls.h"
#include "support/races.h"
#include "swapper.h"

// Folders are swapped for links to a folder of canaries while they are being cleaned. Following such a link
// destroys canaries: they have the same names as what is cleaned.

namespace ulvak {
namespace {

using namespace test;
namespace fs = std::filesystem;

/// On slow machines, fewer rounds are run so that the test does not time out.
constexpr auto longEnough = std::chrono::minutes(10);

/// What is swapped, relative to the round's folder, and the link from there to its counterpart among the
/// canaries. The link uses "..": from the root, it would also leave the mount, which is refused anyway.
struct Bait {
    std::string_view victim;
    std::string_view link;
};

constexpr std::array<Bait, 3> swapped = {{
    {"arena", "../../canaries/arena"},
    {"arena/item", "../../../canaries/arena/item"},
    {"arena/item/sub", "../../../../canaries/arena/item/sub"},
}};

/// Removes with several threads from the first folder on; by default an arena is too small for that.
Cleaner::Services byManyThreads() {
    Cleaner::Services services = Cleaner::Services::system();
    services.removeItem = [](const auto& parent, const std::string& name, const auto& item,
                             const auto& kept) {
        platform::posix::RemovalCalls calls;
        calls.foldersAlone = 1;
        return platform::posix::removeTree(parent, name, item, kept, calls);
    };
    return services;
}

const std::vector<TreeEntry>& arena() {
    static const std::vector<TreeEntry> entries = {
        folder("arena", {folder("item", {textFile("a", "alive"), textFile("b", "alive"),
                                         folder("sub", {textFile("c", "alive"), textFile("d", "alive"),
                                                        folder("inner", {textFile("e", "alive")})})})})};
    return entries;
}

bool canariesLive(const std::string& folder) {
    for (const char* canary : {"a", "b", "sub/c", "sub/d", "sub/inner/e"}) {
        if (!exists(folder + "/" + canary))
            return false;
    }
    return true;
}

/// Trashing takes paths, so it may be led to a canary; if so, puts it back from the Trash. Returns whether it
/// did.
bool bringBackFromTrash(const TempTree& tree) {
    const std::string home = tree.path("canaries/arena/item");
    const std::string trash = tree.path("home/.local/share/Trash");
    const bool isAstray = !exists(home);
    if (isAstray) {
        for (const auto& entry : fs::directory_iterator(trash + "/files")) {
            if (!entry.is_symlink() &&
                exists(trash + "/info/" + entry.path().filename().string() + ".trashinfo")) {
                fs::rename(entry.path(), home);
                break;
            }
        }
    }
    fs::remove_all(trash);
    return isAstray;
}

struct Outcome {
    int done = 0;
    int failed = 0;
};

Outcome cleanWhileSwapping(TempTree& tree, CleanMode mode, int rounds, Swapper& swapper,
                           const Cleaner::Services& services) {
    Outcome outcome;
    const auto start = std::chrono::steady_clock::now();
    const auto isEnough = [&] {
        return outcome.done > 0 && outcome.failed > 0 &&
               std::chrono::steady_clock::now() - start > longEnough;
    };
    for (int round = 0; round < rounds && !isEnough(); ++round) {
        const auto& [victim, target] = swapped[static_cast<std::size_t>(round) % swapped.size()];
        tree.add("home", {folder("round", arena())});
        tree.add("home/round", {link("bait", std::string(target))});
        swapper.start(
            exchanging(tree.path("home/round/" + std::string(victim)), tree.path("home/round/bait")));
        const auto freed = cleaner(services).clean(finding({tree.path("home/round/arena/item")}), mode);
        swapper.stop();
        ++(freed ? outcome.done : outcome.failed);
        if (mode == CleanMode::trash && bringBackFromTrash(tree)) {
            EXPECT_FALSE(freed) << "another item than the finding's is in the Trash, and nobody was told";
        }
        fs::remove_all(tree.path("home/round"));
        if (!canariesLive(tree.path("canaries/arena/item"))) {
            ADD_FAILURE() << "a canary died in round " << round << ", " << victim
                          << " swapped: " << (freed ? "no failure" : text(freed.error()));
            break;
        }
    }
    return outcome;
}

void survive(CleanMode mode, int rounds, const Cleaner::Services& services = Cleaner::Services::system()) {
    TempTree tree({folder("home"), folder("tmp"), folder("canaries", arena())});
    inHome(tree, [&] {
        Swapper swapper;
        const Outcome outcome = cleanWhileSwapping(tree, mode, rounds, swapper, services);
        // It really was a race: every round had swaps, and they made some rounds fail, but not all.
        EXPECT_GT(swapper.swaps(), outcome.done + outcome.failed);
        EXPECT_GT(outcome.done, 0);
        EXPECT_GT(outcome.failed, 0);
    });
}

TEST(CleanRaces, RemovingForGoodIsNotLedAstrayByLinks) {
    survive(CleanMode::permanent, raceRounds(7500));
}

TEST(CleanRaces, RemovingForGoodByManyThreadsIsNotLedAstrayByLinks) {
    survive(CleanMode::permanent, raceRounds(2500), byManyThreads());
}

TEST(CleanRaces, TheTrashLosesNothingToLinks) {
    if (const auto reason = whyNoTrashOfItsOwn())
        GTEST_SKIP() << *reason;
    survive(CleanMode::trash, raceRounds(2500));
}

void moveAwayWhileCleaning(const Cleaner::Services& services) {
    const int rounds = raceRounds(100);
    TempTree tree({folder("home"), folder("tmp"), folder("canaries", {textFile("canary", "alive")})});
    inHome(tree, [&] {
        rlimit usual{};
        ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &usual), 0);
        // So few handles that folders higher up are closed and have to be reopened.
        const rlimit few{.rlim_cur = 40, .rlim_max = usual.rlim_max};
        Swapper swapper;
        int failed = 0;
        for (int round = 0; round < rounds || (failed == 0 && round < 100 * rounds); ++round) {
            // When moved away, the folder is next to the canaries.
            tree.add("home", {folder("round", {folder("item", {textFile("a", "a"), folder("sub")}),
                                               textFile("beside", "alive"),
                                               folder("aside", {textFile("beside", "alive")}),
                                               link("bait", "../../../canaries")})});
            std::string deep = tree.path("home/round/item/sub");
            for (int level = 0; level < 40; ++level) {
                deep += "/d";
                ASSERT_EQ(::mkdir(deep.c_str(), 0755), 0);
            }
            ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &few), 0);
            swapper.start(exchanging(tree.path("home/round/item/sub"), tree.path("home/round/bait")));
            failed += cleaner(services).clean(finding({tree.path("home/round/item")}), CleanMode::permanent)
                          ? 0
                          : 1;
            swapper.stop();
            ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &usual), 0);
            ASSERT_TRUE(exists(tree.path("home/round/beside"))) << round;
            ASSERT_TRUE(exists(tree.path("home/round/aside/beside"))) << round;
            ASSERT_TRUE(exists(tree.path("canaries/canary"))) << round;
            fs::remove_all(tree.path("home/round"));
        }
        EXPECT_GT(swapper.swaps(), rounds);
        EXPECT_GT(failed, 0);
    });
}

TEST(CleanRaces, NothingIsRemovedAroundAFolderThatIsMovedAway) {
    moveAwayWhileCleaning(Cleaner::Services::system());
}

TEST(CleanRaces, NothingIsRemovedAroundAFolderThatIsMovedAwayFromManyThreads) {
    moveAwayWhileCleaning(byManyThreads());
}

}  // namespace
}  // namespace ulvak
