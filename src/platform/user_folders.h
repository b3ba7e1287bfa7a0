#pragma once

#include <optional>
#include <string>
#include <vector>

/// The folders that the operating system gives the current user. Each call asks anew; `Paths` keeps the
/// answers. All results are absolute and as the system spells them, trailing "/" included; bytes, not
/// necessarily UTF-8. Safe from any thread as long as nobody changes the environment.
namespace ulvak::platform {

[[nodiscard]] std::string homeDirectory();

/// Where programs put temporary files of this user.
[[nodiscard]] std::string temporaryDirectory();

/// The per-user cache folder, where the system has one apart from the temporary folder.
[[nodiscard]] std::optional<std::string> cacheDirectory();

/// Where programs keep data of this user that is no document, given the home folder. There always is one.
[[nodiscard]] std::string applicationSupportDirectory(const std::string& home);

/// Where this user's trashed files lie, given the home folder.
[[nodiscard]] std::string trashDirectory(const std::string& home);

/// Folders that this system gives a meaning of their own, beside those that every system has. Absolute
/// paths as the system spells them, whether or not anything is there.
struct GuardedFolders {
    std::vector<std::string> themselves;    ///< never removed, what lies in them may be
    std::vector<std::string> withContents;  ///< keys and passwords: nothing in them is removed either
    /// The setting that names more of them, where it was not read because it lies on a volume that may never
    /// answer and that does not hold the home folder; otherwise empty.
    std::string unread;
};

/// For the user with this home folder.
[[nodiscard]] GuardedFolders guardedFolders(const std::string& home);

}  // namespace ulvak::platform
