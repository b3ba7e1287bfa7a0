#include "platform/trash.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <vector>

#include "platform/linux/trash_world.h"
#include "support/isolation.h"
#include "support/linux/disk_image.h"
#include "support/linux/traced_child.h"
#include "support/system.h"

namespace ulvak::platform {
namespace {

using test::exists;
using test::folder;
using test::link;
using test::modeOf;
using test::TempTree;
using test::textFile;
namespace fs = std::filesystem;

const std::string homeTrash = "home/.local/share/Trash";

std::size_t countIn(const std::string& path) {
    return exists(path) ? listNames(path).size() : 0;
}

/// Whether `text`, otherwise valid UTF-8, was cut in the middle of a character of `whole`.
bool isCutThrough(const std::string& text, const std::string& whole) {
    return text.size() < whole.size() && (static_cast<unsigned char>(whole[text.size()]) & 0xC0U) == 0x80U;
}

TEST(MoveToTrash, TellsWhereTheItemIsNow) {
    const TempTree tree({folder("home", {folder("a", {textFile("b.txt", "b")})})});
    const HomeIn home(tree.path("home"));
    const auto folderOfIt = Directory::open(tree.path("home/a"));
    const auto identity = entryIdentity(*folderOfIt, "b.txt");
    const auto moved = trash(tree.path("home/a/b.txt"));
    ASSERT_TRUE(moved) << moved.error().code.message();
    EXPECT_EQ(*moved, (TrashedItem{.origin = tree.path("home/a/b.txt"),
                                   .location = tree.path(homeTrash + "/files/b.txt"),
                                   .identity = identity.value()}));
    EXPECT_FALSE(exists(tree.path("home/a/b.txt")));
    EXPECT_EQ(test::textOf(moved->location), "b");
    EXPECT_EQ(notedPath(moved->location), tree.path("home/a/b.txt"));
    for (const char* part : {"", "/files", "/info"})
        EXPECT_EQ(modeOf(tree.path(homeTrash + part)), 0700U) << part;
}

TEST(MoveToTrash, MovesEverythingThatHasAName) {
    const TempTree tree({folder(
        "home", {folder("items", {link("link", "nowhere"), test::fifo("fifo"), test::socket("socket"),
                                  folder("empty"), folder("full", {folder("in", {textFile("f", "f")})}),
                                  textFile("locked", "l").withMode(0)})})});
    const HomeIn home(tree.path("home"));
    for (const std::string& name : listNames(tree.path("home/items"))) {
        const auto moved = trash(tree.path("home/items/" + name));
        ASSERT_TRUE(moved) << name << moved.error().code.message();
        EXPECT_TRUE(exists(moved->location)) << name;
    }
    EXPECT_EQ(countIn(tree.path("home/items")), 0U);
    EXPECT_EQ(fs::read_symlink(tree.path(homeTrash + "/files/link")), "nowhere");
    EXPECT_EQ(test::textOf(tree.path(homeTrash + "/files/full/in/f")), "f");
}

TEST(MoveToTrash, KeepsTheOriginOfNamesOfAnyLengthAndAnyBytes) {
    const TempTree tree({folder("home", {folder("items")})});
    const HomeIn home(tree.path("home"));
    for (const std::string unit : {"n", "ğ", "\xff", "%", "\n", "😀", "a.b"}) {
        for (std::size_t length = 1; length <= 255; ++length) {
            std::string name;
            while (name.size() + unit.size() <= length)
                name += unit;
            name += std::string(length - name.size(), 'x');
            const std::string path = tree.path("home/items/" + name);
            ASSERT_EQ(::mknod(path.c_str(), S_IFREG | 0600, 0), 0) << length;
            const auto moved = trash(path);
            ASSERT_TRUE(moved) << unit << length << moved.error().code.message();
            ASSERT_EQ(notedPath(moved->location), path) << length;
            const std::size_t kept = nameOf(moved->location).size();
            ASSERT_TRUE(length <= 245 ? kept == length : kept <= 245 && kept > 245 - 4) << length;
            ASSERT_TRUE(unit == "\xff" || !isCutThrough(nameOf(moved->location), name)) << length;
            ASSERT_EQ(::rename(moved->location.c_str(), path.c_str()), 0) << "it can be put back";
            ASSERT_EQ(::unlink(path.c_str()), 0);
            ASSERT_EQ(
                ::unlink(tree.path(homeTrash + "/info/" + nameOf(moved->location) + ".trashinfo").c_str()),
                0);
        }
    }
}

TEST(MoveToTrash, KeepsThousandsOfOneNameApart) {
    constexpr int many = 5000;
    const TempTree tree({folder("home", {folder("items")})});
    const HomeIn home(tree.path("home"));
    std::set<std::string> locations;
    for (int i = 0; i < many; ++i) {
        const std::string path = tree.path("home/items/" + std::to_string(i)) + "/aynı ad";
        fs::create_directories(path);
        const auto moved = trash(path);
        ASSERT_TRUE(moved) << moved.error().code.message();
        ASSERT_EQ(notedPath(moved->location), path);
        locations.insert(moved->location);
    }
    EXPECT_EQ(locations.size(), many);
    EXPECT_EQ(countIn(tree.path(homeTrash + "/files")), many);
    EXPECT_EQ(countIn(tree.path(homeTrash + "/info")), many);
    EXPECT_TRUE(exists(tree.path(homeTrash + "/files/aynı ad.5000")));
}

TEST(MoveToTrash, PassesOverNamesOfWhichHalfIsTaken) {
    const TempTree tree({folder("home", {textFile("a", "new"), textFile("b", "new")})});
    const HomeIn home(tree.path("home"));
    fs::create_directories(tree.path(homeTrash + "/files/a"));
    fs::create_directories(tree.path(homeTrash + "/info/b.trashinfo"));
    const auto first = trash(tree.path("home/a"));
    const auto second = trash(tree.path("home/b"));
    ASSERT_TRUE(first && second);
    EXPECT_EQ(nameOf(first->location), "a.2");
    EXPECT_EQ(nameOf(second->location), "b.2");
    EXPECT_FALSE(exists(tree.path(homeTrash + "/info/a.trashinfo")));
    EXPECT_FALSE(exists(tree.path(homeTrash + "/files/b")));
}

TEST(MoveToTrash, LeavesWhatIsNoLongerTheItem) {
    const TempTree tree(
        {folder("home", {textFile("a", "a"), textFile("b", "b"), folder("way", {textFile("c", "")})})});
    const HomeIn home(tree.path("home"));
    const auto parent = Directory::open(tree.path("home"));
    const auto moved = moveToTrash(*parent, "a", *entryIdentity(*parent, "b"), tree.path("home/a"));
    ASSERT_FALSE(moved);
    EXPECT_EQ(moved.error().code.value(), ESTALE);
    EXPECT_EQ(moved.error().path, tree.path("home/a"));
    const auto way = Directory::open(tree.path("home/way"));
    const std::vector<std::int64_t> before = test::stateOf(tree.path("home/way"));
    const auto elsewhere = moveToTrash(*way, "c", *entryIdentity(*way, "c"), tree.path("home/c"));
    ASSERT_FALSE(elsewhere) << "its path does not lead there";
    EXPECT_EQ(elsewhere.error().code.value(), ESTALE);
    EXPECT_EQ(test::stateOf(tree.path("home/way")), before) << "moved, and put back";
    EXPECT_TRUE(exists(tree.path("home/a")) && exists(tree.path("home/way/c")));
    EXPECT_EQ(countIn(tree.path(homeTrash + "/info")), 0U);
}

TEST(MoveToTrash, WithoutRoomForTheNoteTheItemStays) {
    if (const auto reason = test::whyNoDiskImages())
        GTEST_SKIP() << *reason;
    const TempTree tree({folder("home")});
    test::withPrivateMounts([&] {
        const HomeIn home(tree.path("home"));
        ASSERT_TRUE(test::mountImage(tree.path("image"), tree.path("home")));
        std::vector<std::string> paths;
        for (const std::size_t length : {1UZ, 100UZ, 243UZ, 244UZ, 245UZ, 246UZ, 255UZ}) {
            paths.push_back(tree.path("home/") + std::string(length, 'n'));
            ASSERT_EQ(::mknod(paths.back().c_str(), S_IFREG | 0600, 0), 0);
        }
        for (const bool hasTrash : {false, true}) {
            if (hasTrash)
                fs::create_directories(tree.path(homeTrash + "/files"));
            if (hasTrash)
                fs::create_directories(tree.path(homeTrash + "/info"));
            const int filler = ::open(tree.path("home/filler").c_str(), O_WRONLY | O_CREAT, 0600);
            ASSERT_GE(filler, 0);
            const std::string block(4096, 'f');
            while (::write(filler, block.data(), block.size()) > 0) {
            }
            for (int byte = 0; byte < 4096 && ::write(filler, "f", 1) > 0; ++byte) {
            }
            for (const std::string& path : paths) {
                const auto moved = trash(path);
                ASSERT_FALSE(moved) << path.size();
                EXPECT_EQ(moved.error().code, std::errc::no_space_on_device) << moved.error().code.message();
                EXPECT_TRUE(exists(path));
            }
            EXPECT_EQ(countIn(tree.path(homeTrash + "/info")), 0U);
            EXPECT_EQ(countIn(tree.path(homeTrash + "/files")), 0U);
            ::close(filler);
            ASSERT_EQ(::unlink(tree.path("home/filler").c_str()), 0);
        }
        for (const std::string& path : paths) {
            const auto moved = trash(path);
            ASSERT_TRUE(moved) << moved.error().code.message();
            EXPECT_EQ(notedPath(moved->location), path);
        }
    });
}

TEST(MoveToTrash, WhereverItIsKilledTheItemIsInItsPlaceOrHasItsNote) {
    bool isOver = false;
    bool wasHere = false;
    bool wasThere = false;
    for (int moment = 1; !isOver; ++moment) {
        const TempTree tree({folder("home", {folder("a", {textFile("b", "b")})})});
        const HomeIn home(tree.path("home"));
        {
            test::TracedChild child([&] { (void)trash(tree.path("home/a/b")); });
            if (!child.isTraced())
                GTEST_SKIP() << "this user may not trace a program";
            for (int i = 0; i < moment && !isOver; ++i)
                isOver = !child.step();
        }
        const std::string location = tree.path(homeTrash + "/files/b");
        const bool isHere = exists(tree.path("home/a/b"));
        ASSERT_NE(isHere, exists(location)) << moment;
        ASSERT_TRUE(isHere || notedPath(location) == tree.path("home/a/b")) << moment;
        wasHere = wasHere || isHere;
        wasThere = wasThere || (!isHere && !isOver);
        // Leftovers of a killed run do not get in the way.
        ASSERT_TRUE(!isHere || trash(tree.path("home/a/b"))) << moment;
    }
    EXPECT_TRUE(wasHere && wasThere) << "the moments were all of them on one side";
}

/// The child's writes, flushes and renames, in order, until it exits.
std::string orderOfCalls(test::TracedChild& child) {
    std::string order;
    while (child.step()) {
        const auto call = child.call();
        // Sanitizers also call write, to check whether memory is readable.
        if (call == SYS_write && !order.ends_with("write "))
            order += "write ";
        if (call == SYS_fsync)
            order += "fsync ";
        if (call == SYS_renameat2)
            order += "rename ";
    }
    return order;
}

TEST(MoveToTrash, TheNoteIsOnTheDiskBeforeTheItemMoves) {
    const TempTree tree({folder("home", {textFile("a", "a"), folder(".local", {folder("share")})})});
    const HomeIn home(tree.path("home"));
    test::TracedChild child([&] { (void)trash(tree.path("home/a")); });
    if (!child.isTraced())
        GTEST_SKIP() << "this user may not trace a program";
    EXPECT_EQ(orderOfCalls(child), "write fsync fsync rename ");
}

/// Items in one home that are moved with notes written in advance.
class NotesAhead : public testing::Test {
protected:
    NotesAhead() {
        for (int number = 0; number < count; ++number)
            tree.add({folder("home/" + std::to_string(number), {textFile("item", "x")})});
    }
    static constexpr int count = 20;

