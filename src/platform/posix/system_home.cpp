#include "platform/posix/system_home.h"

#include "platform/files.h"
#include "platform/user_folders.h"

namespace ulvak::platform::posix {
namespace {

bool isSamePlace(const std::string& one, const std::string& other) {
    if (one == other)
        return true;
    const auto oneInfo = fileInfo(one);
    const auto otherInfo = fileInfo(other);
    return oneInfo && otherInfo && oneInfo->volumeAndNumber == otherInfo->volumeAndNumber;
}

}  // namespace

bool isInSystemHome() {
    const auto home = systemHome();
    return home && isSamePlace(homeDirectory(), *home);
}

bool isDesktopsTrash(const std::string& trash) {
    return isInSystemHome() && isSamePlace(trash, desktopsTrash(homeDirectory()));
}

}  // namespace ulvak::platform::posix
