#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "app/app_services.h"
#include "core/finding.h"

namespace ulvak {

/// An action available for any finding that does not change it. Shown in every row's menu and as a button in
/// the detail column.
struct FindingAction {
    /// What went wrong, worded for the user.
    struct Problem {
        std::string title;
        std::string message;
    };

    std::string_view name;    ///< by which views invoke it
    std::string_view title;   ///< Turkish
    std::string_view symbol;  ///< the button's symbol
    /// Runs on a worker; may block.
    std::optional<Problem> (*perform)(const AppServices& services, const Finding& finding);
};

/// In display order.
[[nodiscard]] std::span<const FindingAction> findingActions();

/// Null if there is none with that name.
[[nodiscard]] const FindingAction* findingAction(std::string_view name);

}  // namespace ulvak
