#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace ulvak::platform::posix {

/// An environment variable that holds an absolute path. An empty or relative one says nothing about where the
/// folder is, and counts as unset.
[[nodiscard]] inline std::optional<std::string> absoluteFromEnvironment(const char* name) {
    const char* value = std::getenv(name);  // NOLINT(concurrency-mt-unsafe): nobody sets it
    if (value == nullptr || value[0] != '/')
        return std::nullopt;
    return value;
}

}  // namespace ulvak::platform::posix
