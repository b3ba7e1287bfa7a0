#pragma once

#include <cstdio>
#include <functional>

#include "platform/trash.h"

namespace ulvak::platform::posix {

/// The system call behind a move to the Trash, which not every file system supports. Replaceable in tests.
struct TrashCalls {
    std::function<int(int, const char*, int, const char*, unsigned)> rename = ::renameat2;
};

/// Like `moveToTrash` in `platform/trash.h`, using these calls.
[[nodiscard]] std::expected<TrashedItem, FileError> moveToTrash(
    const Directory& parent, const std::string& name, const ItemIdentity& item, const std::string& path,
    const TrashCalls& calls, TrashNotes* ahead = nullptr);

}  // namespace ulvak::platform::posix
