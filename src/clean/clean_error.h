#pragma once

#include <string>
#include <system_error>
#include <variant>
#include <vector>

#include "core/paths.h"
#include "platform/files.h"

namespace ulvak {

/// Why Ulvak itself does not clean. The order of the cases is fixed.
struct CleanError {
    /// A place that must stay.
    struct Protected {
        std::string path;  ///< as shown to the user
        friend bool operator==(const Protected&, const Protected&) = default;
    };
    /// Applications that use what is to be cleaned.
    struct AppsRunning {
        std::vector<std::string> names;
        friend bool operator==(const AppsRunning&, const AppsRunning&) = default;
    };
    struct Failed {
        std::string message;  ///< complete, Turkish
        friend bool operator==(const Failed&, const Failed&) = default;
    };

    std::variant<Protected, AppsRunning, Failed> value;

    friend bool operator==(const CleanError&, const CleanError&) = default;
};

/// A program of the system that could not be started.
struct StartError {
    std::string program;  ///< absolute path
    std::error_code code;
};

/// All that cleaning fails with: our own refusals, and what the system reports, unchanged.
using CleanFailure = std::variant<CleanError, platform::FileError, StartError>;

/// For people, Turkish. The bytes of a path are kept, as a name of the user's is: make it `printable` before
/// it is shown.
[[nodiscard]] std::string errorDescription(const CleanError& error);
[[nodiscard]] std::string errorDescription(const CleanFailure& failure, const UserFolders& folders);

}  // namespace ulvak
