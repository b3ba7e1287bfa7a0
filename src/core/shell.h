#pragma once

#include <cstdint>
#include <expected>
#include <span>
#include <stop_token>
#include <string>
#include <system_error>

/// Runs other programs.
namespace ulvak::Shell {

struct Result {
    std::int32_t status = 0;  ///< as in `platform::ProgramResult`
    std::string output;       ///< the bytes of its standard output
    std::string error;        ///< standard error; invalid UTF-8 is replaced
};

/// As `platform::runProgram`.
[[nodiscard]] std::expected<Result, std::error_code> run(const std::string& path,
                                                         std::span<const std::string> arguments,
                                                         std::stop_token stop = {});

}  // namespace ulvak::Shell
