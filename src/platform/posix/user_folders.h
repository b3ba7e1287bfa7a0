#pragma once

#include <optional>
#include <string>

#include "platform/user_folders.h"

/// What the systems have in common about the user's folders. Safe from any thread as long as nobody changes
/// the environment.
namespace ulvak::platform::posix {

/// An environment variable that holds an absolute path. An empty or relative one says nothing about where the
/// folder is, and counts as unset.
[[nodiscard]] std::optional<std::string> absoluteFromEnvironment(const char* name);

/// The home folder that the system gives this user, whatever the environment says; absent for a user whom it
/// does not know.
[[nodiscard]] std::optional<std::string> systemHome();

/// Whether the program works in that home folder. With another HOME it is tried or tested, and what asks the
/// desktop must not be asked: the desktop knows of one home only.
[[nodiscard]] bool isInSystemHome();

/// Where the desktop's own programs have the Trash of a user with that home, as long as nobody has told them
/// of another place; what this process was told of one they do not know.
[[nodiscard]] std::string desktopsTrash(const std::string& home);

/// Whether `trash` is that folder, for certain.
[[nodiscard]] bool isDesktopsTrash(const std::string& trash);

/// What programs from either system keep in a home by the same names.
[[nodiscard]] GuardedFolders commonFolders(const std::string& home);

}  // namespace ulvak::platform::posix
