#pragma once

#include <span>
#include <vector>

#include "classify/rule.h"
#include "classify/rule_row.h"

/// What the program knows of the disk.
namespace ulvak::RuleBook {

/// The rules for places that are the same on every system; the first match wins, so specific rules come
/// before general ones. Built on first use, from any thread; immutable.
[[nodiscard]] const std::vector<Rule>& reference();

/// The ranked rules for this system, the most specific first, and then those of `reference`. Built on first
/// use, from any thread; immutable.
[[nodiscard]] const std::vector<Rule>& all();

/// Ranked rules from rows: one for each way to choose from the braces, the most specific first.
[[nodiscard]] std::vector<Rule> ranked(std::span<const Row> rows);

}  // namespace ulvak::RuleBook
