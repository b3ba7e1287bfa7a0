#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "core/paths.h"

namespace ulvak {

/// What a large file is, whoever made it.
enum class LargeFile : std::uint8_t {
    other,
    machineDisk,  ///< the disk of a virtual machine
    coreDump,     ///< a crashed program's memory
    installer,    ///< a package, an installation program or a disc image
};

/// What a file can be by its name; reads nothing.
[[nodiscard]] LargeFile nameOfLargeFile(std::string_view name);

/// Judged by the file's name and how it begins, of which at most 33 KB are read; a file that cannot be read
/// is `other`.
[[nodiscard]] LargeFile largeFile(const std::string& path);

/// Where the user's browsers put files, by the desktop's setting or else as usual; empty if that is the home
/// folder itself.
[[nodiscard]] std::string downloadFolder(const UserFolders& folders);

}  // namespace ulvak
