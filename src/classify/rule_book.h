#pragma once

#include <vector>

#include "classify/rule.h"

/// What the program knows of the disk.
namespace ulvak::RuleBook {

/// All rules; the first match wins, so specific rules come before general ones. Built on first use, from any
/// thread; immutable.
[[nodiscard]] const std::vector<Rule>& all();

}  // namespace ulvak::RuleBook
