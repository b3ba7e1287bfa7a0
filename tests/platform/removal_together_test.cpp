#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <new>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "platform/posix/removal_calls.h"
#include "platform/posix/system.h"
#include "support/failing_allocation.h"
#include "support/isolation.h"
#include "support/system.h"
#include "support/temp_tree.h"

// One removal by several threads.

namespace ulvak::platform {
namespace {

using namespace test;

Directory opened(const TempTree& tree) {
    auto folder = Directory::open(tree.path());
    EXPECT_TRUE(folder);
    return folder ? std::move(*folder) : Directory();
}

/// This many threads from the first folder on.
posix::RemovalCalls together(std::size_t workers = 4) {
    posix::RemovalCalls calls;
    calls.workers = workers;
    calls.foldersAlone = 1;
    return calls;
}

std::expected<void, FileError> removeItem(const TempTree& tree, const posix::RemovalCalls& calls,
                                          const std::set<FileNumber>& kept = {}) {
    const Directory parent = opened(tree);
    return posix::removeTree(parent, "item", entryIdentity(parent, "item").value(), kept, calls);
}

testing::AssertionResult isRemoved(const TempTree& tree, const posix::RemovalCalls& calls) {
    const auto result = removeItem(tree, calls);
    if (!result)
        return testing::AssertionFailure() << result.error().code.message() << " at " << result.error().path;
    if (entryNumber(opened(tree), "item"))
        return testing::AssertionFailure() << "it is still there";
    return testing::AssertionSuccess();
}

/// Folders containing files and folders, three levels deep.
std::vector<TreeEntry> bushy(int count, std::optional<mode_t> mode = std::nullopt) {
    const auto made = [mode](std::string name, std::vector<TreeEntry> entries) {
        TreeEntry entry = folder(std::move(name), std::move(entries));
        entry.mode = mode;
        return entry;
    };
    std::vector<TreeEntry> entries;
    for (int number = 0; number < count; ++number)
        entries.push_back(
            made(std::to_string(number), {textFile("a", "a"), made("b", {textFile("c", "c"), made("d", {})}),
                                          made("e", {link("up", ".."), textFile("f", "f")})}));
    return entries;
}

/// Makes the first four threads that list folders with these numbers wait for each other.
class Meeting {
public:
    Meeting(std::set<FileNumber> places, posix::RemovalCalls& calls) : places_(std::move(places)) {
        calls.read = [this](EntryReader& reader, const Directory& folder) {
            struct stat info{};
            if (::fstat(folder.handle(), &info) == 0)
                await({posix::volumeNumber(info), info.st_ino});
            return reader.readPiece(folder);
        };
    }

private:
    void await(const FileNumber& place) {
        std::unique_lock lock(mutex_);
        if (places_.erase(place) == 0)
            return;
        condition_.notify_all();
        condition_.wait_for(lock, std::chrono::seconds(10), [&] { return isComplete(); });
    }

    [[nodiscard]] bool isComplete() const { return places_.size() + 4 <= number_; }

