#pragma once

#include <array>
#include <optional>
#include <span>
#include <string_view>

#include "classify/rule.h"
#include "core/safety_level.h"

namespace ulvak::RuleBook {

/// Sized for the longest list; unused elements are empty.
using Names = std::array<std::string_view, 16>;

/// A rule as the tables write it; `Rule` says what the fields mean. Has a `path` or a `name`, and is a
/// container or else a unit.
struct Row {
    std::string_view path = {};  ///< "{a,b}" stands for two rows
    std::string_view name = {};  ///< "{a,b}" stands for two rows
    Names siblings = {};
    Names holds = {};
    std::optional<ScanContext> container = {};
    SafetyLevel level = SafetyLevel::unknown;
    std::string_view title = "{name}";
    std::string_view explanation = {};
    std::string_view group = {};
    Names quitApps = {};
    Names processes = {};
    std::string_view command = {};
    Rule::Resolver resolver = Rule::Resolver::none;
    bool actionable = true;
    bool inPersonal = true;
};

using Rows = std::span<const Row>;

}  // namespace ulvak::RuleBook
