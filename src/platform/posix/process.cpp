#include "platform/process.h"

#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <vector>

#include "platform/posix/user_folders.h"

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
        // Best effort: a signal handler can do nothing more.
    }
    errno = before;
}

}  // namespace

void forgetRelativeFolders() {
    for (const char* name : {"HOME", "TMPDIR", "XDG_CACHE_HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME",
                             "XDG_RUNTIME_DIR", "XDG_STATE_HOME"}) {
        if (!posix::absoluteFromEnvironment(name))
            ::unsetenv(name);  // NOLINT(concurrency-mt-unsafe): there is one thread
    }
}

std::error_code becomeProgram(const std::string& path, std::span<const char* const> arguments) {
    std::vector<std::string> words{path};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv;
    for (std::string& word : words)
        argv.push_back(word.data());
    argv.push_back(nullptr);
    ::execv(path.c_str(), argv.data());
    return {errno, std::generic_category()};
}

std::optional<int> watchEndingSignals() {
    auto pipe = makePipe();
    if (!pipe)
        return std::nullopt;
    descriptor = pipe->write.release();
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        struct sigaction action{};
        // A signal that was ignored, for example by nohup, stays ignored.
        if (::sigaction(signal, nullptr, &action) != 0 || action.sa_handler == SIG_IGN)
            continue;
        action = {};
        action.sa_handler = &note;
        action.sa_flags = SA_RESTART | static_cast<int>(SA_RESETHAND);
        (void)::sigaction(signal, &action, nullptr);
    }
    return pipe->read.release();
}

void endBySignal() {
    const int signal = received;
    if (signal == 0)
        return;
    (void)std::signal(signal, SIG_DFL);
    (void)std::raise(signal);
}

}  // namespace ulvak::platform
