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

/// Number of `QuietAccess` objects on this thread.
thread_local int quietDepth = 0;

void setQuiet(bool isQuiet) {
    // Dropped by design: if the system refuses, access dates are updated as by any other reader.
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
    const int error = errno;  // the caller may be about to report it
    if (--quietDepth == 0)
        setQuiet(false);
    errno = error;
}

}  // namespace ulvak::platform

namespace ulvak::platform::posix {
namespace {

constexpr int listingFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
/// Maximum length of a path in one system call, without the terminating NUL.
constexpr std::size_t maxPathLength = PATH_MAX - 1;

/// Refuses links anywhere in the path. There is no flag for volumes, but without links and ".." a path that
/// has left a volume cannot return to it, so checking the end is enough.
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

/// Whether another volume is mounted on this folder, or would be on access.
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

/// A folder without any permission cannot be opened at all, so this goes by name.
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
    // File systems without creation dates report 1970-01-01 or earlier.
    if (info.st_birthtimespec.tv_sec > 0)
        identity.born = fileTime(info.st_birthtimespec.tv_sec, info.st_birthtimespec.tv_nsec);
    return identity;
}

/// The system's own file systems never reuse an inode number.
FileDescriptor holdAt(int /*parent*/, const char* /*name*/) {
    return {};
}

int removePlaceholder(int parent, const char* name) {
    // AT_REMOVEDIR_DATALESS: supported from macOS 11 on, but missing from the headers.
    constexpr int removeUnfetched = 0x0100;
    return ::unlinkat(parent, name, removeUnfetched);
}

std::uint64_t volumeNumber(const struct stat& info) {
    return static_cast<std::uint32_t>(info.st_dev);
}

/// fsync(2) only hands the data to the drive, which may keep it in its cache; F_FULLFSYNC flushes that too.
/// Not every file system supports it. If one does and fails, the data is not on the disk.
int flushToDisk(int handle) {
    if (::fcntl(handle, F_FULLFSYNC) != -1)
        return 0;
    const bool isUnknown = errno == ENOTSUP || errno == EINVAL || errno == ENOTTY;
    return isUnknown ? ::fsync(handle) : -1;
}

std::optional<std::size_t> openHandles() {
    // Without a buffer it returns the required size, rounded up.
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
