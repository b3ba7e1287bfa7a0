#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>

#include "platform/file_time.h"

namespace ulvak {

/// One installed simulator device of the developer tools.
struct SimulatorInfo {
    std::string udid;
    std::string name;
    std::string runtime;  ///< for people: "iOS 17.2"
    bool isAvailable = false;
    std::optional<FileTime> lastBooted;

    friend bool operator==(const SimulatorInfo&, const SimulatorInfo&) = default;
};

/// By udid.
using SimulatorMap = std::map<std::string, SimulatorInfo, std::less<>>;

}  // namespace ulvak
