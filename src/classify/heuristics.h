#pragma once

#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "core/safety_level.h"

/// Guesses from a folder's name alone, for what no rule knows. Safe from any thread.
namespace ulvak::Heuristics {

struct Guess {
    SafetyLevel level = SafetyLevel::unknown;
    std::string title;        ///< Turkish; "{name}" stands for the folder's name
    std::string explanation;  ///< Turkish
    /// Such a folder is better shown as its big sub-folders, one finding each.
    bool splitChildren = false;

    friend bool operator==(const Guess&, const Guess&) = default;
};

struct Row {
    std::set<std::string, std::less<>> keywords;  ///< whole names, lower case
    Guess guess;
};

/// All guesses, in the order in which they are tried.
[[nodiscard]] const std::vector<Row>& table();

/// The guess for a last path component, whatever the case of its letters. A backup is recognised by a part
/// of the name and before all else; every other row by the whole name.
[[nodiscard]] std::optional<Guess> guess(std::string_view name);

}  // namespace ulvak::Heuristics
