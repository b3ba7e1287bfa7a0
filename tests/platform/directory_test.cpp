#include "platform/directory.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <climits>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "platform/files.h"
#include "support/isolation.h"
#include "support/system.h"
#include "support/temp_tree.h"

namespace ulvak::platform {
namespace {

using namespace std::chrono_literals;
using test::fifo;
using test::file;
using test::folder;
using test::link;
using test::openHandles;
using test::sparseFile;
using test::TempTree;
using testing::ElementsAre;
using testing::IsEmpty;

struct Seen {
    EntryKind kind = EntryKind::file;
    std::int64_t allocatedSize = 0;
    std::optional<FileTime> modified;
};

/// The remaining entries of a listing; each name must occur once.
std::map<std::string, Seen> rest(EntryReader& reader) {
    std::map<std::string, Seen> seen;
    while (const DirectoryEntry* entry = reader.next()) {
        const Seen what{
            .kind = entry->kind, .allocatedSize = entry->allocatedSize, .modified = entry->modified};
        EXPECT_TRUE(seen.emplace(entry->name, what).second) << "twice: " << entry->name;
    }
    return seen;
}

/// The names of a whole listing in order, each with the number of its piece.
using Order = std::vector<std::pair<std::size_t, std::string>>;

void takeRest(EntryReader& reader, Order& order) {
    while (const DirectoryEntry* entry = reader.next())
        order.emplace_back(reader.piece(), entry->name);
    EXPECT_FALSE(reader.error());
}

std::map<std::string, Seen> listing(const Directory& directory) {
    EntryReader reader;
    reader.start(directory);
    auto seen = rest(reader);
    EXPECT_FALSE(reader.error()) << reader.error().message();
    return seen;
}

std::map<std::string, Seen> listing(const std::string& path) {
    const auto directory = Directory::open(path);
    if (!directory) {
        ADD_FAILURE() << path << ": " << directory.error().message();
        return {};
    }
    return listing(*directory);
}

std::set<std::string> names(const std::map<std::string, Seen>& seen) {
    std::set<std::string> result;
    for (const auto& [name, what] : seen)
        result.insert(name);
    return result;
}

Directory opened(const std::string& path) {
    auto directory = Directory::open(path);
    EXPECT_TRUE(directory) << path;
    return directory ? std::move(*directory) : Directory();
}

TEST(Directory, OpensAFolderAndFollowsALinkThatNamesOne) {
    const TempTree tree({folder("a", {file("inside")}), link("l", "a")});
    EXPECT_THAT(names(listing(tree.path("a"))), ElementsAre("inside"));
    EXPECT_THAT(names(listing(tree.path("l"))), ElementsAre("inside"));
}

TEST(Directory, SaysWhyAFolderCannotBeOpened) {
    const TempTree tree({file("file"), fifo("fifo"), link("loop", "loop"), link("nowhere", "absent")});
    EXPECT_EQ(Directory::open(tree.path("absent")).error(), std::errc::no_such_file_or_directory);
    EXPECT_EQ(Directory::open(tree.path("nowhere")).error(), std::errc::no_such_file_or_directory);
    EXPECT_EQ(Directory::open(tree.path("file")).error(), std::errc::not_a_directory);
    EXPECT_EQ(Directory::open(tree.path("fifo")).error(), std::errc::not_a_directory)
        << "and does not wait for a writer";
    EXPECT_EQ(Directory::open(tree.path("loop")).error(), std::errc::too_many_symbolic_link_levels);
    EXPECT_EQ(Directory::open("").error(), std::errc::no_such_file_or_directory);
}

TEST(Directory, SaysThatAFolderMayNotBeListed) {
    const TempTree tree(
        {folder("locked", {folder("a")}).withMode(0), folder("only-through", {folder("a")}).withMode(0111)});
    if (const auto reason = test::whyNotUnprivileged(tree.path()))
        GTEST_SKIP() << *reason;
    test::asUnprivileged([&] {
        EXPECT_EQ(Directory::open(tree.path("locked")).error(), std::errc::permission_denied);
        EXPECT_EQ(Directory::open(tree.path("locked/a")).error(), std::errc::permission_denied);
        EXPECT_EQ(Directory::open(tree.path("only-through")).error(), std::errc::permission_denied);
        const Directory top = opened(tree.path());
        EXPECT_EQ(top.openBelow("locked").error(), std::errc::permission_denied);
        EXPECT_TRUE(top.openBelow("only-through/a"));
        EXPECT_EQ(listing(top).at("locked").kind, EntryKind::directory) << "it can still be seen from above";
    });
}

TEST(Directory, OpensFoldersOfOtherUsers) {
    // Only the owner may request a listing that does not update the access time.
    const TempTree tree({folder("a", {file("inside")})});
    if (const auto reason = test::whyNotUnprivileged(tree.path()))
        GTEST_SKIP() << *reason;
    test::asUnprivileged([&] {
        EXPECT_THAT(names(listing(tree.path("a"))), ElementsAre("inside"));
        const auto below = opened(tree.path()).openBelow("a");
        ASSERT_TRUE(below);
        EXPECT_THAT(names(listing(*below)), ElementsAre("inside"));
    });
}

TEST(Directory, IsClosedOnceAndByItsLastOwner) {
    const TempTree tree({folder("a")});
    const std::size_t before = openHandles();
    Directory first = opened(tree.path());
    EXPECT_EQ(openHandles(), before + 1);
    Directory second = std::move(first);
    EXPECT_FALSE(first.isOpen());  // NOLINT(bugprone-use-after-move): the moved-from state is specified
    EXPECT_TRUE(second.isOpen());
    EXPECT_EQ(openHandles(), before + 1);
    second = opened(tree.path("a"));
    EXPECT_EQ(openHandles(), before + 1) << "the folder assigned over is closed";
    second.close();
    second.close();
    EXPECT_FALSE(second.isOpen());
    EXPECT_EQ(openHandles(), before);
}

TEST(Directory, OpensBelowByOneNameOrSeveral) {
    const TempTree tree({folder("a", {folder("b", {folder("c", {file("inside")})})})});
    const Directory top = opened(tree.path());
    for (const char* path : {"a/b/c", "a//b/c", "a/b/c/"}) {
        const auto below = top.openBelow(path);
        ASSERT_TRUE(below) << path;
        EXPECT_THAT(names(listing(*below)), ElementsAre("inside")) << path;
    }
    EXPECT_TRUE(top.openBelow("a"));
}

TEST(Directory, OpensNothingBelowThatIsNoFolder) {
    const TempTree tree({file("file"), fifo("fifo"), test::socket("socket"), folder("a", {file("file")})});
    const Directory top = opened(tree.path());
    for (const char* path : {"file", "fifo", "a/file", "a/file/b"})
        EXPECT_EQ(top.openBelow(path).error(), std::errc::not_a_directory) << path;
    EXPECT_FALSE(top.openBelow("socket")) << "some systems say first that it is none";
    EXPECT_EQ(top.openBelow("absent").error(), std::errc::no_such_file_or_directory);
    EXPECT_EQ(top.openBelow("a/absent/b").error(), std::errc::no_such_file_or_directory);
}

TEST(Directory, FollowsNoLinkBelow) {
    const TempTree outside({folder("room", {file("outside")})});
    const TempTree tree({folder("real", {folder("room")}), link("out", outside.path()), link("in", "real"),
                         link("self", "."), folder("a", {link("out", outside.path("room"))})});
    const Directory top = opened(tree.path());
    for (const char* path :
         {"out", "out/room", "in", "in/room", "self", "self/real", "a/out", "self/self/real/room"})
        EXPECT_FALSE(top.openBelow(path)) << path;
    EXPECT_TRUE(top.openBelow("real/room"));
}

TEST(Directory, IsNotLuredOutsideByAFolderThatIsSwappedForALink) {
    const TempTree outside({folder("room", {file("outside")})});
    const TempTree tree({folder("door", {folder("room", {file("inside")})}), link("trap", outside.path())});
    const Directory top = opened(tree.path());
    std::atomic<bool> done = false;
    std::thread swapper([&] {
        while (!done)
            test::exchange(tree.path("door"), tree.path("trap"));
    });
    int entered = 0;
    for (int i = 0; i < 2000; ++i) {
        if (const auto room = top.openBelow("door/room")) {
            ++entered;
            EXPECT_THAT(names(listing(*room)), ElementsAre("inside"));
        }
    }
    done = true;
    swapper.join();
    ::testing::Test::RecordProperty("entered", entered);
}

TEST(Directory, FindsWhatIsBelowWhoeverRenamesItsParents) {
    const TempTree tree({folder("before", {folder("a", {folder("b", {file("inside")})})})});
    const Directory held = opened(tree.path("before/a"));
    ASSERT_EQ(std::rename(tree.path("before").c_str(), tree.path("after").c_str()), 0);
    const auto below = held.openBelow("b");
    ASSERT_TRUE(below);
    EXPECT_THAT(names(listing(*below)), ElementsAre("inside"));
}

TEST(Directory, OpensPathsOfEveryLengthAroundTheLongestThatOneCallTakes) {
    TempTree tree;
    const std::string name(50, 'n');
    const std::string chain = tree.addChain(name, 90);
    const Directory top = opened(tree.path());
    // Moves the end of the path across the limit, byte by byte.
    for (std::size_t length = PATH_MAX - 11; length <= PATH_MAX + 9; ++length) {
        const std::size_t whole = (length - 2) / 51 * 51;
        const std::string parent = chain.substr(0, whole - 1);
        const std::string last(length - whole, 'x');
        ASSERT_EQ(parent.size() + 1 + last.size(), length);
        tree.add(parent, {folder(last, {file(std::to_string(length))})});
        const auto found = top.openBelow((parent + "/" + last).c_str());
        ASSERT_TRUE(found) << length << ": " << found.error().message();
        EXPECT_THAT(names(listing(*found)), ElementsAre(std::to_string(length)));
    }
}

TEST(Directory, OpensPathsFarBeyondWhatOneCallTakes) {
    TempTree tree;
    const std::string chain = tree.addChain(std::string(200, 'n'), 500, {file("last")});
    ASSERT_GT(chain.size(), 100'000U);
    const std::size_t before = openHandles();
    {
        const auto bottom = opened(tree.path()).openBelow(chain.c_str());
        ASSERT_TRUE(bottom) << bottom.error().message();
        EXPECT_THAT(names(listing(*bottom)), ElementsAre("last"));
    }
    EXPECT_FALSE(opened(tree.path()).openBelow((chain + "/absent").c_str()));
    EXPECT_EQ(openHandles(), before) << "the folders passed on the way are closed";
}

TEST(Directory, OpensFiveThousandNestedFolders) {
    TempTree tree;
    const std::string chain = tree.addChain("d", 5000, {file("last")});
    const auto bottom = opened(tree.path()).openBelow(chain.c_str());
    ASSERT_TRUE(bottom) << bottom.error().message();
    EXPECT_THAT(names(listing(*bottom)), ElementsAre("last"));
}

TEST(Directory, FollowsNoLinkDeepInALongPath) {
    const TempTree outside({folder("room")});
    TempTree tree;
    const std::string chain = tree.addChain(std::string(200, 'n'), 50, {link("out", outside.path())});
    const Directory top = opened(tree.path());
    EXPECT_FALSE(top.openBelow((chain + "/out").c_str()));
    EXPECT_FALSE(top.openBelow((chain + "/out/room").c_str()));
}

TEST(Directory, DoesNotOpenANameLongerThanAnyCanBe) {
    const TempTree tree;
    const Directory top = opened(tree.path());
    EXPECT_FALSE(top.openBelow(std::string(300, 'n').c_str()));
    EXPECT_FALSE(top.openBelow(std::string(10'000, 'n').c_str()));
    EXPECT_FALSE(top.openBelow((std::string(10'000, 'n') + "/a").c_str()));
}

TEST(Directory, EntersNoMountBelow) {
    if (const auto reason = test::whyNoPrivateMounts())
        GTEST_SKIP() << *reason;
    TempTree tree({folder("memory"), folder("original", {folder("room", {file("x")})}), folder("again"),
                   file("cover"), file("covered", 1'000'000)});
    test::withPrivateMounts([&] {
        ASSERT_TRUE(test::mountMemory(tree.path("memory")));
        ASSERT_TRUE(test::mountAgain(tree.path("original"), tree.path("again")));
        ASSERT_TRUE(test::mountAgain(tree.path("cover"), tree.path("covered")));
        tree.add("memory", {folder("room", {file("y")})});

        const Directory top = opened(tree.path());
        const auto seen = listing(top);
        EXPECT_EQ(seen.at("memory").kind, EntryKind::volume);
        EXPECT_EQ(seen.at("again").kind, EntryKind::volume) << "another view of the same volume";
        EXPECT_EQ(seen.at("original").kind, EntryKind::directory);
        EXPECT_EQ(seen.at("covered").kind, EntryKind::file);
        for (const char* path : {"memory", "memory/room", "again", "again/room"})
            EXPECT_FALSE(top.openBelow(path)) << path;
        EXPECT_TRUE(top.openBelow("original/room"));
        EXPECT_THAT(names(listing(tree.path("memory"))), ElementsAre("room"))
            << "by its own path it is opened";
    });
}

TEST(EntryReader, TellsEveryKindOfEntry) {
    TempTree tree({folder("folder", {file("deep", 1'000'000)}), file("file", 3'000'000),
                   sparseFile("hole", 1'000'000'000), file("empty"), link("to-folder", "folder"),
                   link("to-file", "file"), link("nowhere", "absent"), fifo("fifo"), test::socket("socket"),
                   file(".hidden", 4096), test::hardLink("second", "file")});
    const auto seen = listing(tree.path());
    EXPECT_EQ(seen.size(), 11U);
    EXPECT_EQ(seen.at("folder").kind, EntryKind::directory);
    for (const char* name : {"file", "hole", "empty", "fifo", "socket", ".hidden", "second"})
        EXPECT_EQ(seen.at(name).kind, EntryKind::file) << name;
    for (const char* name : {"to-folder", "to-file", "nowhere"})
        EXPECT_EQ(seen.at(name).kind, EntryKind::link) << name;
    for (const char* name : {"file", "hole", "empty", "fifo", "socket", ".hidden", "second"})
        EXPECT_EQ(seen.at(name).allocatedSize, tree.allocated(name)) << name;
    EXPECT_EQ(seen.at("folder").allocatedSize, 0) << "what a folder's own list takes is not counted";
}

TEST(EntryReader, TellsOfWhatIsOnlyListedItsNameAndItsKindAlone) {
    const TempTree tree({folder("folder", {file("deep")}), file("file", 3'000'000), link("link", "file"),
                         link("nowhere", "absent"), fifo("fifo"), test::socket("socket")});
    const Directory directory = opened(tree.path());
    EntryReader listed(Attributes::listed);
    listed.start(directory);
    std::map<std::string, bool> isRegular;
    while (const DirectoryEntry* entry = listed.next()) {
        isRegular[std::string(entry->name)] = entry->isRegularFile;
        EXPECT_EQ(entry->terminatedName(), std::string(entry->name));
        EXPECT_EQ(entry->kind, entry->name == "folder"                             ? EntryKind::directory
                               : entry->name == "link" || entry->name == "nowhere" ? EntryKind::link
                                                                                   : EntryKind::file);
        EXPECT_EQ(entry->allocatedSize, 0) << entry->name;
        EXPECT_EQ(entry->modified, std::nullopt) << entry->name;
    }
    EXPECT_FALSE(listed.error());
    const std::map<std::string, bool> expected = {{"folder", false},  {"file", true},  {"link", false},
                                                  {"nowhere", false}, {"fifo", false}, {"socket", false}};
    EXPECT_EQ(isRegular, expected);

    ASSERT_EQ(::lseek(directory.handle(), 0, SEEK_SET), 0);
    EntryReader all;
    all.start(directory);
    isRegular.clear();
    while (const DirectoryEntry* entry = all.next())
        isRegular[std::string(entry->name)] = entry->isRegularFile;
    EXPECT_EQ(isRegular, expected) << "who asks for more knows this too";
}

TEST(EntryReader, ReadsOnePieceAfterTheOtherFromWhereTheFolderStands) {
    TempTree tree({folder("big"), folder("small", {file("inside")})});
    constexpr std::size_t count = 5'000;
    for (std::size_t number = 0; number < count; ++number)
        tree.add("big", {file("a name that is long enough for several pieces " + std::to_string(number))});
    const Directory big = opened(tree.path("big"));
    const Directory small = opened(tree.path("small"));
    EntryReader reader(Attributes::listed);
    for (const char* round : {"first", "again"}) {
        std::set<std::string> seen;
        std::size_t pieces = 0;
        for (auto piece = reader.readPiece(big); piece && *piece; piece = reader.readPiece(big)) {
            ++pieces;
            while (const DirectoryEntry* entry = reader.nextOfPiece())
                EXPECT_TRUE(seen.emplace(entry->name).second) << "twice: " << entry->name;
            // Reading another folder between two pieces loses nothing from the first.
            ASSERT_EQ(::lseek(small.handle(), 0, SEEK_SET), 0);
            ASSERT_TRUE(reader.readPiece(small).value_or(false));
            const DirectoryEntry* inside = reader.nextOfPiece();
            ASSERT_NE(inside, nullptr);
            EXPECT_EQ(inside->name, "inside");
            ASSERT_FALSE(reader.readPiece(small).value_or(true));
            EXPECT_EQ(reader.nextOfPiece(), nullptr);
        }
        EXPECT_EQ(seen.size(), count) << round;
        EXPECT_GT(pieces, 1U);
        ASSERT_EQ(::lseek(big.handle(), 0, SEEK_SET), 0);
    }
    EXPECT_EQ(reader.readPiece(Directory()).error(), std::errc::bad_file_descriptor);
}

TEST(EntryReader, TellsTheNamesOfOneFileFromOthers) {
    const TempTree tree({file("a", 4096), file("b", 4096), folder("f", {test::hardLink("a again", "a")}),
                         test::hardLink("second", "a"), fifo("pipe"), test::hardLink("pipe too", "pipe")});
    struct Names {
        std::uint32_t count = 0;
        std::pair<std::uint32_t, std::uint64_t> file;
    };
    const auto namesIn = [](const std::string& path) {
        const Directory directory = opened(path);
        EntryReader reader;
        reader.start(directory);
        std::map<std::string, Names> result;
        while (const DirectoryEntry* entry = reader.next())
            result[std::string(entry->name)] = {.count = entry->names,
                                                .file = {entry->volume, entry->number}};
        return result;
    };
    auto seen = namesIn(tree.path());
    EXPECT_EQ(seen["a"].count, 3U);
    EXPECT_EQ(seen["second"].file, seen["a"].file);
    EXPECT_EQ(namesIn(tree.path("f"))["a again"].file, seen["a"].file);
    EXPECT_EQ(seen["pipe"].count, 2U);
    EXPECT_EQ(seen["pipe"].file, seen["pipe too"].file);
    EXPECT_NE(seen["pipe"].file, seen["a"].file);
    EXPECT_EQ(seen["b"].count, 1U);
    EXPECT_EQ(seen["f"].count, 1U) << "a folder has one name, whatever is in it";
}

TEST(Directory, KnowsItselfAgainWhereverItIs) {
    const TempTree tree({folder("a", {folder("b")}), folder("c")});
    const Directory a = opened(tree.path("a"));
    const auto identity = a.identity();
    ASSERT_TRUE(identity);
    EXPECT_EQ(opened(tree.path("a")).identity(), identity);
    EXPECT_EQ(opened(tree.path("a/b")).openParent()->identity(), identity);
    EXPECT_NE(opened(tree.path("c")).identity(), identity);
    ASSERT_EQ(std::rename(tree.path("a").c_str(), tree.path("c/a").c_str()), 0);
    EXPECT_EQ(opened(tree.path("c/a")).identity(), identity);
    EXPECT_EQ(Directory().identity(), std::nullopt);
}

TEST(EntryReader, ALinkHasNothingOfTheEntryBeforeIt) {
    const FileTime old = std::chrono::sys_days{std::chrono::year{2001} / 2 / 3};
    TempTree tree;
    // In any listing order, some link comes after a file.
    for (int i = 0; i < 20; ++i)
        tree.add({file("file " + std::to_string(i), 1'000'000).modifiedAt(old),
                  link("link " + std::to_string(i), "x")});
    const auto seen = listing(tree.path());
    const auto hasForeignValues = [&](const auto& entry) {
        const Seen& what = entry.second;
        return what.kind == EntryKind::link && (what.allocatedSize != 0 || what.modified == old);
    };
    EXPECT_EQ(seen.size(), 40U);
    EXPECT_EQ(std::ranges::count_if(seen, hasForeignValues), 0);
}

TEST(EntryReader, HasTheDateOfFilesAndFolders) {
    const FileTime before1970 = std::chrono::sys_days{std::chrono::year{1935} / 6 / 7} + 8h + 999'999us;
    // Some file systems store nanoseconds in 64 bits, which overflow in 2262.
    const FileTime farFuture = std::chrono::sys_days{std::chrono::year{2262} / 1 / 1} + 1us;
    const TempTree tree(
        {file("old").modifiedAt(before1970), folder("new", {file("x")}).modifiedAt(farFuture)});
    const auto seen = listing(tree.path());
    EXPECT_EQ(seen.at("old").modified, before1970);
    EXPECT_EQ(seen.at("new").modified, farFuture);
}

TEST(EntryReader, HoldsDatesBeyondTheRangeAtItsEnds) {
    if (const auto reason = test::whyNoPrivateMounts())
        GTEST_SKIP() << *reason;
    TempTree tree({folder("memory")});
    test::withPrivateMounts([&] {
        ASSERT_TRUE(test::mountMemory(tree.path("memory")));
        constexpr std::int64_t last = std::numeric_limits<std::int64_t>::max() / 1'000'000;
        const std::map<std::string, std::pair<std::int64_t, FileTime>> dates = {
            {"end", {std::numeric_limits<std::int64_t>::max(), FileTime::max()}},
            {"beginning", {std::numeric_limits<std::int64_t>::min(), FileTime::min()}},
            {"just beyond", {last + 1, FileTime::max()}},
            {"just before", {-last - 2, FileTime::min()}},
            {"last second", {last, FileTime(std::chrono::seconds(last))}},
            {"first second", {-last, FileTime(std::chrono::seconds(-last))}},
        };
        for (const auto& [name, date] : dates) {
            tree.add("memory", {file(name)});
            const timespec times[2] = {{.tv_sec = 0, .tv_nsec = UTIME_OMIT},
                                       {.tv_sec = date.first, .tv_nsec = 0}};
            ASSERT_EQ(::utimensat(AT_FDCWD, tree.path("memory/" + name).c_str(), times, 0), 0);
        }
        const auto seen = listing(tree.path("memory"));
        for (const auto& [name, date] : dates) {
            EXPECT_EQ(seen.at(name).modified, date.second) << name;
            EXPECT_EQ(fileInfo(tree.path("memory/" + name))->modified, date.second) << name;
        }
    });
}

TEST(EntryReader, ListingDoesNotRenewTheAccessDate) {
    const TempTree tree(
        {folder("listed", {file("a"), folder("below", {file("b")})}), folder("control", {file("a")})});
    const timespec longAgo[2] = {{.tv_sec = 1'000'000'000, .tv_nsec = 0},
                                 {.tv_sec = 1'000'000'000, .tv_nsec = 0}};
    for (const char* name : {"control", "listed/below", "listed"})
        ASSERT_EQ(::utimensat(AT_FDCWD, tree.path(name).c_str(), longAgo, 0), 0);
    const auto accessed = [&](const char* name) { return lastAccess(tree.path(name)); };
    const FileTime before(std::chrono::seconds(longAgo[0].tv_sec));
    for (const auto& entry : std::filesystem::directory_iterator(tree.path("control")))
        EXPECT_EQ(entry.path().filename(), "a");
    if (accessed("control") == before)
        GTEST_SKIP() << "this volume keeps no access dates";

    const Directory top = opened(tree.path("listed"));
    EXPECT_EQ(listing(top).size(), 2U);
    const auto below = top.openBelow("below");
    ASSERT_TRUE(below);
    EXPECT_EQ(listing(*below).size(), 1U);
    EXPECT_EQ(listNames(tree.path("listed")).size(), 2U);
    EXPECT_EQ(accessed("listed"), before);
    EXPECT_EQ(accessed("listed/below"), before);
}

TEST(EntryReader, ReadsAHundredThousandEntriesOnceEach) {
    constexpr std::size_t count = 100'000;
    const TempTree tree;
    for (std::size_t i = 0; i < count; ++i) {
        const std::string path = tree.path("a name that fills the buffer sooner " + std::to_string(i));
        const int made = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
        ASSERT_GE(made, 0);
        ::close(made);
    }
    EXPECT_EQ(listing(tree.path()).size(), count);
}

TEST(EntryReader, AnEmptyFolderHasNoEntries) {
    const TempTree tree;
    EXPECT_THAT(listing(tree.path()), IsEmpty());
}

TEST(EntryReader, IsUsedAgainForTheNextFolder) {
    TempTree tree({folder("a", {file("in a"), file("also in a")}), folder("b", {file("in b")})});
    const Directory a = opened(tree.path("a"));
    const Directory b = opened(tree.path("b"));
    EntryReader reader;
    reader.start(a);
    ASSERT_NE(reader.next(), nullptr);
    reader.start(b);
    EXPECT_THAT(names(rest(reader)), ElementsAre("in b")) << "nothing of a listing that was left early";
    EXPECT_EQ(reader.next(), nullptr) << "the end stays the end";
}

TEST(EntryReader, PassesOverFoldersThatAreToBeLeftUntouched) {
    const TempTree tree({file("a"), folder("server"), link("l", "a"), file("b")});
    const Directory directory = opened(tree.path());
    const NameSet excluded = {"server", "b", "absent"};
    EntryReader reader;
    reader.start(directory, &excluded);
    EXPECT_THAT(names(rest(reader)), ElementsAre("a", "b", "l"))
        << "a file on which one is mounted is a file";

    const Directory again = opened(tree.path());
    reader.start(again);
    EXPECT_EQ(rest(reader).size(), 4U) << "not carried over to the next listing";
}

TEST(EntryReader, EntriesThatVanishAfterTheyWereListedAreNoErrorAndComeOnceAtMost) {
    TempTree tree;
    for (int i = 0; i < 100; ++i)
        tree.add({file(std::to_string(i))});
    const Directory directory = opened(tree.path());
    EntryReader reader;
    reader.start(directory);
    const DirectoryEntry* first = reader.next();
    ASSERT_NE(first, nullptr);
    const std::string firstName(first->name);
    for (int i = 0; i < 100; ++i)
        ASSERT_EQ(::unlink(tree.path(std::to_string(i)).c_str()), 0);
    EXPECT_FALSE(rest(reader).contains(firstName));
    EXPECT_FALSE(reader.error());
}

TEST(EntryReader, AFolderThatIsGoneHasNoEntriesAndKeepsItsErrorToItself) {
    const TempTree tree({folder("gone")});
    const Directory directory = opened(tree.path("gone"));
    ASSERT_EQ(::rmdir(tree.path("gone").c_str()), 0);
    EntryReader reader;
    reader.start(directory);
    EXPECT_EQ(reader.next(), nullptr) << "some systems say that as an error, some do not";

    const Directory other = opened(tree.path());
    reader.start(other);
    EXPECT_EQ(reader.next(), nullptr);
    EXPECT_FALSE(reader.error()) << "the error was the other folder's";
}

TEST(EntryReader, SeveralTakeTurnsInOneListing) {
    std::vector<test::TreeEntry> entries;
    for (int number = 0; number < 5000; ++number)
        entries.push_back(file("a name that fills the listing " + std::to_string(number)));
    const TempTree tree(entries);
    Order expected;
    EntryReader alone;
    const Directory folder = std::move(*Directory::open(tree.path()));
    alone.start(folder);
    takeRest(alone, expected);
    ASSERT_EQ(expected.size(), 5000U);
    ASSERT_GT(expected.back().first, 2U) << "it comes in pieces";
    for (int round = 0; round < 20; ++round) {
        const Directory shared = *Directory::open(tree.path());
        std::array<Order, 3> orders;
        EntryReader first;
        first.start(shared);
        orders[0].emplace_back(0, first.next()->name);
        {
            std::vector<std::jthread> others;
            for (const std::size_t other : {1U, 2U}) {
                others.emplace_back([&first, &order = orders[other]] {
                    EntryReader reader;
                    reader.join(first);
                    takeRest(reader, order);
                });
            }
            takeRest(first, orders[0]);
        }
        Order all;
        for (const Order& order : orders)
            all.insert(all.end(), order.begin(), order.end());
        std::ranges::stable_sort(all, {}, &Order::value_type::first);
        ASSERT_EQ(all, expected);
    }
}

TEST(EntryReader, PassesOverEntriesThatTheSystemDoesNotDescribe) {
    // With permission to list but not enter a folder, only names can be read.
    const TempTree tree({folder("names-only", {file("a", 1'000'000), folder("b")}).withMode(0444)});
    if (const auto reason = test::whyNotUnprivileged(tree.path()))
        GTEST_SKIP() << *reason;
    test::asUnprivileged([&] {
        const Directory directory = opened(tree.path("names-only"));
        EntryReader reader;
        reader.start(directory);
        EXPECT_EQ(reader.next(), nullptr) << "some systems say that as an error, some do not";
    });
}

TEST(EntryReader, OpensNothing) {
    const TempTree tree({file("a"), fifo("b"), folder("c"), link("d", "c")});
    const Directory directory = opened(tree.path());
    const std::size_t before = openHandles();
    EntryReader reader;
    reader.start(directory);
    while (reader.next() != nullptr)
        EXPECT_EQ(openHandles(), before);
}

void limitHandles(rlim_t count) {
    rlimit limit{};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &limit), 0);
    limit.rlim_cur = count;
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &limit), 0);
}

TEST(Handles, RunningOutIsToldFromOtherErrors) {
    const TempTree tree({folder("a", {folder("b")}), file("file")});
    test::inChild([&] {
        limitHandles(64);
        std::vector<Directory> held;
        auto next = Directory::open(tree.path());
        while (next) {
            held.push_back(std::move(*next));
            next = Directory::open(tree.path());
        }
        EXPECT_GT(held.size(), 10U);
        const std::error_code opening = next.error();
        const std::error_code openingBelow = held.front().openBelow("a/b").error();
        held.pop_back();
        const bool isOneEnough = held.front().openBelow("a/b").has_value();
        held.clear();  // the sanitizers need some for their own checks
        EXPECT_TRUE(isOutOfHandles(opening));
        EXPECT_TRUE(isOutOfHandles(openingBelow));
        EXPECT_TRUE(isOneEnough);
    });
    EXPECT_FALSE(isOutOfHandles({}));
    EXPECT_FALSE(isOutOfHandles(Directory::open(tree.path("absent")).error()));
    EXPECT_FALSE(isOutOfHandles(Directory::open(tree.path("file")).error()));
    EXPECT_TRUE(isOutOfHandles(std::make_error_code(std::errc::too_many_files_open_in_system)));
}

TEST(Handles, SpareOnesCanAllBeOpened) {
    const TempTree tree;
    test::inChild([&] {
        limitHandles(100);
        const std::size_t spare = spareHandles();
        EXPECT_GT(spare, 50U);
        std::vector<Directory> held;
        for (std::size_t i = 0; i < spare; ++i)
            held.push_back(opened(tree.path()));
        EXPECT_LE(spareHandles(), 2U);
        const std::size_t before = spareHandles();
        held.resize(spare - 20);
        EXPECT_EQ(spareHandles(), before + 20);
    });
}

TEST(Handles, NoneAreSpareWhenMoreAreOpenThanAllowed) {
    const TempTree tree;
    test::inChild([&] {
        std::vector<Directory> held;
        for (int i = 0; i < 40; ++i)
            held.push_back(opened(tree.path()));
        limitHandles(20);
        EXPECT_LE(spareHandles(), 20U);
        limitHandles(0);
        EXPECT_EQ(spareHandles(), 0U);
    });
}

}  // namespace
}  // namespace ulvak::platform
