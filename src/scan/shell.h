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

/// Bytes of each output that are kept; what comes after them is read and dropped. Far more than any program
/// prints that this one starts.
inline constexpr std::size_t maxOutputBytes = 128UZ * 1024 * 1024;

struct Result {
    /// The program's exit status; the number of the signal if one ended it; -1 if nobody can tell.
    std::int32_t status = 0;
    std::string output;  ///< the bytes of its standard output
    std::string error;   ///< its standard error as UTF-8, repaired where it was none
};

/// Runs the executable at the absolute `path` with these arguments: no shell, no path search, this
/// process's environment and standard input; nothing in a terminal's place. Blocks until it has exited. Fails
/// only when it cannot be started. A stop request kills it with the processes that it has started.
///
/// Standard output is read to its end before standard error: a program that writes more to standard error
/// than a pipe holds while it still has output to write would wait forever, so this is for programs that
/// are known not to.
///
/// Safe from any thread; never call it on the UI thread.
[[nodiscard]] std::expected<Result, std::error_code> run(const std::string& path,
                                                         std::span<const std::string> arguments,
                                                         std::stop_token stop = {});

}  // namespace ulvak::Shell
