#pragma once

#include <optional>
#include <span>
#include <string>
#include <system_error>

namespace ulvak::platform {

/// The file of the running program, links resolved; absent when the system does not say.
[[nodiscard]] std::optional<std::string> ownProgram();

/// Goes on as the program at `path`, with these arguments (its own name not among them) and everything else
/// of this process. Returns only when that cannot be started.
[[nodiscard]] std::error_code becomeProgram(const std::string& path, std::span<const char* const> arguments);

}  // namespace ulvak::platform
