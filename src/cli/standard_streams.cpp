#include "cli/standard_streams.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

namespace ulvak {
namespace {

void write(int handle, std::string_view text) {
    while (!text.empty()) {
        const ssize_t count = ::write(handle, text.data(), text.size());
        if (count > 0) {
            text.remove_prefix(static_cast<std::size_t>(count));
        } else if (count < 0 && errno == EAGAIN) {
            // Another process sharing the pipe has made it non-blocking: wait until it is writable.
            pollfd writable{.fd = handle, .events = POLLOUT, .revents = 0};
            ::poll(&writable, 1, -1);
        } else if (count == 0 || errno != EINTR) {
            return;
        }
    }
}

}  // namespace

void prepareStandardStreams() {
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGCHLD, SIG_DFL);  // if ignored, our children's exit statuses would be lost
    int handle = 0;
    do {
        handle = ::open("/dev/null", O_RDWR);
    } while (handle >= 0 && handle <= STDERR_FILENO);
    if (handle >= 0)
        ::close(handle);
}

void print(std::string_view text) {
    write(STDOUT_FILENO, text);
}
void printError(std::string_view text) {
    write(STDERR_FILENO, text);
}

}  // namespace ulvak
