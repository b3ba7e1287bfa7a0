#pragma once

#include <vector>

#include "classify/rule_row.h"

namespace ulvak::RuleBook {

/// What the program knows of this system beyond what all have in common.
[[nodiscard]] std::vector<Row> platformRows();

}  // namespace ulvak::RuleBook
