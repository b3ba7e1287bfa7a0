#pragma once

#include <cstddef>
#include <cstdint>
#include <expected>
#include <optional>
#include <span>
#include <stop_token>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "platform/file_descriptor.h"

/// This process and the programs it starts.
namespace ulvak::platform {

/// The running program's file, links resolved; nullopt if the system does not say. Thread-safe.
[[nodiscard]] std::optional<std::string> ownProgram();

/// Unsets environment variables that should name a user's folder but hold a relative path: we treat them as
/// unset, but libraries and other programs would resolve them against the current directory. Call only while
/// single-threaded.
void forgetRelativeFolders();

/// Replaces this process image with the program at `path`, with these arguments (excluding its own name).
/// Returns only on failure.
[[nodiscard]] std::error_code becomeProgram(const std::string& path, std::span<const char* const> arguments);

/// What a program that has ended left behind.
struct ProgramResult {
    /// Exit status; the signal number if a signal ended the program; -1 if neither can be determined.
    std::int32_t status = 0;
    std::string output;  ///< the bytes of its standard output
    std::string error;   ///< the bytes of its standard error
};

/// Maximum bytes kept of each output stream; the rest is read and dropped. Far more than any program we start
/// prints.
inline constexpr std::size_t maxStreamBytes = 128UZ * 1024 * 1024;

/// Runs the executable at the absolute `path` with these arguments: no shell, no PATH search. Inherits the
/// environment and standard input, except that a terminal is replaced by /dev/null. Blocks until the program
/// exits. Fails only if it cannot be started. A stop request kills it and its child processes.
///
/// Standard output is read to the end before standard error. A program that fills the standard error pipe
/// while it still has output to write would deadlock, so use this only for programs known not to.
///
/// Thread-safe; never call it on the UI thread.
[[nodiscard]] std::expected<ProgramResult, std::error_code> runProgram(const std::string& path,
                                                                       std::span<const std::string> arguments,
                                                                       std::stop_token stop = {});

struct PipeEnds {
    FileDescriptor read;
    FileDescriptor write;
};

/// A pipe that is not inherited by any program that any thread of this process starts meanwhile. End of file
/// is seen by read(2) but not by poll(2): macOS does not wake poll when the last writer of a FIFO closes.
/// Fails with the system's error. Thread-safe.
[[nodiscard]] std::expected<PipeEnds, std::error_code> makePipe();

/// The names of this user's processes, without this one: a process has several where its program, its script
/// and the system call it differently. In no particular order, with duplicates.
///
/// Threads: any but the UI thread; blocks while all processes are examined.
[[nodiscard]] std::vector<std::string> runningProcesses();

/// Whether a command of this name is installed for this user: in PATH, or in a folder for commands that the
/// PATH of a desktop session may lack. nullopt if it was not found, but a folder is on a volume that may
/// never answer.
///
/// Threads: any but the UI thread.
[[nodiscard]] std::optional<bool> hasCommand(std::string_view name);

/// After this call, the first termination signal (from a session, a terminal or a service manager) only makes
/// the returned descriptor readable, so that the program can finish what must not be left half done; a second
/// signal of the same kind ends it at once. The descriptor stays open for the life of the process. Returns
/// nullopt if no pipe could be made: then signals end the program as before. Call once per process.
[[nodiscard]] std::optional<int> watchEndingSignals();

/// Ends the process by the signal received, as its sender expects; returns if there was none.
void endBySignal();

}  // namespace ulvak::platform