    [[nodiscard]] std::string item(int number) const {
        return tree.path("home/" + std::to_string(number) + "/item");
    }
    void write(TrashNotes& notes) const {
        for (int number = 0; number < count; ++number) {
            const auto parent = Directory::open(parentOf(item(number)));
            ASSERT_TRUE(parent);
            notes.add(*parent, "item", item(number));
        }
        notes.flush();
    }
    [[nodiscard]] Trashed move(int number, TrashNotes& notes) const {
        const auto parent = Directory::open(parentOf(item(number)));
        if (!parent)
            return std::unexpected(FileError{.code = parent.error(), .path = item(number), .detail = {}});
        return moveToTrash(*parent, "item", *entryIdentity(*parent, "item"), item(number), &notes);
    }
    [[nodiscard]] std::size_t notesLeft() const { return countIn(tree.path(homeTrash + "/info")); }

    TempTree tree{{folder("home", {folder(".local", {folder("share")})})}};
    HomeIn home{tree.path("home")};
};

TEST_F(NotesAhead, AreThoseOfTheirItems) {
    TrashNotes notes;
    write(notes);
    EXPECT_EQ(notesLeft(), std::size_t{count});
    for (int number = 0; number < count; ++number) {
        const auto moved = move(number, notes);
        ASSERT_TRUE(moved);
        EXPECT_FALSE(exists(item(number)));
        EXPECT_EQ(notedPath(moved->location), item(number));
    }
    EXPECT_EQ(notesLeft(), std::size_t{count}) << "none was written twice";
}

TEST_F(NotesAhead, GoWhenTheirItemsDoNotFollow) {
    {
        TrashNotes notes;
        write(notes);
        EXPECT_TRUE(move(3, notes));
        const auto parent = Directory::open(parentOf(item(4)));
        const auto other = moveToTrash(*parent, "item", ItemIdentity(), item(4), &notes);
        EXPECT_EQ(other.error().code.value(), ESTALE);
    }
    EXPECT_EQ(notesLeft(), 1U);
    EXPECT_TRUE(exists(item(4)));
}

TEST_F(NotesAhead, AreWrittenAnewWhereTheTrashWasEmptiedMeanwhile) {
    TrashNotes notes;
    write(notes);
    fs::remove_all(tree.path(homeTrash));
    const auto first = move(0, notes);
    ASSERT_TRUE(first);
    EXPECT_EQ(notedPath(first->location), item(0));
    EXPECT_TRUE(exists(first->location));
}

TEST_F(NotesAhead, AreWrittenAnewWhereSomebodyHasRemovedThem) {
    TrashNotes notes;
    write(notes);
    for (const auto& note : fs::directory_iterator(tree.path(homeTrash + "/info")))
        fs::remove(note);
    const auto first = move(0, notes);
    ASSERT_TRUE(first);
    EXPECT_EQ(notedPath(first->location), item(0));
}

TEST_F(NotesAhead, LeaveTheNoteThatSomebodyElseHasWrittenUnderTheirName) {
    const std::string name = tree.path(homeTrash + "/info/item.trashinfo");
    {
        TrashNotes notes;
        write(notes);
        ASSERT_TRUE(fs::remove(name));
        std::ofstream(name) << "theirs";
    }
    EXPECT_EQ(test::textOf(name), "theirs");
    EXPECT_EQ(notesLeft(), 1U);
}

TEST_F(NotesAhead, AreWrittenAnewWhereTheTrashWasMovedAwayMeanwhile) {
    TrashNotes notes;
    write(notes);
    fs::rename(tree.path(homeTrash), tree.path("home/elsewhere"));
    const auto first = move(0, notes);
    ASSERT_TRUE(first);
    EXPECT_TRUE(exists(first->location)) << "it is where it is said to be";
    EXPECT_EQ(notedPath(first->location), item(0));
}

TEST_F(NotesAhead, AreWrittenAnewWhereTheirFolderWasMovedAwayMeanwhile) {
    TrashNotes notes;
    write(notes);
    fs::rename(tree.path(homeTrash + "/info"), tree.path("home/elsewhere"));
    const auto first = move(0, notes);
    ASSERT_TRUE(first);
    EXPECT_EQ(notedPath(first->location), item(0));
}

TEST_F(NotesAhead, LeaveThoseOfOthersThatHaveTheirNamesByNow) {
    const std::string theirs = tree.path(homeTrash + "/info/item.trashinfo");
    const std::string text = "[Trash Info]\nPath=/theirs\n";
    {
        TrashNotes notes;
        write(notes);
        for (const auto& note : fs::directory_iterator(tree.path(homeTrash + "/info")))
            fs::remove(note);
        std::ofstream(theirs) << text;
        const auto first = move(0, notes);
        ASSERT_TRUE(first);
        EXPECT_EQ(notedPath(first->location), item(0));
        EXPECT_EQ(test::textOf(theirs), text) << "after the item that it was written for has gone without it";
        std::ofstream(tree.path(homeTrash + "/info/item.3.trashinfo")) << text;
    }
    EXPECT_EQ(test::textOf(theirs), text);
    EXPECT_EQ(test::textOf(tree.path(homeTrash + "/info/item.3.trashinfo")), text)
        << "after one whose item has stayed";
}

TEST_F(NotesAhead, AreWrittenAnewWhereTheirNameWasTakenMeanwhile) {
    TrashNotes notes;
    write(notes);
    ASSERT_EQ(::mknod(tree.path(homeTrash + "/files/item").c_str(), S_IFREG | 0600, 0), 0);
    const auto first = move(0, notes);
    ASSERT_TRUE(first);
    EXPECT_NE(nameOf(first->location), "item");
    EXPECT_EQ(notedPath(first->location), item(0));
}

TEST_F(NotesAhead, LeaveHandlesForTheMoves) {
    test::inChild([&] {
        std::vector<int> free;  // others may be open in between
        while (free.size() < std::size_t{count})
            free.push_back(::dup(STDERR_FILENO));
        const auto limit = static_cast<rlim_t>(free.back()) + 1;
        for (const int handle : free)
            ::close(handle);
        const rlimit handles{.rlim_cur = limit, .rlim_max = limit};
        ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &handles), 0);
        TrashNotes notes;
        for (int number = 0; number < count; ++number) {
            if (const auto parent = Directory::open(parentOf(item(number))))
                notes.add(*parent, "item", item(number));
        }
        notes.flush();
        for (int number = 0; number < count; ++number)
            EXPECT_TRUE(move(number, notes)) << number;
    });
}

