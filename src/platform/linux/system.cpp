#include "platform/posix/system.h"

#include <fcntl.h>
#include <linux/magic.h>
#include <linux/openat2.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/sysmacros.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <string>

namespace ulvak::platform {

// Set per opened file instead (O_NOATIME).
QuietAccess::QuietAccess() = default;
QuietAccess::~QuietAccess() = default;

}  // namespace ulvak::platform

namespace ulvak::platform::posix {
namespace {

/// Maximum length of a path in one system call, without the terminating NUL.
constexpr std::size_t maxPathLength = 4095;

/// Opens with `open(flags)`. O_NOATIME keeps our reads from updating the dates that tell when a folder or
/// file was last used. Only the owner may request it; others open without.
template <typename Open>
FileDescriptor openQuietly(int flags, Open open) {
    FileDescriptor opened = open(flags | O_NOATIME);
    // NOLINTNEXTLINE(clang-analyzer-unix.Errno): whatever is not open has set it
    if (!opened.isOpen() && errno == EPERM)
        opened = open(flags);
    return opened;
}

bool mayBePermitted(const struct stat& folder) {
    return folder.st_uid == ::geteuid() && (folder.st_mode & S_IRWXU) != S_IRWXU;
}

FileNumber fileNumber(const struct statx& info) {
    return {(std::uint64_t{info.stx_dev_major} << 32U) | info.stx_dev_minor, info.stx_ino};
}

constexpr int listingFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;

/// `openat2` that crosses neither links nor mount points.
FileDescriptor openWithin(int parent, const char* path, int flags) {
    open_how how{};
    how.flags = static_cast<unsigned>(flags);
    how.resolve = RESOLVE_NO_SYMLINKS | RESOLVE_NO_XDEV;
    return FileDescriptor(static_cast<int>(::syscall(SYS_openat2, parent, path, &how, sizeof how)));
}

/// Kernels before 5.6 lack `openat2`, and some sandboxes refuse it.
bool hasOpenat2() {
    static const bool answer = [] {
        const FileDescriptor here = openWithin(AT_FDCWD, ".", O_PATH | O_CLOEXEC);
        return here.isOpen() || (errno != ENOSYS && errno != EPERM);
    }();
    return answer;
}

/// The mount id of an open folder; -1 if the kernel does not say.
int mountOf(int handle) {
    file_handle
        none{};  // no room for the handle itself, which is not needed: the mount id is returned anyway
    int mount = -1;
    const int result = ::name_to_handle_at(handle, "", &none, &mount, AT_EMPTY_PATH);
    return result == 0 || errno == EOVERFLOW ? mount : -1;
}

/// Whether two open folders are on the same mount; on the same device if the kernel does not report mounts.
bool isSameMount(int one, int other) {
    const int mount = mountOf(one);
    if (mount != mountOf(other))
        return false;
    struct stat first{};
    struct stat second{};
    return mount >= 0 ||
           (::fstat(one, &first) == 0 && ::fstat(other, &second) == 0 && first.st_dev == second.st_dev);
}

/// Like `openWithin`, for a single name, without `openat2`.
FileDescriptor openName(int parent, const char* name, int flags) {
    FileDescriptor opened(::openat(parent, name, flags | O_NOFOLLOW));
    if (opened.isOpen() && !isSameMount(opened.get(), parent)) {
        opened.close();
        errno = EXDEV;
    }
    return opened;
}

FileDescriptor openStep(int parent, const char* path, int flags) {
    return hasOpenat2() ? openWithin(parent, path, flags) : openName(parent, path, flags);
}

}  // namespace

FileDescriptor openFolder(int parent, const char* path) {
    return openQuietly(listingFlags,
                       [&](int flags) { return FileDescriptor(::openat(parent, path, flags)); });
}

FileDescriptor openFolderBelow(int parent, const char* path) {
    return openQuietly(listingFlags, [&](int flags) { return openStep(parent, path, flags); });
}

FileDescriptor openStepBelow(int parent, const char* path) {
    return openStep(parent, path, O_PATH | O_DIRECTORY | O_CLOEXEC);
}

/// Without `openat2`, one name at a time, since `O_NOFOLLOW` covers only the last component.
std::size_t stepLength(std::string_view path) {
    if (!hasOpenat2())
        return std::min(path.find('/'), path.size());
    if (path.size() <= maxPathLength)
        return path.size();
    const std::size_t slash = path.rfind('/', maxPathLength);
    return slash == std::string_view::npos ? path.size() : slash;
}

FileDescriptor openFile(int parent, const char* name) {
    constexpr int fileFlags = O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY | O_NOFOLLOW;
    return openQuietly(fileFlags, [&](int flags) { return FileDescriptor(::openat(parent, name, flags)); });
}

std::optional<Item> itemAt(int parent, const char* name) {
    struct statx info{};
    constexpr unsigned wanted = STATX_TYPE | STATX_SIZE | STATX_BLOCKS;
    if (::statx(parent, name, AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT, wanted, &info) != 0)
        return std::nullopt;
    return Item{
        .isFolder = S_ISDIR(info.stx_mode),
        .isRegularFile = S_ISREG(info.stx_mode),
        .isMountPoint = (info.stx_attributes & info.stx_attributes_mask & STATX_ATTR_MOUNT_ROOT) != 0,
        // A file with a length but no allocated blocks is a hole, or its contents are remote. Files small
        // enough to be stored in the inode still report a block.
        .isPlaceholder = info.stx_size > 0 && info.stx_blocks == 0,
        .length = static_cast<std::int64_t>(std::min<std::uint64_t>(info.stx_size, std::uint64_t{INT64_MAX})),
        .allocatedSize = allocatedBytes(info.stx_blocks),
    };
}

int moveToFreeName(int folder, const char* name, const char* freeName) {
    return ::renameat2(folder, name, folder, freeName, RENAME_NOREPLACE);
}

int exchange(int folder, const char* one, const char* other) {
    return ::renameat2(folder, one, folder, other, RENAME_EXCHANGE);
}

/// On overlayfs, a file of a lower layer is copied up when renamed.
bool movingCopies(int folder) {
    struct statfs info{};
    return ::fstatfs(folder, &info) == 0 && info.f_type == OVERLAYFS_SUPER_MAGIC;
}

bool permit(int folder) {
    struct stat info{};
    return ::fstat(folder, &info) == 0 && mayBePermitted(info) &&
           ::fchmod(folder, (info.st_mode & 07777) | S_IRWXU) == 0;
}

bool permitBelow(int parent, const char* name, const FileNumber& number) {
    const FileDescriptor folder = openStepBelow(parent, name);
    struct stat info{};
    // fchmod(2) fails on an O_PATH handle, but chmod(2) on its name in /proc works.
    return folder.isOpen() && ::fstat(folder.get(), &info) == 0 && mayBePermitted(info) &&
           FileNumber{volumeNumber(info), info.st_ino} == number &&
           ::chmod(("/proc/self/fd/" + std::to_string(folder.get())).c_str(),
                   (info.st_mode & 07777) | S_IRWXU) == 0;
}

std::optional<ItemIdentity> identityAt(int parent, const char* name) {
    struct statx info{};
    if (::statx(parent, name, AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT | AT_EMPTY_PATH, STATX_INO | STATX_BTIME,
                &info) != 0)
        return std::nullopt;
    ItemIdentity identity{.number = fileNumber(info), .born = {}};
    if ((info.stx_mask & STATX_BTIME) != 0)
        identity.born = fileTime(info.stx_btime.tv_sec, info.stx_btime.tv_nsec);
    return identity;
}

FileDescriptor holdAt(int parent, const char* name) {
    return FileDescriptor(::openat(parent, name, O_PATH | O_NOFOLLOW | O_CLOEXEC));
}

int removePlaceholder(int /*parent*/, const char* /*name*/) {
    errno = ENOTSUP;
    return -1;
}

std::uint64_t volumeNumber(const struct stat& info) {
    return (std::uint64_t{gnu_dev_major(info.st_dev)} << 32U) | gnu_dev_minor(info.st_dev);
}

int flushToDisk(int handle) {
    return ::fsync(handle);
}

std::optional<std::size_t> openHandles() {
    // Allocate the reader before opening the handle: if memory runs out, no handle is left open.
    EntryReader reader(Attributes::listed);
    const auto own = Directory::open("/proc/self/fd");
    if (!own)
        return std::nullopt;
    reader.start(*own);
    std::size_t count = 0;
    while (reader.next() != nullptr)
        ++count;
    return count;
}

}  // namespace ulvak::platform::posix
