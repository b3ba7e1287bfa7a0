#include "platform/posix/system.h"

#include <fcntl.h>
#include <libproc.h>
#include <sys/attr.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <string_view>
#include <vector>

namespace ulvak::platform {
namespace {

/// How many `QuietAccess` this thread has.
thread_local int quietDepth = 0;

void setQuiet(bool isQuiet) {
    // Dropped by design: where the system refuses, it looks as if somebody else had looked.
    (void)::setiopolicy_np(IOPOL_TYPE_VFS_ATIME_UPDATES, IOPOL_SCOPE_THREAD,
                           isQuiet ? IOPOL_ATIME_UPDATES_OFF : IOPOL_ATIME_UPDATES_DEFAULT);
    (void)::setiopolicy_np(
        IOPOL_TYPE_VFS_MATERIALIZE_DATALESS_FILES, IOPOL_SCOPE_THREAD,
        isQuiet ? IOPOL_MATERIALIZE_DATALESS_FILES_OFF : IOPOL_MATERIALIZE_DATALESS_FILES_DEFAULT);
}

}  // namespace

QuietAccess::QuietAccess() {
    if (quietDepth++ == 0)
        setQuiet(true);
}

QuietAccess::~QuietAccess() {
    const int error = errno;  // whoever leaves with -1 has set it
    if (--quietDepth == 0)
        setQuiet(false);
    errno = error;
}

}  // namespace ulvak::platform

