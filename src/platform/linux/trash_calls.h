#pragma once

#include <cstdio>
#include <functional>

#include "platform/trash.h"

namespace ulvak::platform::posix {

/// What moving to the Trash asks of the kernel, and not every file system can do.
struct TrashCalls {
    std::function<int(int, const char*, int, const char*, unsigned)> rename = ::renameat2;
};

/// As `moveToTrash` of `platform/trash.h`, by these calls.
[[nodiscard]] std::expected<TrashedItem, FileError> moveToTrash(
    const Directory& parent, const std::string& name, const ItemIdentity& item, const std::string& path,
    const TrashCalls& calls, TrashNotes* ahead = nullptr);

}  // namespace ulvak::platform::posix
