#pragma once

#include <cstddef>
#include <cstdint>
#include <expected>
#include <span>
#include <stop_token>
#include <string>
#include <system_error>

/// Runs other programs.
namespace ulvak::Shell {

/// Maximum bytes kept of each output stream; the rest is read and dropped. Far more than any program we start
/// prints.
inline constexpr std::size_t maxOutputBytes = 128UZ * 1024 * 1024;

struct Result {
    /// Exit status; the signal number if a signal ended the program; -1 if neither can be determined.
    std::int32_t status = 0;
    std::string output;  ///< the bytes of its standard output
    std::string error;   ///< standard error; invalid UTF-8 is replaced
};

/// Runs the executable at the absolute `path` with these arguments: no shell, no PATH search. Inherits the
/// environment and standard input, except that a terminal is replaced by /dev/null. Blocks until the program
/// exits. Fails only if it cannot be started. A stop request kills it and its child processes.
///
/// Standard output is read to the end before standard error. A program that fills the standard error pipe
/// while it still has output to write would deadlock, so use this only for programs known not to.
///
/// Thread-safe; never call it on the UI thread.
[[nodiscard]] std::expected<Result, std::error_code> run(const std::string& path,
                                                         std::span<const std::string> arguments,
                                                         std::stop_token stop = {});

}  // namespace ulvak::Shell