namespace ulvak::platform::posix {
namespace {

constexpr int listingFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
/// The longest path that the kernel takes in one call, without the terminating zero.
constexpr std::size_t maxPathLength = PATH_MAX - 1;

/// Links are refused anywhere in the path. Volumes have no flag, but with neither links nor "..", whoever has
/// left one has not come back.
FileDescriptor openBelow(int parent, const char* path, int flags) {
    const QuietAccess quiet;
    FileDescriptor opened(::openat(parent, path, flags | O_NOFOLLOW_ANY));
    struct stat own{};
    struct stat around{};
    if (opened.isOpen() &&
        (::fstat(opened.get(), &own) != 0 || ::fstat(parent, &around) != 0 || own.st_dev != around.st_dev)) {
        opened.close();
        errno = EXDEV;
    }
    return opened;
}

bool mayBePermitted(const struct stat& folder) {
    return folder.st_uid == ::geteuid() && (folder.st_mode & S_IRWXU) != S_IRWXU;
}

/// Whether another volume is mounted on this very folder, or is as soon as somebody looks.
bool isMountPoint(int parent, const char* name) {
    attrlist wanted{};
    wanted.bitmapcount = ATTR_BIT_MAP_COUNT;
    wanted.dirattr = ATTR_DIR_MOUNTSTATUS;
    struct {
        std::uint32_t length = 0;
        std::uint32_t status = 0;
    } answer;
    const int result = ::getattrlistat(parent, name, &wanted, &answer, sizeof answer, FSOPT_NOFOLLOW);
    return result == 0 && answer.length >= sizeof answer &&
           (answer.status & (DIR_MNTSTATUS_MNTPOINT | DIR_MNTSTATUS_TRIGGER)) != 0;
}

}  // namespace

FileDescriptor openFolder(int parent, const char* path) {
    const QuietAccess quiet;
    return FileDescriptor(::openat(parent, path, listingFlags));
}

FileDescriptor openFolderBelow(int parent, const char* path) {
    return openBelow(parent, path, listingFlags);
}

FileDescriptor openStepBelow(int parent, const char* path) {
    return openBelow(parent, path, O_SEARCH | O_CLOEXEC);
}

std::size_t stepLength(std::string_view path) {
    if (path.size() <= maxPathLength)
        return path.size();
    const std::size_t slash = path.rfind('/', maxPathLength);
    return slash == std::string_view::npos ? path.size() : slash;
}

FileDescriptor openFile(int parent, const char* name) {
    const QuietAccess quiet;
    return FileDescriptor(::openat(parent, name, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY | O_NOFOLLOW));
}

std::optional<Item> itemAt(int parent, const char* name) {
    const QuietAccess quiet;
    struct stat info{};
    if (::fstatat(parent, name, &info, AT_SYMLINK_NOFOLLOW) != 0)
        return std::nullopt;
    return Item{
        .isFolder = S_ISDIR(info.st_mode),
        .isRegularFile = S_ISREG(info.st_mode),
        .isMountPoint = S_ISDIR(info.st_mode) && isMountPoint(parent, name),
        .isPlaceholder = (info.st_flags & SF_DATALESS) != 0,
        .length = info.st_size,
        .allocatedSize = allocatedBytes(static_cast<std::uint64_t>(std::max<blkcnt_t>(info.st_blocks, 0))),
    };
}

int moveToFreeName(int folder, const char* name, const char* freeName) {
    const QuietAccess quiet;
    return ::renameatx_np(folder, name, folder, freeName, RENAME_EXCL);
}

int exchange(int folder, const char* one, const char* other) {
    const QuietAccess quiet;
    return ::renameatx_np(folder, one, folder, other, RENAME_SWAP);
}

bool movingCopies(int /*folder*/) {
    return false;
}

bool permit(int folder) {
    struct stat info{};
    return ::fstat(folder, &info) == 0 && mayBePermitted(info) &&
           ::fchmod(folder, (info.st_mode & 07777) | S_IRWXU) == 0;
}

/// A folder without any right cannot be opened at all, so that its name has to do.
bool permitBelow(int parent, const char* name, const FileNumber& number) {
    const QuietAccess quiet;
    struct stat info{};
    return ::fstatat(parent, name, &info, AT_SYMLINK_NOFOLLOW) == 0 && S_ISDIR(info.st_mode) &&
           mayBePermitted(info) && FileNumber{volumeNumber(info), info.st_ino} == number &&
           ::fchmodat(parent, name, (info.st_mode & 07777) | S_IRWXU, AT_SYMLINK_NOFOLLOW) == 0;
}

std::optional<ItemIdentity> identityAt(int parent, const char* name) {
    const QuietAccess quiet;
    struct stat info{};
    const bool isItself = *name == '\0';
    if ((isItself ? ::fstat(parent, &info) : ::fstatat(parent, name, &info, AT_SYMLINK_NOFOLLOW)) != 0)
        return std::nullopt;
    ItemIdentity identity{.number = {volumeNumber(info), info.st_ino}, .born = {}};
    // File systems that keep none say the beginning of 1970, or the time before it.
    if (info.st_birthtimespec.tv_sec > 0)
        identity.born = fileTime(info.st_birthtimespec.tv_sec, info.st_birthtimespec.tv_nsec);
    return identity;
}

/// Its own file systems never use a number again.
FileDescriptor holdAt(int /*parent*/, const char* /*name*/) {
    return {};
}

int removePlaceholder(int parent, const char* name) {
    // AT_REMOVEDIR_DATALESS: the system takes it from its version 11 on, but its headers do not show it.
    constexpr int removeUnfetched = 0x0100;
    return ::unlinkat(parent, name, removeUnfetched);
}

std::uint64_t volumeNumber(const struct stat& info) {
    return static_cast<std::uint32_t>(info.st_dev);
}

/// fsync(2) hands the bytes to the drive, which may keep them in its memory; F_FULLFSYNC has it write them.
/// Not every file system knows it. Where one does and fails, the bytes are not on the disk.
int flushToDisk(int handle) {
    if (::fcntl(handle, F_FULLFSYNC) != -1)
        return 0;
    const bool isUnknown = errno == ENOTSUP || errno == EINVAL || errno == ENOTTY;
    return isUnknown ? ::fsync(handle) : -1;
}

std::optional<std::size_t> openHandles() {
    // Asked without a buffer it says how large one must be, which is more than there are.
    const int most = ::proc_pidinfo(::getpid(), PROC_PIDLISTFDS, 0, nullptr, 0);
    if (most <= 0)
        return std::nullopt;
    std::vector<proc_fdinfo> handles(static_cast<std::size_t>(most) / sizeof(proc_fdinfo) + 1);
    const int size = ::proc_pidinfo(::getpid(), PROC_PIDLISTFDS, 0, handles.data(),
                                    static_cast<int>(handles.size() * sizeof(proc_fdinfo)));
    if (size <= 0)
        return std::nullopt;
    return static_cast<std::size_t>(size) / sizeof(proc_fdinfo);
}

}  // namespace ulvak::platform::posix
