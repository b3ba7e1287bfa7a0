#pragma once

#include <optional>
#include <span>
#include <string>
#include <system_error>

namespace ulvak::platform {

/// The file of the running program, links resolved; absent when the system does not say.
[[nodiscard]] std::optional<std::string> ownProgram();

/// Takes out of the environment what should name a user's folder and names no absolute one: it counts as
/// unset, but libraries and other programs would take it as relative to wherever this one was started. Only
/// while there is one thread.
void forgetRelativeFolders();

/// Goes on as the program at `path`, with these arguments (its own name not among them) and everything else
/// of this process. Returns only when that cannot be started.
[[nodiscard]] std::error_code becomeProgram(const std::string& path, std::span<const char* const> arguments);

}  // namespace ulvak::platform
