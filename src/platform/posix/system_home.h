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

/// Where the desktop's own programs have the Trash of a user with that home, as long as nobody has told them
/// of another place; what this process was told of one they do not know.
[[nodiscard]] std::string desktopsTrash(const std::string& home);

/// Whether `trash` is that folder, for certain.
[[nodiscard]] bool isDesktopsTrash(const std::string& trash);

}  // namespace ulvak::platform::posix
