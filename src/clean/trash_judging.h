#pragma once

#include <expected>
#include <set>
#include <string>

#include "clean/clean_error.h"
#include "clean/guard_rails.h"
#include "platform/files.h"

namespace ulvak {

/// The numbers of folders that stay wherever they turn up, if the Trash at `path` may be emptied at all: it
/// is not where something must stay, and no other volume is mounted in it.
[[nodiscard]] std::expected<std::set<platform::FileNumber>, CleanFailure> judgedTrash(
    const std::string& path, const GuardRails& rails);

}  // namespace ulvak
