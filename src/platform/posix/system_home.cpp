#include "platform/posix/system_home.h"

#include "platform/files.h"
#include "platform/reach.h"
#include "platform/user_folders.h"

namespace ulvak::platform::posix {
namespace {

bool isSamePlace(const std::string& one, const std::string& other) {
    if (one == other)
        return true;
    // One of them may be on a server that is gone; the home folder that this process was given is waited for.
    const std::string home = homeDirectory();
    const Reach reach({&home, 1}, Reach::Others::prompt);
    const Reach::Place onePlace = reach.follow(one);
    const Reach::Place otherPlace = reach.follow(other);
    if (!onePlace.isThere || !otherPlace.isThere)
        return false;
    const auto oneInfo = fileInfo(onePlace.path);
    const auto otherInfo = fileInfo(otherPlace.path);
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
