#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "clean/clean_support.h"
#include "platform/files.h"
#include "platform/process.h"

namespace ulvak {
namespace {

using namespace test;
namespace fs = std::filesystem;

constexpr const char* trashFolder = "home/.local/share/Trash";

/// What restoring an entry must preserve.
struct Likeness {
    mode_t mode = 0;
    FileTime modified;
    std::string bytes;  ///< a file's content or a link's target

    friend bool operator==(const Likeness&, const Likeness&) = default;
};

/// Every entry of a tree, by path.
std::map<std::string, Likeness> likeness(const fs::path& top) {
    std::map<std::string, Likeness> entries;
    const auto add = [&](const fs::path& path) {
        struct stat info{};
        if (::lstat(path.c_str(), &info) != 0)
            return;
        Likeness entry{.mode = info.st_mode};
        entry.modified = FileTime(
            std::chrono::microseconds(info.st_mtim.tv_sec * 1'000'000 + info.st_mtim.tv_nsec / 1000));
        if (S_ISREG(info.st_mode))
            entry.bytes = textOf(path);
        else if (S_ISLNK(info.st_mode))
            entry.bytes = fs::read_symlink(path).string();
        entries[path.lexically_relative(top).string()] = entry;
    };
    add(top);
    if (fs::is_directory(fs::symlink_status(top))) {
        for (const auto& entry : fs::recursive_directory_iterator(top))
            add(entry.path());
    }
    return entries;
}

std::string percentDecoded(const std::string& text) {
    std::string bytes;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] != '%') {
            bytes += text[at];
            continue;
        }
        bytes += static_cast<char>(std::stoi(text.substr(at + 1, 2), nullptr, 16));
        at += 2;
    }
    return bytes;
}

std::string valueOf(const std::string& key, const std::string& note) {
    const std::size_t at = note.find("\n" + key + "=");
    if (at == std::string::npos)
        return "";
    const std::size_t start = at + key.size() + 2;
    return note.substr(start, note.find('\n', start) - start);
}

/// Restores like a file manager: moves every item to the path in its note. Returns the number of items.
int restoreAll(const TempTree& tree) {
    int restored = 0;
    for (const auto& entry : fs::directory_iterator(tree.path(std::string(trashFolder) + "/info"))) {
        const std::string note = textOf(entry.path());
        EXPECT_TRUE(note.starts_with("[Trash Info]\n")) << note;
        EXPECT_EQ(valueOf("DeletionDate", note).size(), std::string("2024-01-01T00:00:00").size()) << note;
        const std::string file = entry.path().filename().string();
        const std::string name = file.substr(0, file.size() - std::string(".trashinfo").size());
        fs::rename(tree.path(std::string(trashFolder) + "/files/" + name),
                   percentDecoded(valueOf("Path", note)));
        ++restored;
    }
    return restored;
}

FileTime date(std::int64_t seconds) {
    return FileTime(std::chrono::seconds(seconds));
}

