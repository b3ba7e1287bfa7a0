#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "app/app_services.h"
#include "core/finding.h"

namespace ulvak {

/// Something that can be done with any finding and changes nothing about it. A line of every row's menu and a
/// button of the detail column.
struct FindingAction {
    /// What went wrong, in words for the user.
    struct Problem {
        std::string title;
        std::string message;
    };

    std::string_view name;    ///< by which views call for it
    std::string_view title;   ///< Turkish
    std::string_view symbol;  ///< of its button
    /// On a worker; may block.
    std::optional<Problem> (*perform)(const AppServices& services, const Finding& finding);
};

/// In the order in which they are offered.
[[nodiscard]] std::span<const FindingAction> findingActions();

/// Null when there is none of that name.
[[nodiscard]] const FindingAction* findingAction(std::string_view name);

}  // namespace ulvak
