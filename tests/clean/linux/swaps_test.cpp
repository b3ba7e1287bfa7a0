#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "clean/clean_support.h"
#include "clean/swapper.h"
#include "platform/posix/removal_calls.h"
#include "platform/volume.h"
#include "support/races.h"

// While a finding's items are removed one by one, the name of a later item, or of a folder containing it, is
// given to something else. Anything that was not judged must survive, wherever it ends up, and a result of
// "done" means that what was judged is gone.

namespace ulvak {
namespace {

using namespace test;
namespace fs = std::filesystem;

/// Keeps an entry open, to recognise it wherever it is moved.
class Held {
public:
    explicit Held(const std::string& path) : handle_(::open(path.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC)) {}
    ~Held() { ::close(handle_); }
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;

    [[nodiscard]] bool isGone() const {
        struct stat info{};
        return ::fstat(handle_, &info) != 0 || info.st_nlink == 0;
    }
    [[nodiscard]] bool holds(const std::string& relative) const {
        struct stat info{};
        return ::fstatat(handle_, relative.c_str(), &info, AT_SYMLINK_NOFOLLOW) == 0;
    }
    [[nodiscard]] std::string path() const {
        std::array<char, PATH_MAX> buffer{};
        const ssize_t length =
            ::readlink(("/proc/self/fd/" + std::to_string(handle_)).c_str(), buffer.data(), buffer.size());
        return {buffer.data(), length > 0 ? static_cast<std::size_t>(length) : 0};
    }

private:
    int handle_;
};

std::vector<TreeEntry> shaped() {
    return {textFile("a", "alive"),
            folder("sub", {textFile("c", "alive"), folder("inner", {textFile("e", "alive")})})};
}

const std::vector<std::string> inside = {"a", "sub/c", "sub/inner/e"};

struct Plan {
    std::string bait;                ///< in the home folder
    std::vector<std::string> holds;  ///< what must be in it afterwards
    std::string victim = "round/arena/item";
    bool isFile = false;
    std::function<Swap(const std::string& victim, const std::string& bait)> swap = exchanging;
};

/// Renames as users do: never replaces anything.
bool renamed(const std::string& from, const std::string& to) {
    return ::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0;
}

/// Moves the victim aside and the bait into its place, then moves both back, with plain renames.
Swap stepping(const std::string& victim, const std::string& bait) {
    return [victim, bait, aside = bait + ".aside"] {
        const bool isAside = renamed(victim, aside);
        const bool isThere = renamed(bait, victim);
        if (isThere)
            (void)renamed(victim, bait);
        if (isAside)
            (void)renamed(aside, victim);
        return isThere;
    };
}

struct Outcome {
    int done = 0;
    int failed = 0;
};

void makeRound(TempTree& tree, const Plan& plan) {
    fs::remove_all(tree.path("home/round"));
    fs::remove_all(tree.path("home/" + plan.bait + ".aside"));
    fs::remove_all(tree.path("home/.local"));
    std::vector<TreeEntry> first = {folder("x", {textFile("1", "1"), textFile("2", "2")})};
    tree.add("home", {folder("round", {folder("arena", {folder("first", std::move(first)),
                                                        plan.isFile ? textFile("item", "judged")
                                                                    : folder("item", shaped())})})});
}

/// Checks the bait after a round, wherever it is, and puts it back.
void expectUnharmed(const TempTree& tree, const Plan& plan, const Held& bait, const std::string& what) {
    ASSERT_FALSE(bait.isGone()) << "the bait was taken: " << what;
    for (const std::string& name : plan.holds)
        ASSERT_TRUE(bait.holds(name)) << name << " was taken: " << what;
    const std::string home = tree.path("home/" + plan.bait);
    const std::string now = bait.path();
    ASSERT_EQ(now.find("/Trash/"), std::string::npos) << "the bait is in the Trash: " << what;
    if (now == home)
        return;
    fs::remove_all(home);
    ASSERT_EQ(std::rename(now.c_str(), home.c_str()), 0) << now;
}

/// Swapping starts once all items are judged and the first is about to be removed.
Cleaner::Services swappingFromTheFirstOn(Swapper& swapper, const Swap& swap, bool byManyThreads) {
    Cleaner::Services services = Cleaner::Services::system();
    const auto start = [&swapper, swap](const std::string& name) {
        if (name == "first")
            swapper.start(swap);
    };
    services.removeItem = [start, byManyThreads](const auto& parent, const std::string& name,
                                                 const auto& item, const auto& kept) {
        start(name);
        platform::posix::RemovalCalls calls;
        if (byManyThreads)
            calls.foldersAlone = 1;
        return platform::posix::removeTree(parent, name, item, kept, calls);
    };
    services.moveToTrash = [start, move = services.moveToTrash](const auto& parent, const std::string& name,
                                                                const auto& item, const std::string& path,
                                                                auto* ahead) {
        start(name);
        return move(parent, name, item, path, ahead);
    };
    return services;
}

/// Searches for the mounts, because one whose mount point was renamed while mounting is not where it was
/// meant to be.
void unmountBelow(const std::string& folder) {
    for (const std::string& point : platform::mountPoints()) {
        if (point.starts_with(folder + "/"))
            (void)::umount2(point.c_str(), MNT_DETACH);
    }
}

Outcome cleanWhileSwapping(TempTree& tree, const Plan& plan, CleanMode mode, Swapper& swapper) {
    Outcome outcome;
    const int rounds = raceRounds(1600);
    for (int round = 0; round < rounds; ++round) {
        makeRound(tree, plan);
        const Held item(tree.path("home/round/arena/item"));
        const Held bait(tree.path("home/" + plan.bait));
        const auto freed =
            cleaner(swappingFromTheFirstOn(
                        swapper, plan.swap(tree.path("home/" + plan.victim), tree.path("home/" + plan.bait)),
                        round % 2 == 1))
                .clean(finding({tree.path("home/round/arena/first"), tree.path("home/round/arena/item")}),
                       mode);
        swapper.stop();
        unmountBelow(tree.path("home"));
        ++(freed ? outcome.done : outcome.failed);
        const std::string what =
            "round " + std::to_string(round) + ": " + (freed ? "done" : text(freed.error()));
        expectUnharmed(tree, plan, bait, what);
        const bool isRemoved = item.isGone() || item.path().contains("/Trash/files/");
        EXPECT_TRUE(isRemoved || !freed) << "what was judged is still there: " << item.path();
        if (testing::Test::HasFailure())
            break;
    }
    return outcome;
}

class Swaps : public testing::TestWithParam<CleanMode> {
protected:
    static void survive(const Plan& plan, const std::vector<TreeEntry>& bait) {
        TempTree tree({folder("home"), folder("tmp")});
        tree.add("home", bait);
        const auto race = [&] {
            Swapper swapper;
            const Outcome outcome = cleanWhileSwapping(tree, plan, GetParam(), swapper);
            EXPECT_GT(swapper.swaps(), outcome.done + outcome.failed);
            EXPECT_GT(outcome.failed, 0);
            std::printf("%d rounds, %ld swaps\n", outcome.done + outcome.failed, swapper.swaps());
        };
        inHome(tree, race);
    }
};

TEST_P(Swaps, DocumentsInPlaceOfAnItem) {
    survive({.bait = "Documents", .holds = inside}, {folder("Documents", shaped())});
}

TEST_P(Swaps, DocumentsInPlaceOfAFolderInAnItem) {
    if (GetParam() == CleanMode::trash)
        GTEST_SKIP() << "an item is moved whole, with what is in it at that moment, and can be moved back";
    survive({.bait = "Documents", .holds = inside, .victim = "round/arena/item/sub"},
            {folder("Documents", shaped())});
}

TEST_P(Swaps, EmptyDocumentsInPlaceOfAnItem) {
    survive({.bait = "Documents", .holds = {}}, {folder("Documents")});
}

TEST_P(Swaps, AnotherFolderOfTheSameShapeInPlaceOfAnItem) {
    survive({.bait = "other", .holds = inside}, {folder("other", shaped())});
}

TEST_P(Swaps, AnotherFolderInPlaceOfWhatHoldsTheItems) {
    survive({.bait = "other", .holds = {"item/a", "item/sub/c", "first/f"}, .victim = "round/arena"},
            {folder("other", {folder("item", shaped()), folder("first", {textFile("f", "alive")})})});
}

TEST_P(Swaps, AnotherFileInPlaceOfOne) {
    survive({.bait = "letter", .holds = {}, .isFile = true}, {textFile("letter", "alive")});
}

TEST_P(Swaps, AFileInPlaceOfAFolder) {
    survive({.bait = "letter", .holds = {}}, {textFile("letter", "alive")});
}

TEST_P(Swaps, DocumentsThatAreRenamedToAnItem) {
    survive({.bait = "Documents", .holds = inside, .swap = stepping}, {folder("Documents", shaped())});
}

TEST_P(Swaps, AFileThatIsRenamedToOne) {
    survive({.bait = "letter", .holds = {}, .isFile = true, .swap = stepping}, {textFile("letter", "alive")});
}

/// Only mounts one folder over another.
Swap mounting(const std::string& victim, const std::string& bait) {
    return [victim, bait] {
        const bool isMounted = ::mount(bait.c_str(), victim.c_str(), nullptr, MS_BIND, nullptr) == 0;
        if (isMounted)
            (void)::umount2(victim.c_str(), MNT_DETACH);
        return isMounted;
    };
}

TEST_P(Swaps, MountsOverAnItemAndWhatHoldsIt) {
    if (const auto reason = whyNoPrivateMounts())
        GTEST_SKIP() << *reason;
    // A mount inside an item is neither moved with it nor entered.
    for (const char* victim : {"round/arena/item", "round/arena", "round/arena/item/sub"}) {
        SCOPED_TRACE(victim);
        TempTree tree({folder("home", {folder("other", {folder("item", shaped()), folder("first", shaped()),
                                                        textFile("a", "alive"), folder("sub", shaped())})}),
                       folder("tmp")});
        withPrivateMounts([&] {
            const AtHome environment(tree);
            Swapper swapper;
            const Plan plan{.bait = "other",
                            .holds = {"item/a", "first/a", "sub/a", "a"},
                            .victim = victim,
                            .swap = mounting};
            (void)cleanWhileSwapping(tree, plan, GetParam(), swapper);
            EXPECT_GT(swapper.swaps(), 0);
        });
    }
}

INSTANTIATE_TEST_SUITE_P(Modes, Swaps, testing::Values(CleanMode::permanent, CleanMode::trash),
                         [](const auto& mode) {
                             return mode.param == CleanMode::trash ? "trash" : "permanent";
                         });

}  // namespace
}  // namespace ulvak