TEST(Trash, RestoresWhatWasTrashedByteForByte) {
    TempTree tree(lifelike());
    const std::vector<std::string> names = {
        "düz", "line\nfeed", "not-\xff\xfe-utf8", "100%41 sure", "#hash?;&=",          " blanks ",
        "-rf", "quo\"te'\\", ".hidden",           "a.trashinfo", std::string(200, 'n')};
    std::vector<TreeEntry> entries;
    std::vector<std::string> urls;
    for (const std::string& name : names) {
        std::string all;
        for (int byte = 0; byte < 256; ++byte)
            all += static_cast<char>(byte);
        entries.push_back(
            folder(name, {textFile(name, all).withMode(0640).modifiedAt(date(1'000'000'000)),
                          link("way", "../" + name), fifo("pipe"), sparseFile("hole", 1'000'000),
                          folder("empty").withMode(0700).modifiedAt(date(1'234'567'890))})
                .modifiedAt(date(1'111'111'111)));
        urls.push_back(tree.path("home/items/" + name));
    }
    entries.push_back(textFile("file", "f").withMode(0400).modifiedAt(date(5)));
    entries.push_back(link("dangling", "nowhere"));
    urls.push_back(tree.path("home/items/file"));
    urls.push_back(tree.path("home/items/dangling"));
    tree.add("home", {folder("items", entries)});
    const auto before = likeness(tree.path("home/items"));
    inHome(tree, [&] {
        const auto freed = cleaner().clean(finding(urls), CleanMode::trash);
        ASSERT_TRUE(freed) << text(freed.error());
        EXPECT_TRUE(fs::is_empty(tree.path("home/items")));
        EXPECT_EQ(restoreAll(tree), static_cast<int>(urls.size()));
        auto after = likeness(tree.path("home/items"));
        after["."].modified = before.at(".").modified;  // entries were moved out of it and back
        EXPECT_EQ(after, before);
    });
}

TEST(Trash, ARelativeFolderInTheEnvironmentEndsNothingAndMovesNoTrash) {
    for (const char* name : {"XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_STATE_HOME"}) {
        const TempTree tree(lifelike());
        inHome(tree, [&] {
            ::alarm(600);
            const ScopedEnvironment environment({{name, "relative/data"}});
            fs::current_path(tree.path());
            EXPECT_TRUE(cleaner().clean(finding({tree.path("home/one")}), CleanMode::permanent)) << name;
        });
        inHome(tree, [&] {
            const ScopedEnvironment environment({{name, "relative/data"}});
            fs::current_path(tree.path());
            platform::forgetRelativeFolders();
            EXPECT_TRUE(cleaner().clean(finding({tree.path("home/two")}), CleanMode::trash)) << name;
            EXPECT_EQ(restoreAll(tree), 1) << name;
            EXPECT_FALSE(exists(tree.path("relative"))) << name;
        });
    }
}

TEST(Trash, KeepsTwoItemsOfOneNameApart) {
    TempTree tree(lifelike());
    tree.add("home", {folder("x", {textFile("same", "1")}), folder("y", {textFile("same", "2")})});
    inHome(tree, [&] {
        ASSERT_TRUE(
            cleaner().clean(finding({tree.path("home/x/same"), tree.path("home/y/same")}), CleanMode::trash));
        EXPECT_EQ(restoreAll(tree), 2);
        EXPECT_EQ(textOf(tree.path("home/x/same")), "1");
        EXPECT_EQ(textOf(tree.path("home/y/same")), "2");
    });
}

TEST(Trash, TheTrashItselfCannotBeTrashed) {
    TempTree tree(lifelike());
    inHome(tree, [&] {
        ASSERT_TRUE(cleaner().clean(finding({tree.path("home/one")}), CleanMode::trash));
        EXPECT_FALSE(cleaner().clean(finding({tree.path(trashFolder)}), CleanMode::trash));
        EXPECT_EQ(textOf(tree.path(std::string(trashFolder) + "/files/one")), "1");
    });
}

/// The system's services, with the desktop's emptying replaced by a counter: it would empty every Trash of
/// the user who runs the test.
class CountingDesktop {
public:
    CountingDesktop() : services(withDesktopsTrash()) {
        services.runUntil = [this](const std::string& program, std::span<const std::string>,
                                   const std::stop_token&) {
            EXPECT_EQ(program, "/desktop");
            ++asked;
            return Shell::Result{};
        };
    }

    Cleaner::Services services;
    int asked = 0;
};

TEST(EmptyingTheTrash, AnItemThatCannotBeRemovedKeepsNoOther) {
    TempTree tree(lifelike());
    inHome(tree, [&] {
        ASSERT_TRUE(
            cleaner().clean(finding({tree.path("home/one"), tree.path("home/two"), tree.path("home/three")}),
                            CleanMode::trash));
        CountingDesktop desktop;
        const auto remove = desktop.services.removeItem;
        desktop.services.removeItem = [&](const platform::Directory& parent, const std::string& name,
                                          const platform::ItemIdentity& item,
                                          const std::set<platform::FileNumber>& kept) {
            if (name != "three")
                return remove(parent, name, item, kept);
            return std::expected<void, platform::FileError>(
                std::unexpect, platform::FileError{.code = {EIO, std::generic_category()}, .path = name});
        };
        EXPECT_FALSE(cleaner(desktop.services).emptyTrash()) << "the desktop has not removed it either";
        EXPECT_EQ(desktop.asked, 1);
        EXPECT_FALSE(exists(tree.path(std::string(trashFolder) + "/files/one")));
        EXPECT_FALSE(exists(tree.path(std::string(trashFolder) + "/info/one.trashinfo")));
        EXPECT_FALSE(exists(tree.path(std::string(trashFolder) + "/files/two")));
        // It can still be restored.
        EXPECT_EQ(restoreAll(tree), 1);
        EXPECT_EQ(textOf(tree.path("home/three")), "3");
    });
}

TEST(EmptyingTheTrash, ALockedItemIsLeftToTheDesktop) {
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root gives files away";
    TempTree tree(lifelike(), TempTree::Owner::unprivileged);
    if (const auto reason = whyNotUnprivileged(tree.path()))
        GTEST_SKIP() << *reason;
    // Another user's, because one's own folders are made writable if needed.
    ASSERT_EQ(::chown(tree.path("home/proje/build").c_str(), 0, 0), 0);
    const std::string locked = tree.path(std::string(trashFolder) + "/files/proje/build");
    asUnprivileged([&] {
        const AtHome environment(tree);
        ASSERT_TRUE(
            cleaner().clean(finding({tree.path("home/proje"), tree.path("home/two")}), CleanMode::trash));
        CountingDesktop desktop;
        EXPECT_FALSE(cleaner(desktop.services).emptyTrash()) << "the desktop has not removed it either";
        EXPECT_EQ(desktop.asked, 1);
        EXPECT_TRUE(exists(locked + "/a.o"));
        EXPECT_TRUE(exists(tree.path(std::string(trashFolder) + "/info/proje.trashinfo")));
        EXPECT_FALSE(exists(tree.path(std::string(trashFolder) + "/files/two")));
    });
    ASSERT_EQ(::chown(locked.c_str(), unprivilegedId, unprivilegedId), 0);
    ASSERT_EQ(::chmod(locked.c_str(), 0500), 0);
    asUnprivileged([&] {
        const AtHome environment(tree);
        CountingDesktop desktop;
        EXPECT_TRUE(cleaner(desktop.services).emptyTrash());
        EXPECT_EQ(desktop.asked, 0) << "once it can be removed, nobody else is needed";
        EXPECT_TRUE(fs::is_empty(tree.path(trashFolder)));
    });
}

TEST(EmptyingTheTrash, ItemsThatCannotBeListedKeepTheirNotes) {
    TempTree tree(lifelike(), TempTree::Owner::unprivileged);
    if (const auto reason = whyNotUnprivileged(tree.path()))
        GTEST_SKIP() << *reason;
    asUnprivileged([&] {
        const AtHome environment(tree);
        ASSERT_TRUE(cleaner().clean(finding({tree.path("home/one")}), CleanMode::trash));
        const std::string items = tree.path(std::string(trashFolder) + "/files");
        ASSERT_EQ(::chmod(items.c_str(), 0), 0);
        CountingDesktop desktop;
        EXPECT_FALSE(cleaner(desktop.services).emptyTrash()) << "nobody can tell what is left";
        EXPECT_EQ(desktop.asked, 1);
        ASSERT_EQ(::chmod(items.c_str(), 0700), 0);
        EXPECT_EQ(restoreAll(tree), 1);
        EXPECT_EQ(textOf(tree.path("home/one")), "1");
    });
}

TEST(EmptyingTheTrash, ADesktopThatCannotBeAskedIsNamed) {
    const TempTree tree(lifelike());
    inHome(tree, [&] {
        Cleaner::Services services = withDesktopsTrash();
        services.runUntil = [](const std::string&, std::span<const std::string>,
                               const std::stop_token&) -> std::expected<Shell::Result, std::error_code> {
            return std::unexpected(std::make_error_code(std::errc::no_such_file_or_directory));
        };
        makeTrashALink(tree);
        const auto emptied = cleaner(services).emptyTrash();
        ASSERT_FALSE(emptied);
        EXPECT_EQ(std::get<StartError>(emptied.error()).program, "/desktop");
        EXPECT_EQ(text(emptied.error()), "“/desktop” başlatılamadı: program bu bilgisayarda yok.");
    });
}

TEST(EmptyingTheTrash, CopesWithAHalfWrittenTrash) {
    TempTree tree(lifelike());
    tree.add(
        "home",
        {folder(
            ".local",
            {folder("share",
                    {folder("Trash", {folder("files", {textFile("without a note", "x"), textFile("both", "b"),
                                                       folder("\xff\n", {textFile("\x01", "y")})}),
                                      folder("info", {textFile("without an item.trashinfo", ""),
                                                      textFile("both.trashinfo", "[Trash Info]\n"),
                                                      textFile("no note.tmp", "")}),
                                      folder("expunged", {folder("123", {textFile("z", "z")})}),
                                      textFile("directorysizes", ""), textFile("loose", "l")})})})});
    fs::last_write_time(tree.path(std::string(trashFolder) + "/info/without an item.trashinfo"),
                        fs::file_time_type::clock::now() - std::chrono::hours(1));
    inHome(tree, [&] {
        CountingDesktop desktop;
        EXPECT_TRUE(cleaner(desktop.services).emptyTrash());
        EXPECT_EQ(desktop.asked, 0);
        EXPECT_TRUE(fs::is_empty(tree.path(trashFolder)));
    });
}

TEST(EmptyingTheTrash, ATrashOfOnlyOneHalfIsEmptiedToo) {
    for (const char* half : {"files", "info"}) {
        TempTree tree(lifelike());
        tree.add(
            "home",
            {folder(".local", {folder("share", {folder("Trash", {folder(half, {textFile("a", "a")})})})})});
        inHome(tree, [&] {
            CountingDesktop desktop;
            EXPECT_TRUE(cleaner(desktop.services).emptyTrash());
            EXPECT_EQ(desktop.asked, 0) << half;
            EXPECT_TRUE(fs::is_empty(tree.path(trashFolder))) << half;
        });
    }
}

TEST(EmptyingTheTrash, FollowsNoLinkInIt) {
    TempTree tree(lifelike());
    tree.add("home",
             {folder(".local",
                     {folder("share", {folder("Trash", {folder("files", {link("way", tree.path("canaries"))}),
                                                        link("info", tree.path("canaries"))})})})});
    inHome(tree, [&] {
        CountingDesktop desktop;
        EXPECT_TRUE(cleaner(desktop.services).emptyTrash()) << "a folder of notes that is none holds no item";
        EXPECT_EQ(desktop.asked, 0);
        EXPECT_TRUE(exists(tree.path("canaries/canary")));
        EXPECT_FALSE(exists(tree.path(std::string(trashFolder) + "/files/way")));
    });
}

TEST(EmptyingTheTrash, ATrashThatHoldsAVolumeIsRefused) {
    if (const auto reason = whyNoPrivateMounts())
        GTEST_SKIP() << *reason;
    TempTree tree(lifelike());
    tree.add("home",
             {folder(".local", {folder("share", {folder("Trash", {folder("files", {folder("disk")})})})})});
    withPrivateMounts([&] {
        const AtHome environment(tree);
        const std::string disk = tree.path(std::string(trashFolder) + "/files/disk");
        ASSERT_TRUE(mountMemory(disk));
        std::ofstream(disk + "/precious") << "p";
        CountingDesktop desktop;
        const auto emptied = cleaner(desktop.services).emptyTrash();
        ASSERT_FALSE(emptied);
        EXPECT_EQ(std::get<platform::FileError>(emptied.error()).code, std::errc::device_or_resource_busy);
        EXPECT_EQ(desktop.asked, 0);
        EXPECT_TRUE(exists(disk + "/precious"));
    });
}

/// Trashes the items as a concurrent program does. Returns how many were lost: 0 on success, used as the exit
/// status.
int trashAll(const TempTree& tree, int items) {
    int lost = 0;
    for (int item = 0; item < items; ++item) {
        // It may find a Trash whose folders are just being removed; the item then stays where it is.
        const std::string path = tree.path("home/many/item" + std::to_string(item));
        if (!cleaner().clean(finding({path}), CleanMode::trash) && !exists(path + "/x"))
            ++lost;
    }
    return std::min(lost, 100);
}

TEST(EmptyingTheTrash, WhatIsTrashedMeanwhileIsWholeOrGone) {
    constexpr int items = 300;
    TempTree tree(lifelike());
    std::vector<TreeEntry> many;
    for (int item = 0; item < items; ++item)
        many.push_back(folder("item" + std::to_string(item), {textFile("x", "x")}));
    tree.add("home", {folder("many", many)});
    inHome(tree, [&] {
        const pid_t other = ::fork();
        ASSERT_GE(other, 0);
        if (other == 0)
            ::_exit(trashAll(tree, items));
        CountingDesktop desktop;
        int status = 0;
        while (::waitpid(other, &status, WNOHANG) == 0)
            EXPECT_TRUE(cleaner(desktop.services).emptyTrash());
        EXPECT_EQ(status, 0);
        EXPECT_TRUE(cleaner(desktop.services).emptyTrash());
        EXPECT_TRUE(!exists(tree.path(trashFolder)) || fs::is_empty(tree.path(trashFolder)));
        EXPECT_LT(std::distance(fs::directory_iterator(tree.path("home/many")), {}), items);
    });
}

/// The folder of notes in a home's Trash.
std::string notesOf(const TempTree& tree) {
    return tree.path("home/.local/share/Trash/info");
}

TEST(Prepare, WritesTheNotesOfSeveralFindingsTogetherAndEachIsUsed) {
    const TempTree tree(lifelike());
    inHome(tree, [&] {
        std::vector<std::shared_ptr<const Finding>> findings;
        for (const char* name : {"home/one", "home/two", "home/three", "home/gone"})
            findings.push_back(std::make_shared<const Finding>(finding({tree.path(name)})));
        auto ahead = cleaner().prepare(findings, CleanMode::trash);
        ASSERT_TRUE(ahead);
        EXPECT_EQ(platform::listNames(notesOf(tree)).size(), 4U);
        for (const auto& each : findings) {
            CleanRun run{.ahead = ahead.get()};
            EXPECT_EQ(cleaner().clean(*each, CleanMode::trash, run).has_value(), !each->id.ends_with("gone"));
        }
        ahead.reset();
        EXPECT_THAT(platform::listNames(notesOf(tree)),
                    testing::UnorderedElementsAre("one.trashinfo", "two.trashinfo", "three.trashinfo"));
    });
}

TEST(Prepare, LeavesWhatMustStay) {
    const TempTree tree(lifelike());
    inHome(tree, [&] {
        std::vector<std::shared_ptr<const Finding>> findings;
        for (const char* name : {"home/Documents", "home/one"})
            findings.push_back(std::make_shared<const Finding>(finding({tree.path(name)})));
        const auto ahead = cleaner().prepare(findings, CleanMode::permanent);
        CleanRun run{.ahead = ahead.get()};
        EXPECT_FALSE(cleaner().clean(*findings.front(), CleanMode::permanent, run));
        EXPECT_TRUE(exists(tree.path("home/Documents/old.zip")));
        EXPECT_TRUE(cleaner().clean(*findings.back(), CleanMode::permanent, run));
    });
}

TEST(Prepare, AStopLeavesNoNotesOfWhatStays) {
    const TempTree tree(lifelike());
    inHome(tree, [&] {
        std::stop_source stop;
        Cleaner::Services services = Cleaner::Services::system();
        services.moveToTrash = [&, move = services.moveToTrash](const auto& parent, const auto& name,
                                                                const auto& item, const auto& path,
                                                                auto* ahead) {
            stop.request_stop();
            EXPECT_EQ(platform::listNames(notesOf(tree)).size(), 3U) << "those of all items";
            return move(parent, name, item, path, ahead);
        };
        CleanRun run{.stop = stop.get_token()};
        EXPECT_FALSE(cleaner(services).clean(
            finding({tree.path("home/one"), tree.path("home/two"), tree.path("home/three")}),
            CleanMode::trash, run));
        EXPECT_THAT(platform::listNames(notesOf(tree)), testing::ElementsAre("one.trashinfo"));
    });
}

}  // namespace
}  // namespace ulvak
