#include "platform/process.h"

#include <fcntl.h>
#include <libproc.h>
#include <mach-o/dyld.h>
#include <sys/proc_info.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "platform/files.h"
#include "platform/posix/system.h"
#include "platform/user_folders.h"

namespace ulvak::platform {
namespace {

using posix::lastError;

/// Opens both ends of a FIFO. The read end must be non-blocking, since there is no writer yet.
std::expected<PipeEnds, std::error_code> openEnds(const std::string& path) {
    PipeEnds ends{.read = FileDescriptor(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC)),
                  .write = {}};
    if (!ends.read.isOpen())
        return std::unexpected(lastError());
    ends.write = FileDescriptor(::open(path.c_str(), O_WRONLY | O_CLOEXEC));
    if (!ends.write.isOpen() || ::fcntl(ends.read.get(), F_SETFL, 0) != 0)
        return std::unexpected(lastError());
    return ends;
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
        (void)::fcntl(handle, F_SETFD, FD_CLOEXEC);  // cannot fail for an open handle
    return PipeEnds{.read = FileDescriptor(handles[0]), .write = FileDescriptor(handles[1])};
}

/// This user's processes, as far as the list is long enough: some may have started since its size was asked.
std::vector<pid_t> ownProcesses() {
    constexpr std::size_t room = 64;
    const int bytes = ::proc_listpids(PROC_UID_ONLY, ::getuid(), nullptr, 0);
    std::vector<pid_t> processes(static_cast<std::size_t>(std::max(bytes, 0)) / sizeof(pid_t) + room);
    const int filled = ::proc_listpids(PROC_UID_ONLY, ::getuid(), processes.data(),
                                       static_cast<int>(processes.size() * sizeof(pid_t)));
    processes.resize(static_cast<std::size_t>(std::max(filled, 0)) / sizeof(pid_t));
    return processes;
}

}  // namespace

std::optional<std::string> ownProgram() {
    std::uint32_t size = 0;
    (void)::_NSGetExecutablePath(nullptr, &size);  // fails, and returns the required size
    std::string path(size, '\0');
    if (::_NSGetExecutablePath(path.data(), &size) != 0)
        return std::nullopt;
    path.resize(std::strlen(path.c_str()));
    return resolvedPath(path);
}

std::vector<std::string> runningProcesses() {
    std::vector<std::string> names;
    for (const pid_t process : ownProcesses()) {
        std::array<char, PROC_PIDPATHINFO_MAXSIZE> text{};
        if (process == 0 || process == ::getpid())
            continue;
        if (::proc_name(process, text.data(), text.size()) > 0)
            names.emplace_back(text.data());
        if (::proc_pidpath(process, text.data(), text.size()) > 0) {
            const std::string path = text.data();
            names.push_back(path.substr(path.rfind('/') + 1));
        }
    }
    return names;
}

/// This system's pipe(2) cannot set close-on-exec atomically, and a program that another thread starts in
/// between would hold the pipe open as long as it runs. A FIFO, unlinked at once, is opened with O_CLOEXEC
/// instead. But its name takes disk space, which a user who cleans may not have: then it falls back to
/// pipe(2) and accepts the race.
std::expected<PipeEnds, std::error_code> makePipe() {
    if (auto ends = makeFifo())
        return ends;
    return makePlainPipe();
}

}  // namespace ulvak::platform
