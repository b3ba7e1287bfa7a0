#include "platform/temporary_items.h"

#include <sys/stat.h>
#include <unistd.h>

namespace ulvak::platform {

bool isSharedFolder(const std::string& path) {
    struct stat info{};
    return ::stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode) &&
           ((info.st_mode & S_IWOTH) != 0 || info.st_uid != ::geteuid());
}

std::optional<bool> isOwnItem(const std::string& path) {
    struct stat info{};
    if (::lstat(path.c_str(), &info) != 0)
        return std::nullopt;
    return info.st_uid == ::geteuid();
}

}  // namespace ulvak::platform
