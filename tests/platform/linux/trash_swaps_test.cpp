#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <utility>

#include "platform/linux/trash_note.h"
#include "platform/linux/trash_world.h"
#include "support/races.h"
#include "support/system.h"

// The item, or the folder containing it, is swapped while it is moved: at the worst moment, and thousands of
// times at random ones.

namespace ulvak::platform {
namespace {

using test::exists;
using test::folder;
using test::TempTree;
using test::textFile;
namespace fs = std::filesystem;

/// Calls that run `before` and `after` around the first rename.
posix::TrashCalls calling(const std::function<void()>& before, const std::function<void()>& after = {}) {
    auto isFirst = std::make_shared<bool>(true);
    return {.rename = [=](int from, const char* name, int to, const char* newName, unsigned flags) {
        const bool acts = std::exchange(*isFirst, false);
        if (acts && before)
            before();
        const int result = ::renameat2(from, name, to, newName, flags);
        const int failure = errno;
        if (acts && after)
            after();
        errno = failure;
        return result;
    }};
}

class TrashSwaps : public testing::Test {
protected:
    [[nodiscard]] std::string at(const std::string& name) const { return tree.path("home/" + name); }
    [[nodiscard]] std::string read(const std::string& name) const { return test::textOf(at(name)); }

    void expectStale(const Trashed& moved) {
        ASSERT_FALSE(moved);
        EXPECT_EQ(moved.error().code.value(), ESTALE);
        EXPECT_TRUE(isEmpty());
    }
    [[nodiscard]] bool isEmpty() const {
        return fs::is_empty(at(".local/share/Trash/files")) && fs::is_empty(at(".local/share/Trash/info"));
    }

