#pragma once

#include <expected>
#include <optional>
#include <span>
#include <string>
#include <system_error>

#include "platform/file_descriptor.h"

/// This process, and the environment and pipes it gives to its children.
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

struct PipeEnds {
    FileDescriptor read;
    FileDescriptor write;
};

/// A pipe that is not inherited by any program that any thread of this process starts meanwhile. End of file
/// is seen by read(2) but not by poll(2): macOS does not wake poll when the last writer of a FIFO closes.
/// Fails with the system's error. Thread-safe.
[[nodiscard]] std::expected<PipeEnds, std::error_code> makePipe();

/// After this call, the first termination signal (from a session, a terminal or a service manager) only makes
/// the returned descriptor readable, so that the program can finish what must not be left half done; a second
/// signal of the same kind ends it at once. The descriptor stays open for the life of the process. Returns
/// nullopt if no pipe could be made: then signals end the program as before. Call once per process.
[[nodiscard]] std::optional<int> watchEndingSignals();

/// Ends the process by the signal received, as its sender expects; returns if there was none.
void endBySignal();

}  // namespace ulvak::platform