TEST_F(NotesAhead, DoNotCountBeforeTheyAreOnTheDisk) {
    TrashNotes notes;
    const auto parent = Directory::open(parentOf(item(0)));
    notes.add(*parent, "item", item(0));
    const auto moved = move(0, notes);
    ASSERT_TRUE(moved);
    EXPECT_EQ(nameOf(moved->location), "item.2") << "with a note of its own";
}

TEST_F(NotesAhead, AreAllOnTheDiskBeforeTheFirstItemMoves) {
    test::TracedChild child([&] {
        TrashNotes notes;
        for (int number = 0; number < 3; ++number) {
            const auto parent = Directory::open(parentOf(item(number)));
            notes.add(*parent, "item", item(number));
        }
        notes.flush();
        for (int number = 0; number < 3; ++number)
            (void)move(number, notes);
    });
    if (!child.isTraced())
        GTEST_SKIP() << "this user may not trace a program";
    EXPECT_EQ(orderOfCalls(child), "write fsync fsync fsync fsync rename rename rename ");
}

TEST_F(NotesAhead, WhereverItIsKilledEachItemIsInItsPlaceOrHasItsNote) {
    // Only every 37th moment: there are thousands.
    bool isOver = false;
    for (int moment = 1; !isOver; moment += 37) {
        const TempTree here({folder("home", {textFile("a", "a"), textFile("b", "b")})});
        const HomeIn user(here.path("home"));
        {
            test::TracedChild child([&] {
                TrashNotes notes;
                const auto parent = Directory::open(here.path("home"));
                for (const char* name : {"a", "b"})
                    notes.add(*parent, name, here.path("home/") + name);
                notes.flush();
                for (const char* name : {"a", "b"})
                    (void)moveToTrash(*parent, name, *entryIdentity(*parent, name), here.path("home/") + name,
                                      &notes);
            });
            if (!child.isTraced())
                GTEST_SKIP() << "this user may not trace a program";
            for (int i = 0; i < moment && !isOver; ++i)
                isOver = !child.step();
        }
        for (const std::string name : {"a", "b"}) {
            const std::string location = here.path(homeTrash + "/files/" + name);
            const bool isHere = exists(here.path("home/" + name));
            ASSERT_NE(isHere, exists(location)) << moment;
            ASSERT_TRUE(isHere || notedPath(location) == here.path("home/" + name)) << moment;
            ASSERT_TRUE(!isHere || trash(here.path("home/" + name))) << moment;
        }
    }
}

