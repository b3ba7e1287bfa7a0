#pragma once

#include <string>
#include <vector>

namespace ulvak::platform {

/// Folders that this system gives a meaning of their own, beside those that every system has. Absolute
/// paths as the system spells them, whether or not anything is there.
struct GuardedFolders {
    std::vector<std::string> themselves;    ///< never removed, what lies in them may be
    std::vector<std::string> withContents;  ///< keys and passwords: nothing in them is removed either
    /// The setting that names more of them, where it was not read because it lies on a volume that may never
    /// answer and that does not hold the home folder; otherwise empty.
    std::string unread;
};

/// For the user with this home folder. Safe from any thread.
[[nodiscard]] GuardedFolders guardedFolders(const std::string& home);

}  // namespace ulvak::platform
