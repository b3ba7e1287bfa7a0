#pragma once

#include <expected>
#include <string>
#include <system_error>

#include "platform/directory.h"

/// The folders of a freedesktop.org Trash: the home folder's, and those at the top of other volumes.
namespace ulvak::platform {

/// An open Trash: renaming it or its parents cannot redirect us. All three are real folders owned by this
/// user and not writable by others.
struct OpenTrash {
    std::string path;  ///< absolute
    std::string top;  ///< the volume's top, to which note paths are relative; empty for the home Trash, whose
                      ///< paths are absolute
    Directory folder;
    Directory items;
    Directory notes;
};

/// The home folder's Trash, created if missing. Fails with EXDEV, without touching it, if a link or setting
/// places it on a volume that may block.
[[nodiscard]] std::expected<OpenTrash, std::error_code> homeTrash();

/// The Trash of the volume that contains the open folder `inside`, whose link-free path is `realPath`;
/// created if missing. ENOTSUP if the volume's contents do not survive a reboot, or if this user cannot have
/// a Trash there.
[[nodiscard]] std::expected<OpenTrash, std::error_code> volumeTrash(const Directory& inside,
                                                                    const std::string& realPath);

/// Whether two open folders are on the same file system.
[[nodiscard]] bool isOnSameVolume(const Directory& one, const Directory& other);

}  // namespace ulvak::platform
