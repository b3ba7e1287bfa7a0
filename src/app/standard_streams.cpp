#include "app/standard_streams.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

namespace ulvak {
namespace {

void write(int handle, std::string_view text) {
    while (!text.empty()) {
        const ssize_t count = ::write(handle, text.data(), text.size());
        if (count < 0 && errno != EINTR)
            return;
        text.remove_prefix(count < 0 ? 0 : static_cast<std::size_t>(count));
    }
}

}  // namespace

void prepareStandardStreams() {
    std::signal(SIGPIPE, SIG_IGN);
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
