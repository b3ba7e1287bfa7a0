#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>
#include <functional>
#include <string>
#include <system_error>
#include <vector>

#include "clean/clean_support.h"

// Errors from the system. Each finding has three items, the second of which cannot be cleaned: the first is
// then gone, the third untouched, and the result is the system's error.

namespace ulvak {
namespace {

using namespace test;

constexpr CleanMode bothModes[] = {CleanMode::permanent, CleanMode::trash};

std::vector<TreeEntry> threeItems(TreeEntry second) {
    return {folder("home", {folder("items", {folder("first", {textFile("a", "a")}), std::move(second),
                                             folder("third", {textFile("c", "c")})})}),
            folder("tmp")};
}

Finding three(const TempTree& tree, const std::string& second) {
    return finding(
        {tree.path("home/items/first"), tree.path("home/items/" + second), tree.path("home/items/third")});
}

/// Cleans all three and returns the error.
platform::FileError expectSecondToFail(const TempTree& tree, const std::string& second, CleanMode mode,
                                       std::errc expected,
                                       const Cleaner::Services& services = Cleaner::Services::system()) {
    const auto freed = cleaner(services).clean(three(tree, second), mode);
    EXPECT_FALSE(freed);
    if (freed)
        return {};
    const auto* error = std::get_if<platform::FileError>(&freed.error());
    EXPECT_NE(error, nullptr) << text(freed.error());
    if (error == nullptr)
        return {};
    EXPECT_EQ(error->code, expected) << error->code.message() << " at " << error->path;
    EXPECT_FALSE(exists(tree.path("home/items/first")));
    EXPECT_TRUE(exists(tree.path("home/items/third/c")));
    return *error;
}

void forEachMode(const std::function<void(CleanMode)>& test) {
    for (const CleanMode mode : bothModes) {
        SCOPED_TRACE(mode == CleanMode::trash ? "trash" : "permanent");
        test(mode);
    }
}

/// Read-only, as build tools leave third-party sources to prevent accidental edits.
TreeEntry readOnlyTree() {
    return folder("second",
                  {folder("mod", {folder("inner",
                                         {textFile("b", "b").withMode(0400), folder("empty").withMode(0500)})
                                      .withMode(0500),
                                  textFile("c", "c").withMode(0400)})
                       .withMode(0500),
                   folder("unlisted", {textFile("d", "d"), folder("e", {textFile("f", "f")}).withMode(0)})
                       .withMode(0300),
                   folder("closed", {textFile("g", "g")}).withMode(0),
                   folder("named", {folder("h"), textFile("i", "i")}).withMode(0400)})
        .withMode(0500);
}

TEST(Faults, AReadOnlyTreeOfTheUsersOwnGoesForGood) {
    const TempTree tree(threeItems(readOnlyTree()), TempTree::Owner::unprivileged);
    if (const auto reason = whyNotUnprivileged(tree.path()))
        GTEST_SKIP() << *reason;
    asUnprivileged([&] {
        const AtHome environment(tree);
        struct stat before{};
        ASSERT_EQ(::stat(tree.path("home/items").c_str(), &before), 0);
        const auto freed = cleaner().clean(three(tree, "second"), CleanMode::permanent);
        EXPECT_TRUE(freed) << text(freed.error());
        for (const char* item : {"first", "second", "third"})
            EXPECT_FALSE(exists(tree.path(std::string("home/items/") + item))) << item;
        struct stat after{};
        ASSERT_EQ(::stat(tree.path("home/items").c_str(), &after), 0);
        EXPECT_EQ(after.st_mode, before.st_mode) << "what is around the items stays as it is";
    });
}

TEST(Faults, FoldersThatNobodyRefusesKeepTheirPermissions) {
    const TempTree tree(
        threeItems(
            folder("second",
                   {folder("wide", {folder("theirs").withMode(0555), textFile("b", "b")}).withMode(0755)})),
        TempTree::Owner::unprivileged);
    if (const auto reason = whyNotUnprivileged(tree.path()))
        GTEST_SKIP() << *reason;
    if (::geteuid() == 0) {
        ASSERT_EQ(::chown(tree.path("home/items/second/wide/theirs").c_str(), 0, 0), 0);
        ASSERT_EQ(::mknod(tree.path("home/items/second/wide/theirs/x").c_str(), S_IFREG | 0644, 0), 0);
    }
    asUnprivileged([&] {
        const AtHome environment(tree);
        const auto error =
            expectSecondToFail(tree, "second", CleanMode::permanent, std::errc::permission_denied);
        EXPECT_EQ(error.path, tree.path("home/items/second/wide/theirs/x"));
        struct stat info{};
        ASSERT_EQ(::stat(tree.path("home/items/second/wide/theirs").c_str(), &info), 0);
        EXPECT_EQ(info.st_mode & 07777U, 0555U) << "another user's";
        ASSERT_EQ(::stat(tree.path("home/items/second/wide").c_str(), &info), 0);
        EXPECT_EQ(info.st_mode & 07777U, 0755U);
    });
}

TEST(Faults, AnItemInAFolderInWhichNothingMayBeChanged) {
    forEachMode([&](CleanMode mode) {
        const TempTree tree(
            threeItems(folder("second", {folder("locked", {textFile("b", "b")})}).withMode(0500)),
            TempTree::Owner::unprivileged);
        if (const auto reason = whyNotUnprivileged(tree.path()))
            GTEST_SKIP() << *reason;
        asUnprivileged([&] {
            const AtHome environment(tree);
            expectSecondToFail(tree, "second/locked", mode, std::errc::permission_denied);
            EXPECT_TRUE(exists(tree.path("home/items/second/locked/b")));
        });
    });
}

TEST(Faults, AFolderThatMayNotBeListed) {
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root gives files away";
    const TempTree tree(threeItems(folder("second", {folder("empty").withMode(0300),
                                                     folder("full", {textFile("b", "b")}).withMode(0300)})),
                        TempTree::Owner::unprivileged);
    if (const auto reason = whyNotUnprivileged(tree.path()))
        GTEST_SKIP() << *reason;
    for (const char* theirs : {"empty", "full"})
        ASSERT_EQ(::chown(tree.path(std::string("home/items/second/") + theirs).c_str(), 0, 0), 0);
    asUnprivileged([&] {
        const AtHome environment(tree);
        const auto error =
            expectSecondToFail(tree, "second", CleanMode::permanent, std::errc::permission_denied);
        EXPECT_EQ(error.path, tree.path("home/items/second/full"));
        EXPECT_TRUE(exists(tree.path("home/items/second/full")));
    });
    ASSERT_EQ(::unlink(tree.path("home/items/second/full/b").c_str()), 0);
    asUnprivileged([&] {
        const AtHome environment(tree);
        EXPECT_TRUE(cleaner().clean(finding({tree.path("home/items/second")}), CleanMode::permanent))
            << "a folder that cannot be listed but is empty can be removed";
    });
}

TEST(Faults, AnotherUsersFolderInside) {
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root gives files away";
    const TempTree tree(threeItems(folder("second", {folder("theirs", {textFile("b", "b")})})),
                        TempTree::Owner::unprivileged);
    if (const auto reason = whyNotUnprivileged(tree.path()))
        GTEST_SKIP() << *reason;
    ASSERT_EQ(::chown(tree.path("home/items/second/theirs").c_str(), 0, 0), 0);
    asUnprivileged([&] {
        const AtHome environment(tree);
        expectSecondToFail(tree, "second", CleanMode::permanent, std::errc::permission_denied);
        EXPECT_TRUE(exists(tree.path("home/items/second/theirs/b")));
    });
}

TEST(Faults, AnotherUsersFileInAFolderOfOnesOwnGoes) {
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root gives files away";
    const TempTree tree(threeItems(folder("second", {textFile("theirs", "b")})),
                        TempTree::Owner::unprivileged);
    if (const auto reason = whyNotUnprivileged(tree.path()))
        GTEST_SKIP() << *reason;
    ASSERT_EQ(::chown(tree.path("home/items/second/theirs").c_str(), 0, 0), 0);
    asUnprivileged([&] {
        const AtHome environment(tree);
        EXPECT_TRUE(cleaner().clean(three(tree, "second"), CleanMode::permanent));
    });
}

/// A file that cannot be changed or removed while this object lives.
class ImmutableFile {
public:
    explicit ImmutableFile(const std::string& path) : handle_(::open(path.c_str(), O_RDONLY | O_CLOEXEC)) {
        change(FS_IMMUTABLE_FL);
    }
    ~ImmutableFile() {
        if (isInForce_)
            change(0);
        ::close(handle_);
    }
    ImmutableFile(const ImmutableFile&) = delete;
    ImmutableFile& operator=(const ImmutableFile&) = delete;

