#pragma once

#include <expected>
#include <set>
#include <string>

#include "clean/clean_error.h"
#include "clean/guard_rails.h"
#include "platform/files.h"

namespace ulvak {

/// Checks that the Trash at `path` may be emptied: it is not a protected place, and no other volume is
/// mounted in it. Returns the file numbers of folders that stay wherever they turn up.
[[nodiscard]] std::expected<std::set<platform::FileNumber>, CleanFailure> judgedTrash(
    const std::string& path, const GuardRails& rails);

}  // namespace ulvak
