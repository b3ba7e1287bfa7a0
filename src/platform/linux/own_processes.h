#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/linux/application_match.h"

/// What the system says of this user's processes. Thread-safe.
namespace ulvak::platform {

/// This user's processes, except this one. Blocks while all are examined.
[[nodiscard]] std::vector<ProcessFacts> ownProcesses();

/// The non-empty pieces of a text, and the empty ones that a separator ends.
[[nodiscard]] std::vector<std::string> splitAt(std::string_view text, char separator);

}  // namespace ulvak::platform