    [[nodiscard]] bool isInForce() const { return isInForce_; }

private:
    void change(int flag) {
        int flags = 0;
        if (::ioctl(handle_, FS_IOC_GETFLAGS, &flags) != 0)
            return;
        flags = (flags & ~FS_IMMUTABLE_FL) | flag;
        isInForce_ = ::ioctl(handle_, FS_IOC_SETFLAGS, &flags) == 0 && flag != 0;
    }

    int handle_;
    bool isInForce_ = false;
};

TEST(Faults, AFileThatNobodyMayChange) {
    const TempTree tree(threeItems(folder("second", {textFile("fixed", "b")})));
    const ImmutableFile fixed(tree.path("home/items/second/fixed"));
    if (!fixed.isInForce())
        GTEST_SKIP() << "this user or file system knows no files that cannot be changed";
    inHome(tree, [&] {
        const auto error =
            expectSecondToFail(tree, "second", CleanMode::permanent, std::errc::operation_not_permitted);
        EXPECT_EQ(error.path, tree.path("home/items/second/fixed"));
    });
    TempTree other(threeItems(textFile("second", "b")));
    const ImmutableFile item(other.path("home/items/second"));
    ASSERT_TRUE(item.isInForce());
    inHome(other, [&] {
        const auto error =
            expectSecondToFail(other, "second", CleanMode::trash, std::errc::operation_not_permitted);
        EXPECT_TRUE(text(error).ends_with("öğe değiştirilemez olarak işaretli.")) << text(error);
        EXPECT_TRUE(exists(other.path("home/items/second")));
    });
}

/// Cleans three items in either mode after `mount` has changed the mounts. That must fail before the first
/// item is touched; `judge` checks how.
void expectAllToStay(const std::function<void(const TempTree&)>& mount,
                     const std::function<void(const TempTree&, std::error_code, CleanMode)>& judge) {
    forEachMode([&](CleanMode mode) {
        const TempTree tree(threeItems(folder("second")));
        withPrivateMounts([&] {
            const AtHome environment(tree);
            mount(tree);
            if (testing::Test::HasFatalFailure())
                return;
            const auto freed = cleaner().clean(three(tree, "second"), mode);
            ASSERT_FALSE(freed);
            judge(tree, std::get<platform::FileError>(freed.error()).code, mode);
            EXPECT_TRUE(exists(tree.path("home/items/first/a"))) << "all items are judged first";
        });
    });
}

TEST(Faults, AMountPointIsBusyBeforeAnythingIsTouched) {
    if (const auto reason = whyNoPrivateMounts())
        GTEST_SKIP() << *reason;
    expectAllToStay(
        [](const TempTree& tree) {
            ASSERT_TRUE(mountMemory(tree.path("home/items/second")));
            std::ofstream(tree.path("home/items/second/precious")) << "p";
        },
        [](const TempTree& tree, std::error_code code, CleanMode) {
            EXPECT_EQ(code, std::errc::device_or_resource_busy);
            EXPECT_TRUE(exists(tree.path("home/items/second/precious")));
        });
}

TEST(Faults, AVolumeThatIsMountedDuringTheRemovalIsNotEntered) {
    if (const auto reason = whyNoPrivateMounts())
        GTEST_SKIP() << *reason;
    const TempTree tree(threeItems(folder("second", {folder("disk")})));
    withPrivateMounts([&] {
        const AtHome environment(tree);
        Cleaner::Services services = Cleaner::Services::system();
        services.removeItem = [&](const platform::Directory& parent, const std::string& name,
                                  const platform::ItemIdentity& item,
                                  const std::set<platform::FileNumber>& kept) {
            if (name == "second") {
                EXPECT_TRUE(mountMemory(tree.path("home/items/second/disk")));
                std::ofstream(tree.path("home/items/second/disk/precious")) << "p";
            }
            return Cleaner::Services::system().removeItem(parent, name, item, kept);
        };
        const auto error = expectSecondToFail(tree, "second", CleanMode::permanent,
                                              std::errc::device_or_resource_busy, services);
        EXPECT_EQ(error.path, tree.path("home/items/second/disk"));
        EXPECT_TRUE(exists(tree.path("home/items/second/disk/precious")));
    });
}

TEST(Faults, AFullDiskKeepsTheItemFromTheTrash) {
    if (const auto reason = whyNoPrivateMounts())
        GTEST_SKIP() << *reason;
    const TempTree tree({folder("home"), folder("tmp")});
    withPrivateMounts([&] {
        const AtHome environment(tree);
        // Room for the following entries and not one more.
        ASSERT_TRUE(mountMemory(tree.path("home"), "nr_inodes=5"));
        ASSERT_EQ(::mkdir(tree.path("home/items").c_str(), 0755), 0);
        for (const char* name : {"first", "second", "third"})
            std::ofstream(tree.path(std::string("home/items/") + name)) << name;
        const auto freed = cleaner().clean(three(tree, "second"), CleanMode::trash);
        ASSERT_FALSE(freed);
        const auto* error = std::get_if<platform::FileError>(&freed.error());
        ASSERT_NE(error, nullptr);
        EXPECT_FALSE(error->detail.empty());
        for (const char* name : {"first", "second", "third"})
            EXPECT_TRUE(exists(tree.path(std::string("home/items/") + name))) << name;
    });
}

TEST(Faults, AnItemStaysWhenWhereItBelongsCannotBeWrittenDown) {
    if (const auto reason = whyNoPrivateMounts())
        GTEST_SKIP() << *reason;
    const TempTree tree({folder("home"), folder("tmp")});
    withPrivateMounts([&] {
        const AtHome environment(tree);
        ASSERT_TRUE(mountMemory(tree.path("home"), "nr_inodes=8"));
        for (const char* made :
             {"home/.local", "home/.local/share", "home/.local/share/Trash", "home/.local/share/Trash/files",
              "home/.local/share/Trash/info", "home/item"})
            ASSERT_EQ(::mkdir(tree.path(made).c_str(), 0700), 0);
        std::ofstream(tree.path("home/item/a")) << "a";
        const auto freed = cleaner().clean(finding({tree.path("home/item")}), CleanMode::trash);
        ASSERT_FALSE(freed);
        EXPECT_EQ(std::get<platform::FileError>(freed.error()).code, std::errc::no_space_on_device)
            << text(freed.error());
        EXPECT_TRUE(exists(tree.path("home/item/a")));
    });
}

TEST(Faults, AFullDiskDoesNotKeepFromRemovingForGood) {
    if (const auto reason = whyNoPrivateMounts())
        GTEST_SKIP() << *reason;
    const TempTree tree({folder("home"), folder("tmp")});
    withPrivateMounts([&] {
        const AtHome environment(tree);
        ASSERT_TRUE(mountMemory(tree.path("home"), "size=64k"));
        ASSERT_EQ(::mkdir(tree.path("home/items").c_str(), 0755), 0);
        std::ofstream(tree.path("home/items/full")) << std::string(200'000, 'x');
        EXPECT_TRUE(cleaner().clean(finding({tree.path("home/items")}), CleanMode::permanent));
        EXPECT_FALSE(exists(tree.path("home/items")));
    });
}

TEST(Faults, AReadOnlyDiskKeepsEverything) {
    if (const auto reason = whyNoPrivateMounts())
        GTEST_SKIP() << *reason;
    expectAllToStay(
        [](const TempTree& tree) {
            const std::string home = tree.path("home");
            ASSERT_TRUE(mountAgain(home, home));
            struct statvfs volume{};
            ASSERT_EQ(::statvfs(home.c_str(), &volume), 0);
            // Only root may drop these flags from a mount. Both sides use the same values for them.
            const unsigned long kept = volume.f_flag & (ST_NOSUID | ST_NODEV | ST_NOEXEC);
            ASSERT_EQ(
                ::mount(nullptr, home.c_str(), nullptr, MS_REMOUNT | MS_BIND | MS_RDONLY | kept, nullptr), 0);
        },
        [](const TempTree&, std::error_code code, CleanMode mode) {
            EXPECT_TRUE(code == std::errc::read_only_file_system || mode == CleanMode::trash)
                << code.message();
        });
}

TEST(Faults, WithoutAListOfWhatIsMountedNothingGoes) {
    if (const auto reason = whyNoPrivateMounts())
        GTEST_SKIP() << *reason;
    expectAllToStay(
        [](const TempTree&) { ASSERT_TRUE(mountMemory("/proc")); },
        [](const TempTree&, std::error_code code, CleanMode) { EXPECT_EQ(code, std::errc::io_error); });
}

TEST(Faults, ADiskThatFailsIsPassedOn) {
    forEachMode([&](CleanMode mode) {
        const TempTree tree(threeItems(folder("second", {textFile("b", "b")})));
        inHome(tree, [&] {
            // A test cannot break a disk.
            Cleaner::Services services = Cleaner::Services::system();
            const platform::FileError broken{
                .code = {EIO, std::generic_category()}, .path = "second/b", .detail = "the disk's own words"};
            services.removeItem = [&](const platform::Directory& parent, const std::string& name,
                                      const platform::ItemIdentity& item,
                                      const std::set<platform::FileNumber>& kept) {
                if (name == "second")
                    return std::expected<void, platform::FileError>(std::unexpect, broken);
                return Cleaner::Services::system().removeItem(parent, name, item, kept);
            };
            services.moveToTrash = [&](const platform::Directory& parent, const std::string& name,
                                       const platform::ItemIdentity& item, const std::string& path,
                                       platform::TrashNotes* ahead) {
                if (name == "second")
                    return std::expected<platform::TrashedItem, platform::FileError>(std::unexpect, broken);
                return Cleaner::Services::system().moveToTrash(parent, name, item, path, ahead);
            };
            const auto error = expectSecondToFail(tree, "second", mode, std::errc::io_error, services);
            EXPECT_EQ(error.detail, broken.detail);
            EXPECT_TRUE(text(error).ends_with("disk okunamadı ya da yazılamadı. (the disk's own words)"));
        });
    });
}

TEST(Faults, AnItemThatHasVanished) {
    forEachMode([&](CleanMode mode) {
        const TempTree tree(threeItems(folder("other")));
        inHome(tree, [&] {
            const auto error = expectSecondToFail(tree, "second", mode, std::errc::no_such_file_or_directory);
            EXPECT_EQ(error.path, tree.path("home/items/second"));
        });
    });
}

TEST(Faults, AFolderOnTheWayThatHasVanishedOrIsNone) {
    forEachMode([&](CleanMode mode) {
        const TempTree tree(threeItems(textFile("other", "o")));
        inHome(tree, [&] {
            EXPECT_FALSE(cleaner().clean(finding({tree.path("home/items/gone/item")}), mode));
            const auto freed = cleaner().clean(finding({tree.path("home/items/other/item")}), mode);
            ASSERT_FALSE(freed);
            EXPECT_EQ(std::get<platform::FileError>(freed.error()).code, std::errc::not_a_directory);
            EXPECT_TRUE(exists(tree.path("home/items/other")));
        });
    });
}

}  // namespace
}  // namespace ulvak
