#pragma once

#include <expected>
#include <span>
#include <stop_token>
#include <string>
#include <system_error>

#include "platform/process.h"

/// Runs other programs.
namespace ulvak::Shell {

using Result = platform::ProgramResult;

/// As `platform::runProgram`, with invalid UTF-8 in the standard error replaced.
[[nodiscard]] std::expected<Result, std::error_code> run(const std::string& path,
                                                         std::span<const std::string> arguments,
                                                         std::stop_token stop = {});

}  // namespace ulvak::Shell
