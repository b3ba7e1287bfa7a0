#include "platform/files.h"

#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>

#include "platform/posix/system.h"
#include "platform/volume.h"

namespace ulvak::platform {

std::optional<FileInfo> fileInfo(const std::string& path) {
    struct statx info{};
    constexpr unsigned wanted = STATX_TYPE | STATX_BLOCKS | STATX_MTIME | STATX_INO | STATX_NLINK;
    if (::statx(AT_FDCWD, path.c_str(), AT_NO_AUTOMOUNT, wanted, &info) != 0)
        return std::nullopt;
    FileInfo result{.isDirectory = S_ISDIR(info.stx_mode),
                    .allocatedSize = posix::allocatedBytes(info.stx_blocks)};
    result.volumeAndNumber = {(std::uint64_t{info.stx_dev_major} << 32U) | info.stx_dev_minor, info.stx_ino};
    if (!result.isDirectory && (info.stx_mask & STATX_NLINK) != 0)
        result.names = info.stx_nlink;
    if ((info.stx_mask & STATX_MTIME) != 0)
        result.modified = posix::fileTime(info.stx_mtime.tv_sec, info.stx_mtime.tv_nsec);
    return result;
}

std::optional<FileTime> lastAccess(const std::string& path) {
    struct statx info{};
    if (::statx(AT_FDCWD, path.c_str(), AT_NO_AUTOMOUNT, STATX_ATIME, &info) != 0 ||
        (info.stx_mask & STATX_ATIME) == 0)
        return std::nullopt;
    return posix::fileTime(info.stx_atime.tv_sec, info.stx_atime.tv_nsec);
}

bool existsIn(const std::string& folder, const std::string& name) {
    const FileDescriptor parent(::open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    struct statx info{};
    if (!parent.isOpen() ||
        ::statx(parent.get(), name.c_str(), AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT, STATX_TYPE, &info) != 0)
        return false;
    if (!S_ISLNK(info.stx_mode))
        return true;
    open_how how{};
    how.flags = O_PATH | O_CLOEXEC;
    how.resolve = RESOLVE_NO_XDEV;
    const FileDescriptor target(
        static_cast<int>(::syscall(SYS_openat2, parent.get(), name.c_str(), &how, sizeof how)));
    if (target.isOpen())
        return true;
    // With this flag the kernel refuses every absolute link, wherever it leads; kernels before 5.6 lack the
    // call, and some sandboxes refuse it.
    const bool isUndecided = errno == EXDEV || errno == ENOSYS || errno == EPERM;
    return isUndecided && Reach({&folder, 1}, Reach::Others::prompt).follow(folder + "/" + name).isThere;
}

}  // namespace ulvak::platform
