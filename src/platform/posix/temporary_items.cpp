#include "platform/temporary_items.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <memory>

#include "platform/files.h"

namespace ulvak::platform {
namespace {

bool isMeetingPoint(mode_t mode) {
    return S_ISSOCK(mode) || S_ISFIFO(mode);
}

}  // namespace

bool isSharedFolder(const std::string& path) {
    struct stat info{};
    return ::stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode) && (info.st_mode & S_ISVTX) != 0 &&
           (info.st_mode & S_IWOTH) != 0;
}

std::optional<bool> isOwnItem(const std::string& path) {
    struct stat info{};
    if (::lstat(path.c_str(), &info) != 0)
        return std::nullopt;
    return info.st_uid == ::geteuid();
}

bool holdsSocket(const std::string& path) {
    struct stat info{};
    if (::lstat(path.c_str(), &info) != 0)
        return false;
    if (!S_ISDIR(info.st_mode))
        return isMeetingPoint(info.st_mode);
    return std::ranges::any_of(listNames(path), [&](const std::string& name) {
        struct stat entry{};
        return ::lstat((path + "/" + name).c_str(), &entry) == 0 && isMeetingPoint(entry.st_mode);
    });
}

}  // namespace ulvak::platform
