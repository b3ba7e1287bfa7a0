#include "platform/files.h"

#include <sys/stat.h>

#include <algorithm>

#include "platform/posix/file_stamp.h"
#include "platform/posix/system.h"
#include "platform/reach.h"

namespace ulvak::platform {

std::optional<FileInfo> fileInfo(const std::string& path) {
    const QuietAccess quiet;
    struct stat info{};
    if (::stat(path.c_str(), &info) != 0)
        return std::nullopt;
    return FileInfo{
        .isDirectory = S_ISDIR(info.st_mode),
        .allocatedSize = allocatedBytes(static_cast<std::uint64_t>(std::max<blkcnt_t>(info.st_blocks, 0))),
        .modified = fileTime(info.st_mtimespec.tv_sec, info.st_mtimespec.tv_nsec),
        .volumeAndNumber = {posix::volumeNumber(info), info.st_ino},
    };
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
