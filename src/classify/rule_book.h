#pragma once

#include <vector>

#include "classify/rule.h"

/// What the program knows of the disk.
namespace ulvak::RuleBook {

/// All rules; the first one that matches counts, so that specific ones stand before general ones. Built on
/// first use from any thread, and never changed.
[[nodiscard]] const std::vector<Rule>& all();

}  // namespace ulvak::RuleBook
