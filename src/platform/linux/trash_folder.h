#pragma once

#include <expected>
#include <string>
#include <system_error>

#include "platform/directory.h"

/// The folders that make up a Trash of the freedesktop.org kind: the home's, and those at the top of other
/// volumes.
namespace ulvak::platform {

/// A Trash that is open: whoever renames it or the folders around it cannot lead elsewhere. All three folders
/// are real ones of this user, which nobody else may write to.
struct OpenTrash {
    std::string path;  ///< absolute
    std::string
        top;  ///< of the volume, from which its notes count; empty for the home's, whose paths are absolute
    Directory folder;
    Directory items;
    Directory notes;
};

/// The home's; made where it is missing. EXDEV where it lies on a volume that could keep the caller waiting,
/// as a link or a setting may have it: then it is not looked at.
[[nodiscard]] std::expected<OpenTrash, std::error_code> homeTrash();

/// That of the volume which holds the open folder `inside`, at the path `realPath` without links; made where
/// it is missing. ENOTSUP where what it holds does not outlive a reboot, and where this user can have none.
[[nodiscard]] std::expected<OpenTrash, std::error_code> volumeTrash(const Directory& inside,
                                                                    const std::string& realPath);

/// Whether two open folders lie on one file system.
[[nodiscard]] bool isOnSameVolume(const Directory& one, const Directory& other);

}  // namespace ulvak::platform
