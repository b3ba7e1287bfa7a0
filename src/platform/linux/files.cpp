#include "platform/files.h"

#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>

#include "platform/posix/file_stamp.h"
#include "platform/reach.h"

namespace ulvak::platform {

std::optional<FileInfo> fileInfo(const std::string& path) {
    struct statx info{};
    if (::statx(AT_FDCWD, path.c_str(), AT_NO_AUTOMOUNT, STATX_TYPE | STATX_BLOCKS | STATX_MTIME | STATX_INO,
                &info) != 0)
        return std::nullopt;
    FileInfo result{.isDirectory = S_ISDIR(info.stx_mode), .allocatedSize = allocatedBytes(info.stx_blocks)};
    result.volumeAndNumber = {(std::uint64_t{info.stx_dev_major} << 32U) | info.stx_dev_minor, info.stx_ino};
    if ((info.stx_mask & STATX_MTIME) != 0)
        result.modified = fileTime(info.stx_mtime.tv_sec, info.stx_mtime.tv_nsec);
    return result;
}

bool existsIn(const std::string& folder, const std::string& name) {
    const int parent = ::open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    if (parent < 0)
        return false;
    struct statx info{};
    bool exists =
        ::statx(parent, name.c_str(), AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT, STATX_TYPE, &info) == 0;
    if (exists && S_ISLNK(info.stx_mode)) {
        open_how how{};
        how.flags = O_PATH | O_CLOEXEC;
        how.resolve = RESOLVE_NO_XDEV;
        const auto target = static_cast<int>(::syscall(SYS_openat2, parent, name.c_str(), &how, sizeof how));
        // With this flag the kernel refuses every absolute link, wherever it leads; those before 5.6 do not
        // know the call, and some sandboxes refuse it.
        const bool isUndecided = target < 0 && (errno == EXDEV || errno == ENOSYS || errno == EPERM);
        exists =
            target >= 0 ||
            (isUndecided && Reach({&folder, 1}, Reach::Others::prompt).follow(folder + "/" + name).isThere);
        if (target >= 0)
            ::close(target);
    }
    ::close(parent);
    return exists;
}

}  // namespace ulvak::platform
