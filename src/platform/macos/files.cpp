#include "platform/files.h"

#include <sys/stat.h>

#include <algorithm>

#include "platform/posix/system.h"
#include "platform/volume.h"

namespace ulvak::platform {

std::optional<FileInfo> fileInfo(const std::string& path) {
    const QuietAccess quiet;
    struct stat info{};
    if (::stat(path.c_str(), &info) != 0)
        return std::nullopt;
    return FileInfo{
        .isDirectory = S_ISDIR(info.st_mode),
        .allocatedSize =
            posix::allocatedBytes(static_cast<std::uint64_t>(std::max<blkcnt_t>(info.st_blocks, 0))),
        .modified = posix::fileTime(info.st_mtimespec.tv_sec, info.st_mtimespec.tv_nsec),
        .volumeAndNumber = {posix::volumeNumber(info), info.st_ino},
        .names = S_ISDIR(info.st_mode) ? std::uint64_t{1} : std::uint64_t{info.st_nlink},
    };
}

std::optional<FileTime> lastAccess(const std::string& path) {
    const QuietAccess quiet;
    struct stat info{};
    if (::stat(path.c_str(), &info) != 0)
        return std::nullopt;
    return posix::fileTime(info.st_atimespec.tv_sec, info.st_atimespec.tv_nsec);
}

bool existsIn(const std::string& folder, const std::string& name) {
    const QuietAccess quiet;
    const std::string path = folder + "/" + name;
    struct stat info{};
    if (::lstat(path.c_str(), &info) != 0)
        return false;
    if (!S_ISLNK(info.st_mode))
        return true;
    return Reach({&folder, 1}, Reach::Others::prompt).follow(path).isThere;
}

}  // namespace ulvak::platform