    std::set<FileNumber> places_;
    std::size_t number_ = places_.size();
    std::mutex mutex_;
    std::condition_variable condition_;
};

TEST(RemovalTogether, SeveralThreadsTakePartInOneTree) {
    const TempTree tree({folder("item", bushy(50)), textFile("beside", "b")});
    const auto itemNumber = entryNumber(opened(tree), "item");
    std::mutex mutex;
    std::condition_variable condition;
    std::set<std::thread::id> threads;
    bool isPatient = true;
    posix::RemovalCalls calls = together();
    // Below the item, nobody continues until a second thread has arrived.
    calls.read = [&](EntryReader& reader, const Directory& folder) {
        struct stat info{};
        if (::fstat(folder.handle(), &info) == 0 && info.st_ino != itemNumber->second) {
            std::unique_lock lock(mutex);
            threads.insert(std::this_thread::get_id());
            condition.notify_all();
            if (isPatient)
                isPatient =
                    condition.wait_for(lock, std::chrono::seconds(30), [&] { return threads.size() > 1; });
        }
        return reader.readPiece(folder);
    };
    EXPECT_TRUE(isRemoved(tree, calls));
    EXPECT_GT(threads.size(), 1U);
    EXPECT_EQ(entryNames(opened(tree)), std::vector<std::string>{"beside"});
}

TEST(RemovalTogether, EveryNumberOfThreadsLeavesNothing) {
    for (int round = 0; round < 20; ++round) {
        for (const std::size_t workers : {1U, 2U, 8U}) {
            const TempTree tree({folder("item", bushy(30))});
            ASSERT_TRUE(isRemoved(tree, together(workers))) << workers;
        }
    }
}

TEST(RemovalTogether, TellsTheFailureThatASingleThreadComesToFirst) {
    const auto failure = [](std::size_t workers) {
        const TempTree tree({folder("item", bushy(40))});
        const Directory item = std::move(*opened(tree).openBelow("item"));
        std::set<FileNumber> kept;
        for (const char* number : {"3", "17", "31"})
            kept.insert(entryNumber(*item.openBelow((std::string(number) + "/b").c_str()), "d").value());
        const auto result = removeItem(tree, together(workers), kept);
        for (const char* number : {"3", "17", "31"})
            EXPECT_TRUE(item.openBelow((std::string(number) + "/b/d").c_str())) << number;
        return result ? std::string() : result.error().path;
    };
    const std::string expected = failure(1);
    ASSERT_TRUE(expected.ends_with("/b/d")) << expected;
    for (int round = 0; round < 60; ++round)
        ASSERT_EQ(failure(4), expected) << round;
}

TEST(RemovalTogether, ALaterFailureThatComesSoonerIsNotTold) {
    const auto tree = [] {
        return std::vector{folder("item", {folder("a", {folder("kept")}), folder("b", {folder("kept")})})};
    };
    const auto keptIn = [](const TempTree& all) {
        std::set<FileNumber> kept;
        for (const char* path : {"item/a", "item/b"})
            kept.insert(entryNumber(*opened(all).openBelow(path), "kept").value());
        return kept;
    };
    const TempTree alone(tree());
    const std::string expected = removeItem(alone, together(1), keptIn(alone)).error().path;
    const std::string first = expected.substr(0, expected.rfind('/'));
    for (int round = 0; round < 10; ++round) {
        const TempTree both(tree());
        const auto number = entryNumber(opened(both), "item").value();
        const auto slow = entryNumber(*opened(both).openBelow("item"), first.substr(5)).value();
        posix::RemovalCalls calls = together();
        calls.read = [&](EntryReader& reader, const Directory& folder) {
            struct stat info{};
            const bool isSlow = ::fstat(folder.handle(), &info) == 0 && info.st_ino == slow.second;
            if (isSlow)
                std::this_thread::sleep_for(std::chrono::milliseconds(30));
            return reader.readPiece(folder);
        };
        const auto result = removeItem(both, calls, keptIn(both));
        ASSERT_FALSE(result);
        ASSERT_EQ(result.error().path, expected) << round;
        ASSERT_EQ(entryNumber(opened(both), "item"), number);
    }
}

TEST(RemovalTogether, AFolderThatAllWantToChangeAtOnceIsOpenedToAll) {
    const std::vector<std::string> names = {"a", "b", "c", "d", "e", "f", "g", "h"};
    std::vector<TreeEntry> folders;
    for (const std::string& name : names)
        folders.push_back(folder(name));
    for (int round = 0; round < 200; ++round) {
        const TempTree tree({folder("item", {folder("readOnly", folders).withMode(0500)})},
                            TempTree::Owner::unprivileged);
        if (const auto reason = whyNotUnprivileged(tree.path()))
            GTEST_SKIP() << *reason;
        std::set<FileNumber> places;
        for (const std::string& name : names)
            places.insert(entryNumber(*opened(tree).openBelow("item/readOnly"), name).value());
        ASSERT_TRUE(asUnprivileged([&] {
            posix::RemovalCalls calls = together();
            const Meeting meeting(places, calls);
            EXPECT_TRUE(isRemoved(tree, calls));
        }));
    }
}

/// Folders of random shape, with fewer levels than are kept open; the names do not reveal the shape.
std::vector<std::string> makeFolders(const TempTree& tree, unsigned seed) {
    constexpr int count = 150;
    constexpr std::size_t deepest = 12;
    std::mt19937 random(seed);
    std::vector<std::pair<std::string, std::size_t>> made = {{"item", 0}};
    std::vector<std::string> paths;
    for (int number = 0; number < count; ++number) {
        const auto [around, depth] = made[made.size() - 1 - random() % std::min<std::size_t>(made.size(), 8)];
        if (depth == deepest)
            continue;
        made.emplace_back(around + "/" + std::to_string(number), depth + 1);
        paths.push_back(made.back().first);
        EXPECT_EQ(::mkdir(tree.path(paths.back()).c_str(), 0755), 0);
    }
    return paths;
}

TEST(RemovalTogether, InTreesOfAnyShapeWhatIsKeptStaysAndTheSameFailureIsTold) {
    for (unsigned seed = 1; seed <= 40; ++seed) {
        std::string expected;
        for (const std::size_t workers : {1U, 4U, 8U}) {
            const TempTree tree({folder("item")});
            const std::vector<std::string> paths = makeFolders(tree, seed);
            std::set<FileNumber> kept;
            std::vector<std::string> keptPaths;
            for (std::size_t i = seed % 7; i < paths.size(); i += 37) {
                keptPaths.push_back(paths[i]);
                kept.insert(entryNumber(opened(tree), paths[i]).value());
            }
            const auto result = removeItem(tree, together(workers), kept);
            ASSERT_FALSE(result) << seed;
            if (workers == 1)
                expected = result.error().path;
            ASSERT_EQ(result.error().path, expected) << seed;
            for (const std::string& path : keptPaths)
                EXPECT_TRUE(entryNumber(opened(tree), path)) << seed << ' ' << path;
        }
    }
}

TEST(RemovalTogether, FoldersThatNobodyMayChangeGo) {
    for (int round = 0; round < 20; ++round) {
        for (const mode_t mode : {mode_t{0500}, mode_t{0}}) {
            const TempTree tree({folder("item", {folder("readOnly", bushy(20, mode)).withMode(mode)})},
                                TempTree::Owner::unprivileged);
            if (const auto reason = whyNotUnprivileged(tree.path()))
                GTEST_SKIP() << *reason;
            ASSERT_TRUE(asUnprivileged([&] { EXPECT_TRUE(isRemoved(tree, together())); })) << mode;
        }
    }
}

TEST(RemovalTogether, GetsAlongWithFewHandles) {
    for (const rlim_t handles : {rlim_t{80}, rlim_t{40}, rlim_t{24}}) {
        const TempTree tree({folder("item")});
        for (int chain = 0; chain < 10; ++chain) {
            std::string path = tree.path("item/" + std::to_string(chain));
            for (int level = 0; level < 60; ++level) {
                ASSERT_EQ(::mkdir(path.c_str(), 0755), 0);
                ASSERT_EQ(::mkdir((path + "/a").c_str(), 0755), 0);
                ASSERT_EQ(::mkdir((path + "/a/b").c_str(), 0755), 0);
                ASSERT_EQ(::mkdir((path + "/z").c_str(), 0755), 0);
                path += "/d";
            }
        }
        inChild([&] {
            const rlimit few{.rlim_cur = handles, .rlim_max = handles};
            ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &few), 0);
            EXPECT_TRUE(isRemoved(tree, together(8))) << handles;
        });
    }
}

