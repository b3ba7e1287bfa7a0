#include "platform/pipe.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <string>

#include "platform/posix/system.h"
#include "platform/user_folders.h"

namespace ulvak::platform {
namespace {

using posix::lastError;

/// Opens both ends of a FIFO. The reading end must not wait for the other, which is still to come.
std::expected<PipeEnds, std::error_code> openEnds(const std::string& path) {
    PipeEnds ends{.read = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC)};
    if (ends.read < 0)
        return std::unexpected(lastError());
    ends.write = ::open(path.c_str(), O_WRONLY | O_CLOEXEC);
    if (ends.write >= 0 && ::fcntl(ends.read, F_SETFL, 0) == 0)
        return ends;
    const auto error = lastError();
    ::close(ends.read);
    if (ends.write >= 0)
        ::close(ends.write);
    return std::unexpected(error);
}

std::expected<PipeEnds, std::error_code> makeFifo() {
    std::string folder = temporaryDirectory();
    folder += folder.ends_with('/') ? "ulvak-XXXXXX" : "/ulvak-XXXXXX";
    if (::mkdtemp(folder.data()) == nullptr)
        return std::unexpected(lastError());
    const std::string path = folder + "/pipe";
    constexpr mode_t onlyThisUser = 0600;
    std::expected<PipeEnds, std::error_code> ends =
        ::mkfifo(path.c_str(), onlyThisUser) == 0 ? openEnds(path) : std::unexpected(lastError());
    ::unlink(path.c_str());
    ::rmdir(folder.c_str());
    return ends;
}

std::expected<PipeEnds, std::error_code> makePlainPipe() {
    std::array<int, 2> handles{};
    if (::pipe(handles.data()) != 0)
        return std::unexpected(lastError());
    for (const int handle : handles)
        (void)::fcntl(handle, F_SETFD, FD_CLOEXEC);  // which does not fail for an open handle
    return PipeEnds{.read = handles[0], .write = handles[1]};
}

}  // namespace

/// This system's pipe(2) cannot close its ends to programs from the start, and one that another thread starts
/// in between would hold the pipe open for as long as it runs. A FIFO whose name goes at once is opened as a
/// file is. But a name takes room on the disk, and whoever cleans may have none: then it is a pipe all the
/// same, and that instant is risked.
std::expected<PipeEnds, std::error_code> makePipe() {
    auto ends = makeFifo();
    return ends ? ends : makePlainPipe();
}

}  // namespace ulvak::platform
