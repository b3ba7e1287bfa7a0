#pragma once

#include <string>
#include <system_error>
#include <variant>
#include <vector>

#include "core/paths.h"
#include "platform/files.h"

namespace ulvak {

/// Why Ulvak itself refuses to clean. The order of the alternatives is fixed.
struct CleanError {
    /// A place that must stay.
    struct Protected {
        std::string path;  ///< as shown to the user
        friend bool operator==(const Protected&, const Protected&) = default;
    };
    /// Applications that use the items to be cleaned.
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

/// A system program that could not be started.
struct StartError {
    std::string program;  ///< absolute path
    std::error_code code;
};

/// Every way cleaning can fail: our own refusals, and the system's errors, unchanged.
using CleanFailure = std::variant<CleanError, platform::FileError, StartError>;

/// Turkish, for people. Keeps the bytes of paths and user-chosen names; apply `printable` before showing it.
[[nodiscard]] std::string errorDescription(const CleanError& error);
[[nodiscard]] std::string errorDescription(const CleanFailure& failure, const UserFolders& folders);

}  // namespace ulvak
