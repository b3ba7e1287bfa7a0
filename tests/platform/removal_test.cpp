#include "platform/removal.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "platform/posix/removal_calls.h"
#include "support/isolation.h"
#include "support/system.h"
#include "support/temp_tree.h"
#include "support/wait.h"

namespace ulvak::platform {
namespace {

using namespace test;

Directory opened(const TempTree& tree) {
    auto folder = Directory::open(tree.path());
    EXPECT_TRUE(folder);
    return folder ? std::move(*folder) : Directory();
}

testing::AssertionResult removed(const TempTree& tree, const std::string& name) {
    const auto result = removeEntry(opened(tree), name);
    if (!result)
        return testing::AssertionFailure() << result.error().code.message() << " at " << result.error().path;
    if (entryNumber(opened(tree), name))
        return testing::AssertionFailure() << name << " is still there";
    return testing::AssertionSuccess();
}

TEST(Removal, RemovesEntriesOfEveryKindAndWhatTheyLeadToStays) {
    const TempTree tree(
        {textFile("kept", "k"), folder("keptFolder", {textFile("x", "x")}),
         folder("item", {fifo("fifo"), socket("socket"), link("toFile", "../kept"),
                         link("toFolder", "../keptFolder"), link("dangling", "nowhere"), link("loop", "loop"),
                         hardLink("second name", "kept"), sparseFile("hole", 1LL << 40U),
                         file("dense", 1'000'000), folder("empty"), textFile("locked", "l").withMode(0)})});
    EXPECT_TRUE(removed(tree, "item"));
    EXPECT_TRUE(exists(tree.path("kept")));
    EXPECT_TRUE(exists(tree.path("keptFolder/x")));
}

TEST(Removal, RemovesSingleEntriesOfEveryKind) {
    const TempTree tree({textFile("target", "t"), textFile("file", "f"), fifo("fifo"), socket("socket"),
                         link("link", "target"), folder("folder")});
    for (const char* name : {"file", "fifo", "socket", "link", "folder"})
        EXPECT_TRUE(removed(tree, name)) << name;
    EXPECT_TRUE(exists(tree.path("target")));
}

TEST(Removal, FiveThousandFoldersInOneAnother) {
    TempTree tree;
    tree.addChain("d", 5000, {textFile("bottom", "b"), folder("side")});
    EXPECT_TRUE(removed(tree, "d"));
}

TEST(Removal, GetsAlongWithFewHandles) {
    TempTree tree({folder("item")});
    // Wide and deep: every closed folder has siblings left to continue with.
    for (int chain = 0; chain < 30; ++chain) {
        const std::string name = "item/" + std::to_string(chain);
        tree.add("item", {folder(std::to_string(chain), {textFile("a", "a"), folder("b"), folder("z")})});
        std::string path = tree.path(name);
        for (int level = 0; level < 120; ++level) {
            ASSERT_EQ(::mkdir((path + "/side").c_str(), 0755), 0);
            path += "/d";
            ASSERT_EQ(::mkdir(path.c_str(), 0755), 0);
        }
    }
    tree.addChain("deep", 3000);
    for (const rlim_t handles : {rlim_t{64}, rlim_t{16}}) {
        SCOPED_TRACE(handles);
        inChild([&] {
            const rlimit few{.rlim_cur = handles, .rlim_max = handles};
            ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &few), 0);
            EXPECT_TRUE(removed(tree, handles == 64 ? "item" : "deep"));
        });
    }
}

