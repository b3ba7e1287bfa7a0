#include <fcntl.h>
#include <sys/stat.h>

#include "platform/folder_facts.h"
#include "platform/posix/file_stamp.h"

namespace ulvak::platform {

std::optional<FileTime> lastAccess(const std::string& path) {
    struct statx info{};
    if (::statx(AT_FDCWD, path.c_str(), AT_NO_AUTOMOUNT, STATX_ATIME, &info) != 0 ||
        (info.stx_mask & STATX_ATIME) == 0)
        return std::nullopt;
    return fileTime(info.stx_atime.tv_sec, info.stx_atime.tv_nsec);
}

}  // namespace ulvak::platform
