#include "platform/process.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>

#include "platform/files.h"
#include "platform/posix/system.h"

namespace ulvak::platform {

std::optional<std::string> ownProgram() {
    return resolvedPath("/proc/self/exe");
}

std::expected<PipeEnds, std::error_code> makePipe() {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0)
        return std::unexpected(posix::lastError());
    return PipeEnds{.read = FileDescriptor(ends[0]), .write = FileDescriptor(ends[1])};
}

}  // namespace ulvak::platform