std::string sizesIn(const TempTree& tree) {
    return test::textOf(tree.path(homeTrash + "/directorysizes"));
}

TEST(RecordTrashedFolders, KeepsTheListOfTheFoldersThatAreThere) {
    const TempTree tree({folder("home", {folder("a b"), folder("c"), folder("ğ\n")})});
    const HomeIn home(tree.path("home"));
    std::vector<std::string> locations;
    std::vector<std::string> dates;
    for (const char* name : {"a b", "c", "ğ\n"}) {
        const auto moved = trash(tree.path("home/") + name);
        ASSERT_TRUE(moved);
        locations.push_back(moved->location);
        struct stat info{};
        ASSERT_EQ(::lstat(tree.path(homeTrash + "/info/" + name + ".trashinfo").c_str(), &info), 0);
        dates.push_back(std::to_string(info.st_mtim.tv_sec));
    }
    recordTrashedFolders({});
    EXPECT_FALSE(exists(tree.path(homeTrash + "/directorysizes")));
    recordTrashedFolders(std::vector<TrashedFolder>{{.location = locations[0], .bytes = 12},
                                                    {.location = locations[1], .bytes = 3'000'000'000},
                                                    {.location = "/elsewhere/x", .bytes = 1}});
    EXPECT_EQ(sizesIn(tree), "12 " + dates[0] + " a%20b\n3000000000 " + dates[1] + " c\n");
    ASSERT_EQ(::rename(locations[1].c_str(), tree.path("home/c").c_str()), 0);
    recordTrashedFolders(std::vector<TrashedFolder>{{.location = locations[0], .bytes = 13},
                                                    {.location = locations[2], .bytes = 0}});
    EXPECT_EQ(sizesIn(tree), "0 " + dates[2] + " %C4%9F%0A\n13 " + dates[0] + " a%20b\n");
}

}  // namespace
}  // namespace ulvak::platform