TEST(Removal, AFolderOfAHundredThousandEntries) {
    const TempTree tree({folder("item")});
    const int handle = ::open(tree.path("item").c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    ASSERT_GE(handle, 0);
    for (int number = 0; number < 100'000; ++number) {
        const std::string name = std::to_string(number);
        const bool isFolder = number % 10 == 0;
        ASSERT_EQ(isFolder ? ::mkdirat(handle, name.c_str(), 0755) : ::symlinkat("x", handle, name.c_str()),
                  0);
    }
    ::close(handle);
    EXPECT_TRUE(removed(tree, "item"));
}

TEST(Removal, AFolderThatGainsFilesMeanwhileIsEmptiedOrSaysThatItIsNot) {
    int gone = 0;
    for (int round = 0; round < 10; ++round) {
        const TempTree tree({folder("item", {folder("sub", {textFile("a", "a"), textFile("b", "b")})})});
        const int handle = ::open(tree.path("item/sub").c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        ASSERT_GE(handle, 0);
        std::atomic<bool> isWriting = true;
        std::thread writer([&] {
            for (int number = 0; isWriting && number < 100'000; ++number) {
                const int made =
                    ::openat(handle, std::to_string(number).c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644);
                if (made < 0)
                    break;  // the folder is gone
                ::close(made);
            }
        });
        const auto result = removeEntry(opened(tree), "item");
        isWriting = false;
        writer.join();
        ::close(handle);
        gone += result ? 1 : 0;
        EXPECT_EQ(exists(tree.path("item")), !result);
        if (!result) {
            EXPECT_EQ(result.error().code, std::errc::directory_not_empty) << result.error().path;
            EXPECT_EQ(result.error().path, "item/sub");
        }
    }
    EXPECT_GT(gone, 0);
}

TEST(Removal, TwoAtOnceInTheSameTreeDoNotFail) {
    std::vector<TreeEntry> entries;
    for (int number = 0; number < 200; ++number)
        entries.push_back(
            folder(std::to_string(number), {textFile("a", "a"), folder("b", {textFile("c", "c")})}));
    const TempTree tree({folder("item", {folder("tree", entries)})});
    const Directory item = std::move(*opened(tree).openBelow("item"));
    std::array<std::expected<void, FileError>, 2> results;
    std::thread other([&] { results[0] = removeEntry(item, "tree"); });
    results[1] = removeEntry(item, "tree");
    other.join();
    EXPECT_FALSE(exists(tree.path("item/tree")));
    for (const auto& result : results) {
        // A late one may find the item gone from the start.
        if (!result) {
            EXPECT_EQ(result.error().code, std::errc::no_such_file_or_directory) << result.error().path;
        }
    }
    EXPECT_TRUE(results[0] || results[1]);
}

TEST(Removal, TakesNothingThatHasAnItemsName) {
    for (const bool isFile : {false, true}) {
        const TempTree tree({isFile ? textFile("item", "i") : folder("item", {textFile("a", "a")}),
                             isFile ? textFile("other", "o") : folder("other", {textFile("b", "b")}),
                             folder("empty"), link("link", "other")});
        const Directory parent = opened(tree);
        const auto item = entryIdentity(parent, "item");
        ASSERT_TRUE(item);
        for (const char* other : {"other", "empty", "link"}) {
            const auto before = entryIdentity(parent, other);
            ASSERT_EQ(exchange(tree.path("item"), tree.path(other)), 0);
            const auto result = removeEntry(parent, "item", *item);
            ASSERT_FALSE(result) << other;
            EXPECT_EQ(result.error().code.value(), ESTALE);
            EXPECT_EQ(entryIdentity(parent, "item"), before) << other;
            ASSERT_EQ(exchange(tree.path("item"), tree.path(other)), 0);
        }
        EXPECT_TRUE(exists(tree.path(isFile ? "other" : "other/b")));
        EXPECT_TRUE(removeEntry(parent, "item", *item));
        EXPECT_EQ(entryNames(parent), (std::vector<std::string>{"empty", "link", "other"}));
    }
}

TEST(Removal, ANumberThatIsUsedAgainIsAnotherItem) {
    const TempTree tree({textFile("item", "i")});
    const Directory parent = opened(tree);
    const auto item = entryIdentity(parent, "item");
    ASSERT_TRUE(item);
    if (!item->born)
        GTEST_SKIP() << "this file system knows no dates of birth";
    ItemIdentity later = *item;
    later.born = *item->born + std::chrono::seconds(1);
    EXPECT_FALSE(removeEntry(parent, "item", later));
    EXPECT_TRUE(exists(tree.path("item")));
}

TEST(Removal, AHeldEntryKeepsItsNumber) {
    const TempTree tree;
    const Directory parent = opened(tree);
    const auto make = [&] {
        ::close(::openat(parent.handle(), "item", O_WRONLY | O_CREAT | O_CLOEXEC, 0644));
    };
    make();
    const FileNumber number = entryIdentity(parent, "item")->number;
    const HeldEntry held(parent, "item");
    for (int time = 0; time < 100; ++time) {
        ASSERT_TRUE(removeEntry(parent, "item"));
        make();
        ASSERT_NE(entryIdentity(parent, "item")->number, number);
    }
}

TEST(Removal, AFolderThatMustStayIsNotEnteredWhereverItTurnsUp) {
    const TempTree tree({folder("item", {folder("sub", {folder("Documents", {textFile("d", "d")})})}),
                         folder("Documents2", {textFile("e", "e")})});
    const Directory parent = opened(tree);
    const std::set<FileNumber> kept = {entryIdentity(*parent.openBelow("item/sub"), "Documents")->number,
                                       entryIdentity(parent, "Documents2")->number};
    const auto inside = removeEntry(parent, "item", *entryIdentity(parent, "item"), kept);
    ASSERT_FALSE(inside);
    EXPECT_EQ(inside.error().path, "item/sub/Documents");
    EXPECT_TRUE(exists(tree.path("item/sub/Documents/d")));
    EXPECT_FALSE(removeEntry(parent, "Documents2", *entryIdentity(parent, "Documents2"), kept));
    EXPECT_TRUE(exists(tree.path("Documents2/e")));
}

TEST(Removal, SaysWhatIsNotThere) {
    const TempTree tree;
    const auto result = removeEntry(opened(tree), "gone");
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error().code, std::errc::no_such_file_or_directory);
    EXPECT_EQ(result.error().path, "gone");
}

TEST(Removal, AnotherMountOfTheSameDiskIsNotEntered) {
    if (const auto reason = whyNoPrivateMounts())
        GTEST_SKIP() << *reason;
    const TempTree tree(
        {folder("item", {folder("again"), textFile("a", "a")}), folder("data", {textFile("d", "d")})});
    withPrivateMounts([&] {
        ASSERT_TRUE(mountAgain(tree.path("data"), tree.path("item/again")));
        const auto result = removeEntry(opened(tree), "item");
        ASSERT_FALSE(result);
        EXPECT_EQ(result.error().code, std::errc::device_or_resource_busy);
        EXPECT_EQ(result.error().path, "item/again");
        EXPECT_TRUE(exists(tree.path("data/d")));
    });
}

/// Folders of a tree marked as having their contents elsewhere. They are empty on disk.
class Elsewhere {
public:
    explicit Elsewhere(const TempTree& tree) {
        for (const char* path : {"away", "item/away", "item/room/away"})
            numbers_.push_back(numberOf(::open(tree.path(path).c_str(), O_RDONLY | O_CLOEXEC), true));
        calls.read = [this](EntryReader& reader,
                            const Directory& folder) -> std::expected<bool, std::error_code> {
            if (std::ranges::find(numbers_, numberOf(folder.handle(), false)) == numbers_.end())
                return reader.readPiece(folder);
            return std::unexpected(std::error_code(EDEADLK, std::generic_category()));
        };
        calls.removePlaceholder = [this](int parent, const char* name) {
            removed.emplace_back(name);
            errno = refusal;
            return refusal != 0 ? -1 : ::unlinkat(parent, name, AT_REMOVEDIR);
        };
    }

    posix::RemovalCalls calls;
    std::vector<std::string> removed;
    int refusal = 0;

private:
    static ino_t numberOf(int handle, bool closes) {
        struct stat info{};
        (void)::fstat(handle, &info);
        if (closes)
            ::close(handle);
        return info.st_ino;
    }

    std::vector<ino_t> numbers_;
};

std::vector<TreeEntry> withPlaceholders() {
    return {folder("away"),
            folder("item", {folder("away"), folder("room", {folder("away"), textFile("a", "a")})})};
}

TEST(Removal, FoldersWhoseContentsLiveElsewhereGoUnfetched) {
    const TempTree tree(withPlaceholders());
    Elsewhere elsewhere(tree);
    EXPECT_TRUE(posix::removeEntry(opened(tree), "item", elsewhere.calls));
    EXPECT_FALSE(exists(tree.path("item")));
    EXPECT_EQ(elsewhere.removed, (std::vector<std::string>{"away", "away"}));
    EXPECT_TRUE(posix::removeEntry(opened(tree), "away", elsewhere.calls)) << "as the item itself";
    EXPECT_FALSE(exists(tree.path("away")));
}

TEST(Removal, SaysWhichContentsLiveElsewhereWhereTheyCannotGo) {
    for (const int refusal : {ENOTSUP, EACCES}) {
        const TempTree tree(withPlaceholders());
        Elsewhere elsewhere(tree);
        elsewhere.refusal = refusal;
        const auto result = posix::removeEntry(*opened(tree).openBelow("item"), "room", elsewhere.calls);
        ASSERT_FALSE(result);
        EXPECT_EQ(result.error().code, std::errc::resource_deadlock_would_occur);
        EXPECT_EQ(result.error().path, "room/away");
        EXPECT_TRUE(exists(tree.path("item/room/away")));
        EXPECT_FALSE(posix::removeEntry(opened(tree), "away", elsewhere.calls));
    }
}

TEST(Removal, AFolderThatOthersRemoveMeanwhileMayHaveLivedElsewhere) {
    const TempTree tree(withPlaceholders());
    Elsewhere elsewhere(tree);
    elsewhere.calls.removePlaceholder = [](int parent, const char* name) {
        EXPECT_EQ(::unlinkat(parent, name, AT_REMOVEDIR), 0);
        errno = ENOENT;
        return -1;
    };
    EXPECT_TRUE(posix::removeEntry(opened(tree), "item", elsewhere.calls));
    EXPECT_FALSE(exists(tree.path("item")));
}

/// Moves the item aside before its listing ends, as a concurrent removal does.
posix::RemovalCalls withAnotherThatMovesTheItemAside(const TempTree& tree) {
    posix::RemovalCalls calls;
    calls.read = [&tree](EntryReader& reader, const Directory& folder) {
        const auto isThere = reader.readPiece(folder);
        if (isThere == false) {
            EXPECT_EQ(::rename(tree.path("item").c_str(), tree.path("aside").c_str()), 0);
        }
        return isThere;
    };
    return calls;
}

TEST(Removal, WaitsForAnotherThatHasMovedTheItemAside) {
    const TempTree tree({folder("item", {textFile("a", "a")})});
    const auto calls = withAnotherThatMovesTheItemAside(tree);
    std::jthread other([&] {
        ASSERT_TRUE(waitUntil([&] { return exists(tree.path("aside")); }));
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        EXPECT_EQ(::rmdir(tree.path("aside").c_str()), 0);
    });
    const auto result = posix::removeEntry(opened(tree), "item", calls);
    EXPECT_TRUE(result) << result.error().code.message();
}

TEST(Removal, AnItemThatStaysAsideIsNotGone) {
    const TempTree tree({folder("item", {textFile("a", "a")})});
    const auto result = posix::removeEntry(opened(tree), "item", withAnotherThatMovesTheItemAside(tree));
    ASSERT_FALSE(result);
    EXPECT_EQ(result.error().code.value(), ESTALE);
    EXPECT_TRUE(exists(tree.path("aside")));
}

TEST(Removal, RemovesAnEmptyFolderOnly) {
    const TempTree tree({folder("empty"), folder("full", {textFile("a", "a")}), textFile("file", "f"),
                         link("link", "empty")});
    const Directory folder = opened(tree);
    EXPECT_FALSE(removeEmptyFolder(folder, "full"));
    EXPECT_FALSE(removeEmptyFolder(folder, "file"));
    EXPECT_FALSE(removeEmptyFolder(folder, "link"));
    EXPECT_FALSE(removeEmptyFolder(folder, "gone"));
    EXPECT_TRUE(removeEmptyFolder(folder, "empty"));
    EXPECT_EQ(entryNames(folder), (std::vector<std::string>{"file", "full", "link"}));
}

}  // namespace
}  // namespace ulvak::platform
