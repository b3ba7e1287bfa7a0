#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>

#include "platform/file_time.h"

namespace ulvak {

/// One simulator device installed by the developer tools.
struct SimulatorInfo {
    std::string udid;
    std::string name;
    std::string runtime;  ///< display name: "iOS 17.2"
    bool isAvailable = false;
    std::optional<FileTime> lastBooted;

    friend bool operator==(const SimulatorInfo&, const SimulatorInfo&) = default;
};

/// Keyed by udid.
using SimulatorMap = std::map<std::string, SimulatorInfo, std::less<>>;

}  // namespace ulvak
