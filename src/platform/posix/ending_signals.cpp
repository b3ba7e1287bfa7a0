#include "platform/ending_signals.h"

#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>

#include "platform/pipe.h"

namespace ulvak::platform {
namespace {

std::atomic<int> descriptor = -1;
std::atomic<int> received = 0;
static_assert(std::atomic<int>::is_always_lock_free, "used by a signal handler");

void note(int signal) {
    const int before = errno;
    received = signal;
    const char byte = 0;
    if (::write(descriptor, &byte, 1) < 0) {
        // Nothing more can be done here.
    }
    errno = before;
}

}  // namespace

std::optional<int> watchEndingSignals() {
    const auto pipe = makePipe();
    if (!pipe)
        return std::nullopt;
    descriptor = pipe->write;
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        struct sigaction action{};
        // What was to be ignored, by nohup say, stays so.
        if (::sigaction(signal, nullptr, &action) != 0 || action.sa_handler == SIG_IGN)
            continue;
        action = {};
        action.sa_handler = &note;
        action.sa_flags = SA_RESTART | static_cast<int>(SA_RESETHAND);
        (void)::sigaction(signal, &action, nullptr);
    }
    return pipe->read;
}

void endBySignal() {
    const int signal = received;
    if (signal == 0)
        return;
    (void)std::signal(signal, SIG_DFL);
    (void)std::raise(signal);
}

}  // namespace ulvak::platform
