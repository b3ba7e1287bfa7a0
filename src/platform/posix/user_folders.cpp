#include "platform/posix/user_folders.h"

#include <cstdlib>

#include "platform/files.h"
#include "platform/volume.h"

namespace ulvak::platform::posix {
/// Whether two paths lead to the same item.
static bool isSamePlace(const std::string& one, const std::string& other) {
    if (one == other)
        return true;
    // One of them may be on a dead server; only the home folder that this process was given is waited for.
    const std::string home = homeDirectory();
    const Reach reach({&home, 1}, Reach::Others::prompt);
    const Reach::Target onePlace = reach.follow(one);
    const Reach::Target otherPlace = reach.follow(other);
    if (!onePlace.isThere || !otherPlace.isThere)
        return false;
    const auto oneInfo = fileInfo(onePlace.path);
    const auto otherInfo = fileInfo(otherPlace.path);
    return oneInfo && otherInfo && oneInfo->volumeAndNumber == otherInfo->volumeAndNumber;
}

std::optional<std::string> absoluteFromEnvironment(const char* name) {
    const char* value = std::getenv(name);  // NOLINT(concurrency-mt-unsafe): nobody sets it
    if (value == nullptr || value[0] != '/')
        return std::nullopt;
    return value;
}

bool isInSystemHome() {
    return isAccountsHome(homeDirectory());
}

bool isDesktopsTrash(const std::string& trash) {
    return isInSystemHome() && isSamePlace(trash, desktopsTrash(homeDirectory()));
}

GuardedFolders commonFolders(const std::string& home) {
    return {
        .themselves = {home + "/.local", home + "/.local/share", home + "/.local/state", home + "/.config"},
        .withContents = {home + "/.gnupg", home + "/.ssh", home + "/.pki", home + "/.password-store"},
        .unread = {},
    };
}

}  // namespace ulvak::platform::posix

namespace ulvak::platform {

bool isAccountsHome(const std::string& home) {
    const auto account = posix::systemHome();
    return account && posix::isSamePlace(home, *account);
}

MovedFolders movedFolders() {
    const auto moved = [](const char* name) {
        return posix::absoluteFromEnvironment(name).value_or(std::string());
    };
    return {.cache = moved("XDG_CACHE_HOME"),
            .config = moved("XDG_CONFIG_HOME"),
            .data = moved("XDG_DATA_HOME"),
            .state = moved("XDG_STATE_HOME")};
}

}  // namespace ulvak::platform
