#pragma once

#include <expected>
#include <optional>
#include <span>
#include <string>
#include <system_error>

#include "platform/file_descriptor.h"

/// What this process is, and what it and the ones it starts ask of the system.
namespace ulvak::platform {

/// The file of the running program, links resolved; absent when the system does not say. Safe from any
/// thread.
[[nodiscard]] std::optional<std::string> ownProgram();

/// Takes out of the environment what should name a user's folder and names no absolute one: it counts as
/// unset, but libraries and other programs would take it as relative to wherever this one was started. Only
/// while there is one thread.
void forgetRelativeFolders();

/// Goes on as the program at `path`, with these arguments (its own name not among them) and everything else
/// of this process. Returns only when that cannot be started.
[[nodiscard]] std::error_code becomeProgram(const std::string& path, std::span<const char* const> arguments);

struct PipeEnds {
    FileDescriptor read;
    FileDescriptor write;
};

/// A pipe that no program started meanwhile, by whatever part of this process, inherits. Its end is seen by
/// who reads, not by who waits in poll(2): macOS wakes nobody there when the last writer of a FIFO goes.
/// Fails with the system's error. Safe from any thread.
[[nodiscard]] std::expected<PipeEnds, std::error_code> makePipe();

/// From here on the first of the signals by which a session, a user at a terminal or a service manager ends a
/// program only makes the returned descriptor readable, so that the program can finish what it must not leave
/// half done; the next of its kind ends it at once. The descriptor stays open as long as the process lives.
/// Nothing when the system has no more to give: then they end it as before. Once in a process.
[[nodiscard]] std::optional<int> watchEndingSignals();

/// Ends the process by the signal that came, as whoever sent it expects; returns when none did.
void endBySignal();

}  // namespace ulvak::platform
