#include "scan/shell.h"

#include <fcntl.h>
#include <signal.h>  // NOLINT(modernize-deprecated-headers): POSIX signal sets
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <mutex>
#include <utility>
#include <vector>

#include "core/text.h"

extern char** environ;

namespace ulvak::Shell {
namespace {

std::error_code systemError(int code) {
    return {code, std::generic_category()};
}

class Handle {
public:
    explicit Handle(int value = -1) : value_(value) {}
    Handle(Handle&& other) noexcept : value_(std::exchange(other.value_, -1)) {}
    Handle& operator=(Handle&& other) noexcept {
        std::swap(value_, other.value_);
        return *this;
    }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    ~Handle() { close(); }

    [[nodiscard]] int get() const { return value_; }
    void close() {
        if (value_ >= 0)
            ::close(std::exchange(value_, -1));
    }

private:
    int value_;
};

struct Pipe {
    Handle read;
    Handle write;
};

std::expected<Pipe, std::error_code> makePipe() {
    std::array<int, 2> ends{};
    if (::pipe(ends.data()) != 0)
        return std::unexpected(systemError(errno));
    for (const int end : ends)
        ::fcntl(end, F_SETFD, FD_CLOEXEC);
    return Pipe{.read = Handle(ends[0]), .write = Handle(ends[1])};
}

std::string readToEnd(const Handle& handle) {
    std::string bytes;
    std::array<char, 65536> buffer;  // NOLINT(cppcoreguidelines-pro-type-member-init): read fills it
    for (;;) {
        const ssize_t count = ::read(handle.get(), buffer.data(), buffer.size());
        if (count > 0)
            bytes.append(buffer.data(), static_cast<std::size_t>(count));
        else if (count == 0 || errno != EINTR)
            return bytes;
    }
}

/// What the new process gets: the two pipes, and the usual reactions to signals, whatever ours are.
class SpawnSetup {
public:
    SpawnSetup(const Pipe& output, const Pipe& error) {
        ::posix_spawn_file_actions_init(&actions_);
        ::posix_spawn_file_actions_adddup2(&actions_, output.write.get(), STDOUT_FILENO);
        ::posix_spawn_file_actions_adddup2(&actions_, error.write.get(), STDERR_FILENO);
        ::posix_spawnattr_init(&attributes_);
        sigset_t usual;
        ::sigemptyset(&usual);
        ::sigaddset(&usual, SIGPIPE);
        ::posix_spawnattr_setsigdefault(&attributes_, &usual);
        ::posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGDEF);
    }
    ~SpawnSetup() {
        ::posix_spawn_file_actions_destroy(&actions_);
        ::posix_spawnattr_destroy(&attributes_);
    }
    SpawnSetup(const SpawnSetup&) = delete;
    SpawnSetup& operator=(const SpawnSetup&) = delete;

    [[nodiscard]] const posix_spawn_file_actions_t* actions() const { return &actions_; }
    [[nodiscard]] const posix_spawnattr_t* attributes() const { return &attributes_; }

private:
    posix_spawn_file_actions_t actions_{};
    posix_spawnattr_t attributes_{};
};

std::int32_t waitFor(pid_t process) {
    int status = 0;
    while (::waitpid(process, &status, 0) < 0 && errno == EINTR) {
    }
    return WIFSIGNALED(status) ? WTERMSIG(status) : WEXITSTATUS(status);
}

}  // namespace

std::expected<Result, std::error_code> run(const std::string& path, std::span<const std::string> arguments,
                                           std::stop_token stop) {
    std::vector<std::string> words{path};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv;
    for (std::string& word : words)
        argv.push_back(word.data());
    argv.push_back(nullptr);

    pid_t process = 0;
    Pipe output;
    Pipe error;
    {
        // A process started between the making of a pipe and its marking would hold the pipe open.
        static std::mutex startMutex;
        const std::scoped_lock lock(startMutex);
        auto outputPipe = makePipe();
        auto errorPipe = makePipe();
        if (!outputPipe || !errorPipe)
            return std::unexpected(outputPipe ? errorPipe.error() : outputPipe.error());
        output = std::move(*outputPipe);
        error = std::move(*errorPipe);
        const SpawnSetup setup(output, error);
        const int failure =
            ::posix_spawn(&process, path.c_str(), setup.actions(), setup.attributes(), argv.data(), environ);
        if (failure != 0)
            return std::unexpected(systemError(failure));
    }
    output.write.close();
    error.write.close();

    Result result;
    {
        const std::stop_callback killer(stop, [process] { ::kill(process, SIGKILL); });
        result.output = readToEnd(output.read);
        result.error = wellFormed(readToEnd(error.read));
    }
    result.status = waitFor(process);
    return result;
}

}  // namespace ulvak::Shell
