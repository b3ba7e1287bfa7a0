#pragma once

#include <optional>
#include <string>

#include "platform/user_folders.h"

/// Shared code about the user's folders. Thread-safe as long as nobody changes the environment.
namespace ulvak::platform::posix {

/// An environment variable that holds an absolute path; nullopt if it is unset, empty or relative.
[[nodiscard]] std::optional<std::string> absoluteFromEnvironment(const char* name);

/// The home folder that the system assigns to this user, whatever the environment says; nullopt for a user
/// unknown to the system.
[[nodiscard]] std::optional<std::string> systemHome();

/// Whether this process works in that home folder. With another HOME, the program is being tried out or
/// tested, and services that go through the desktop must not be used: the desktop knows only one home.
[[nodiscard]] bool isInSystemHome();

/// Where the desktop's own programs keep the Trash of a user with that home, by default; they do not know
/// this process's environment.
[[nodiscard]] std::string desktopsTrash(const std::string& home);

/// Whether `trash` is certainly that folder.
[[nodiscard]] bool isDesktopsTrash(const std::string& trash);

/// Folders that programs on every system keep in a home under the same names.
[[nodiscard]] GuardedFolders commonFolders(const std::string& home);

}  // namespace ulvak::platform::posix
