#pragma once

#include <expected>
#include <system_error>

namespace ulvak::platform {

/// Both ends of a pipe, owned by whoever asked for it.
struct PipeEnds {
    int read = -1;
    int write = -1;
};

/// A pipe that no program started meanwhile, by whatever part of this process, inherits. Its end is seen by
/// who reads, not by who waits in poll(2): macOS wakes nobody there when the last writer of a FIFO goes.
/// Fails with the system's error. Safe from any thread.
[[nodiscard]] std::expected<PipeEnds, std::error_code> makePipe();

}  // namespace ulvak::platform
