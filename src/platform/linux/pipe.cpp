#include "platform/pipe.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>

namespace ulvak::platform {

std::expected<PipeEnds, std::error_code> makePipe() {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0)
        return std::unexpected(std::error_code(errno, std::generic_category()));
    return PipeEnds{.read = ends[0], .write = ends[1]};
}

}  // namespace ulvak::platform
