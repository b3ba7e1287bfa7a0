#pragma once

#include <string>
#include <vector>

#include "classify/rule_row.h"

namespace ulvak::RuleBook {

/// What the program knows of this system beyond what all have in common, in tables.
[[nodiscard]] std::vector<Rows> platformRows();

/// Folders beyond the user's own that a scan of this system looks at. They are explained, never cleaned.
[[nodiscard]] std::vector<std::string> systemFolders();

}  // namespace ulvak::RuleBook
