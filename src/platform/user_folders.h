#pragma once

#include <optional>
#include <string>
#include <vector>

/// The folders that the operating system assigns to the current user. Each call queries anew;
/// `UserFolders` keeps the answers. Results are absolute and in the system's spelling, including a trailing
/// "/"; bytes, not necessarily UTF-8. Thread-safe as long as nobody changes the environment.
namespace ulvak::platform {

[[nodiscard]] std::string homeDirectory();

/// Where programs put this user's temporary files.
[[nodiscard]] std::string temporaryDirectory();

/// The per-user cache folder, if the system has one apart from the temporary folder.
[[nodiscard]] std::optional<std::string> cacheDirectory();

/// Where programs keep this user's data other than documents, given the home folder. Always exists as a path.
[[nodiscard]] std::string applicationSupportDirectory(const std::string& home);

/// Where this user's trashed files are, given the home folder.
[[nodiscard]] std::string trashDirectory(const std::string& home);

/// Whether a home folder is the one that the system has for this user's account, not one for a trial.
[[nodiscard]] bool isAccountsHome(const std::string& home);

/// Where the environment tells applications to keep their files; absolute, or empty if it does not.
struct MovedFolders {
    std::string cache;
    std::string config;
    std::string data;
    std::string state;
};
[[nodiscard]] MovedFolders movedFolders();

/// Folders with a special meaning on this system, in addition to those common to all. Absolute paths in the
/// system's spelling, whether or not anything is there.
struct GuardedFolders {
    std::vector<std::string> themselves;    ///< never removed; their contents may be
    std::vector<std::string> withContents;  ///< keys and passwords: their contents are not removed either
    /// The settings file that names more of them, if it was not read because it is on a volume that may never
    /// answer and does not hold the home folder; otherwise empty.
    std::string unread;
};

/// For the user with this home folder.
[[nodiscard]] GuardedFolders guardedFolders(const std::string& home);

}  // namespace ulvak::platform
