#pragma once

#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "core/safety_level.h"

/// Guesses from a folder's name alone, for what no rule covers. Thread-safe.
namespace ulvak::Heuristics {

struct Guess {
    SafetyLevel level = SafetyLevel::unknown;
    std::string title;        ///< Turkish; "{name}" is replaced by the folder's name
    std::string explanation;  ///< Turkish
    /// Better shown as one finding per big sub-folder.
    bool splitChildren = false;

    friend bool operator==(const Guess&, const Guess&) = default;
};

struct Row {
    std::set<std::string, std::less<>> keywords;  ///< whole names, lower case
    Guess guess;
};

/// All guesses, in matching order.
[[nodiscard]] const std::vector<Row>& table();

/// The guess for a last path component, case-insensitive. A backup is recognised by any part of the name,
/// before all else; every other row needs the whole name.
[[nodiscard]] std::optional<Guess> guess(std::string_view name);

}  // namespace ulvak::Heuristics