    TempTree tree = TempTree({folder(
        "home",
        {folder("a", {textFile("item", "item"), textFile("other", "other"), textFile("third", "third")}),
         folder("Documents", {textFile("item", "precious")})})});
    HomeIn home = HomeIn(tree.path("home"));
};

TEST_F(TrashSwaps, WhatTookTheItemsNameGoesBack) {
    expectStale(trash(at("a/item"), calling([&] { test::exchange(at("a/item"), at("a/other")); })));
    EXPECT_EQ(read("a/item"), "other");
    EXPECT_EQ(read("a/other"), "item");
}

TEST_F(TrashSwaps, AFolderOfDocumentsThatTookTheItemsNameGoesBack) {
    expectStale(trash(at("a/item"), calling([&] { test::exchange(at("a/item"), at("Documents")); })));
    EXPECT_EQ(read("a/item/item"), "precious");
    EXPECT_EQ(read("Documents"), "item");
}

TEST_F(TrashSwaps, WhenTheItemIsBackInItsPlaceTheTwoChangePlaces) {
    const auto moved = trash(at("a/item"), calling([&] { test::exchange(at("a/item"), at("a/other")); },
                                                   [&] { fs::rename(at("a/other"), at("a/item")); }));
    ASSERT_TRUE(moved) << moved.error().code.message();
    EXPECT_EQ(test::textOf(moved->location), "item");
    EXPECT_EQ(notedPath(moved->location), at("a/item"));
    EXPECT_EQ(read("a/item"), "other");
    EXPECT_FALSE(exists(at("a/other")));
}

TEST_F(TrashSwaps, WhenItsPlaceIsTakenItIsPutBesideWhereItIsSeen) {
    expectStale(trash(at("a/item"), calling([&] { test::exchange(at("a/item"), at("a/other")); },
                                            [&] { fs::rename(at("a/third"), at("a/item")); })));
    EXPECT_EQ(read("a/item"), "third");
    EXPECT_EQ(read("a/item.2"), "other");
    EXPECT_EQ(read("a/other"), "item");
}

TEST_F(TrashSwaps, NothingIsTakenFromBehindALinkInTheFoldersPlace) {
    const auto moved = trash(at("a/item"), calling([&] {
                                 fs::rename(at("a"), at("b"));
                                 fs::create_directory_symlink(at("Documents"), at("a"));
                             }));
    expectStale(moved);
    EXPECT_EQ(read("b/item"), "item");
    EXPECT_EQ(read("Documents/item"), "precious");
}

TEST_F(TrashSwaps, ANoteThatIsTakenAwayTakesTheItemBack) {
    expectStale(
        trash(at("a/item"), calling([&] { fs::remove(at(".local/share/Trash/info/item.trashinfo")); })));
    EXPECT_EQ(read("a/item"), "item");
}

TEST_F(TrashSwaps, WhatCannotGoBackKeepsItsNote) {
    const auto moved = trash(at("a/item"), calling({}, [&] { fs::remove_all(at("a")); }));
    ASSERT_FALSE(moved);
    EXPECT_EQ(moved.error().code.value(), ESTALE);
    EXPECT_EQ(read(".local/share/Trash/files/item"), "item");
    EXPECT_EQ(notedPath(at(".local/share/Trash/files/item")), at("a/item"));
}

TEST_F(TrashSwaps, ATrashThatIsEmptiedMeanwhileIsMadeAnew) {
    const auto moved = trash(at("a/item"), calling([&] { fs::remove_all(at(".local/share/Trash")); }));
    ASSERT_TRUE(moved) << moved.error().code.message();
    EXPECT_EQ(test::textOf(moved->location), "item");
    EXPECT_EQ(notedPath(moved->location), at("a/item"));
}

/// Calls as on a file system without RENAME_NOREPLACE.
posix::TrashCalls withoutNoReplace(const std::function<void()>& before = {}) {
    auto isFirst = std::make_shared<bool>(true);
    return {.rename = [=](int from, const char* name, int to, const char* newName, unsigned flags) {
        if (flags != 0) {
            errno = EINVAL;
            return -1;
        }
        if (std::exchange(*isFirst, false) && before)
            before();
        return ::renameat2(from, name, to, newName, 0);
    }};
}

TEST_F(TrashSwaps, WithoutHelpOfTheFileSystemNothingIsReplacedEither) {
    fs::create_directory_symlink("nowhere", at("a/link"));
    for (const char* name : {"a/item", "a/link", "Documents"}) {
        const auto moved = trash(at(name), withoutNoReplace());
        ASSERT_TRUE(moved) << name << moved.error().code.message();
        EXPECT_TRUE(exists(moved->location));
        EXPECT_EQ(notedPath(moved->location), at(name));
    }
    fs::rename(at("a/other"), at("a/item"));
    const auto second = trash(at("a/item"), withoutNoReplace());
    ASSERT_TRUE(second);
    EXPECT_EQ(nameOf(second->location), "item.2");
    EXPECT_EQ(read(".local/share/Trash/files/item"), "item");
}

TEST_F(TrashSwaps, WithoutHelpOfTheFileSystemASwapIsUndoneToo) {
    expectStale(trash(at("a/item"), withoutNoReplace([&] { test::exchange(at("a/item"), at("a/other")); })));
    EXPECT_EQ(read("a/item"), "other");
    EXPECT_EQ(read("a/other"), "item");
    // A folder does not replace a file.
    const auto moved =
        trash(at("a/item"), withoutNoReplace([&] { test::exchange(at("a/item"), at("Documents")); }));
    ASSERT_FALSE(moved);
    EXPECT_TRUE(isEmpty());
    EXPECT_EQ(read("a/item/item"), "precious");
}

/// Repeats an action without pause on its own thread.
class Restless {
public:
    explicit Restless(std::function<void()> work)
        : thread_([this, work = std::move(work)] {
              while (!isOver_)
                  work();
          }) {}
    ~Restless() {
        isOver_ = true;
        thread_.join();
    }
    Restless(const Restless&) = delete;
    Restless& operator=(const Restless&) = delete;

private:
    std::atomic<bool> isOver_ = false;
    std::thread thread_;
};

TEST_F(TrashSwaps, ThousandsOfSwapsOfTheItemTakeNothingElse) {
    const int rounds = test::raceRounds(2000);
    int taken = 0;
    for (int round = 0; round < rounds; ++round) {
        const std::string name = "a/round" + std::to_string(round);
        std::ofstream(at(name)) << "item";
        const std::string swapped = at(name);
        const auto parent = Directory::open(at("a"));
        const auto identity = entryIdentity(*parent, nameOf(swapped));
        Trashed moved;
        {
            const Restless swapper([&] { test::exchange(swapped, at("Documents")); });
            moved = moveToTrash(*parent, nameOf(swapped), *identity, swapped);
        }
        const bool isAway = fs::is_directory(swapped);
        if (moved) {
            ++taken;
            ASSERT_EQ(test::textOf(moved->location), "item") << round;
            ASSERT_EQ(notedPath(moved->location), swapped);
            ASSERT_EQ(fs::remove(moved->location) &&
                          fs::remove(at(".local/share/Trash/info/" + nameOf(moved->location) + ".trashinfo")),
                      true);
        }
        // Documents are in their place, in the item's, or next to it, never in the Trash.
        const std::string beside = at("a/" + trashName(nameOf(swapped), 2));
        const std::string documents = isAway ? swapped : fs::is_directory(beside) ? beside : at("Documents");
        ASSERT_EQ(test::textOf(documents + "/item"), "precious") << round;
        ASSERT_TRUE(!exists(at(".local/share/Trash/files")) || isEmpty()) << round;
        if (documents != at("Documents")) {
            if (exists(at("Documents")))
                fs::remove(at("Documents"));
            fs::rename(documents, at("Documents"));
        }
        fs::remove(swapped);
    }
    EXPECT_GT(taken, 0) << "the item itself does go";
}

TEST_F(TrashSwaps, ThousandsOfSwapsOfTheFolderTakeNothingElse) {
    const int rounds = test::raceRounds(2000);
    fs::create_directory_symlink(at("Documents"), at("link"));
    for (int round = 0; round < rounds; ++round) {
        const auto parent = Directory::open(at("a"));
        const auto identity = entryIdentity(*parent, "item");
        Trashed moved;
        {
            const Restless swapper([&] { test::exchange(at("a"), at("link")); });
            moved = moveToTrash(*parent, "item", *identity, at("a/item"));
        }
        if (fs::is_symlink(at("a")))
            test::exchange(at("a"), at("link"));
        ASSERT_EQ(read("Documents/item"), "precious") << round;
        if (moved) {
            ASSERT_EQ(test::textOf(moved->location), "item");
            ASSERT_EQ(notedPath(moved->location), at("a/item"));
            fs::rename(moved->location, at("a/item"));
            fs::remove(at(".local/share/Trash/info/" + nameOf(moved->location) + ".trashinfo"));
        }
        ASSERT_EQ(read("a/item"), "item") << round;
        ASSERT_TRUE(!exists(at(".local/share/Trash/files")) || isEmpty()) << round;
    }
}

}  // namespace
}  // namespace ulvak::platform