TEST(RemovalTogether, AThreadThatCannotBeStartedIsNotMissed) {
    const TempTree tree({folder("item", bushy(20))}, TempTree::Owner::unprivileged);
    if (const auto reason = whyNotUnprivileged(tree.path()))
        GTEST_SKIP() << *reason;
    asUnprivileged([&] {
        const rlimit none{.rlim_cur = 0, .rlim_max = 0};
        ASSERT_EQ(::setrlimit(RLIMIT_NPROC, &none), 0);
        EXPECT_THROW(std::thread([] {}).join(), std::system_error);
        EXPECT_TRUE(isRemoved(tree, together()));
    });
}

TEST(RemovalTogether, AMountAmongManyFoldersIsNotEntered) {
    if (const auto reason = whyNoPrivateMounts())
        GTEST_SKIP() << *reason;
    const TempTree tree({folder("item", bushy(30)), folder("data", bushy(3))});
    withPrivateMounts([&] {
        ASSERT_TRUE(mountAgain(tree.path("data"), tree.path("item/7/b/d")));
        const auto result = removeItem(tree, together());
        ASSERT_FALSE(result);
        EXPECT_EQ(result.error().code, std::errc::device_or_resource_busy);
        EXPECT_EQ(result.error().path, "item/7/b/d");
        EXPECT_EQ(textOf(tree.path("data/2/e/f")), "f");
    });
}

TEST(RemovalTogether, EveryAllocationMayFailAndTheRemovalEnds) {
    for (const auto which : {FailingAllocation::Which::one, FailingAllocation::Which::andAllAfter}) {
        const auto handles = posix::openHandles();
        int ended = 0;
        for (std::int64_t number = 0;; number += 1 + number / 32) {
            const TempTree tree({folder("item", bushy(6))});
            const Directory parent = opened(tree);
            const ItemIdentity item = entryIdentity(parent, "item").value();
            const posix::RemovalCalls calls = together();
            bool isDone = false;
            FailingAllocation failing(number, which);
            try {
                isDone = posix::removeTree(parent, "item", item, {}, calls).has_value();
            } catch (const std::bad_alloc&) {
                ++ended;
            }
            failing.stop();
            ASSERT_EQ(isDone, !entryNumber(parent, "item")) << number;
            if (!failing.hasFailed())
                break;
        }
        EXPECT_GT(ended, 10);
        EXPECT_EQ(posix::openHandles(), handles);
    }
}

}  // namespace
}  // namespace ulvak::platform
