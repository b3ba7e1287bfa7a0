#include <sys/stat.h>

#include "platform/folder_facts.h"
#include "platform/posix/file_stamp.h"
#include "platform/posix/system.h"

namespace ulvak::platform {

std::optional<FileTime> lastAccess(const std::string& path) {
    const QuietAccess quiet;
    struct stat info{};
    if (::stat(path.c_str(), &info) != 0)
        return std::nullopt;
    return fileTime(info.st_atimespec.tv_sec, info.st_atimespec.tv_nsec);
}

}  // namespace ulvak::platform
