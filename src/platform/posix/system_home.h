#pragma once

#include <optional>
#include <string>

namespace ulvak::platform::posix {

/// The home folder that the system gives this user, whatever the environment says; absent for a user whom it
/// does not know.
[[nodiscard]] std::optional<std::string> systemHome();

/// Whether the program works in that home folder. With another HOME it is tried or tested, and what asks the
/// desktop must not be asked: the desktop knows of one home only.
[[nodiscard]] bool isInSystemHome();

/// Whether `trash` is the folder that the desktop's own programs take for this user's Trash.
[[nodiscard]] bool isDesktopsTrash(const std::string& trash);

}  // namespace ulvak::platform::posix
