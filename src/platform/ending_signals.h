#pragma once

#include <optional>

/// The signals by which a session, a user at a terminal or a service manager ends a program.
namespace ulvak::platform {

/// From here on the first of them only makes the returned descriptor readable, so that the program can finish
/// what it must not leave half done; the next of its kind ends it at once. Nothing when the system has no
/// more to give: then they end it as before. Once in a process.
[[nodiscard]] std::optional<int> watchEndingSignals();

/// Ends the process by the signal that came, as whoever sent it expects; returns when none did.
void endBySignal();

}  // namespace ulvak::platform
