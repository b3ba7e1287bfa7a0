#include "scan/shell.h"

#include <fcntl.h>
#include <signal.h>  // NOLINT(modernize-deprecated-headers): POSIX signal sets
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <vector>

#include "core/text.h"
#include "platform/process.h"

extern char** environ;  // NOLINT(readability-redundant-declaration): glibc declares it, others do not

namespace ulvak::Shell {
namespace {

using platform::PipeEnds;

/// Keeps reading past the limit: otherwise the writer would block.
std::string readToEnd(const platform::FileDescriptor& handle) {
    std::string bytes;
    std::vector<char> buffer(65536);  // not on the stack, which may be small
    for (;;) {
        const ssize_t count = ::read(handle.get(), buffer.data(), buffer.size());
        if (count > 0)
            bytes.append(buffer.data(),
                         std::min(static_cast<std::size_t>(count), maxOutputBytes - bytes.size()));
        else if (count == 0 || errno != EINTR)
            return bytes;  // on an error too, by design: what was read before it is the output
    }
}

/// Sets up the child: the two pipes, default SIGPIPE handling whatever ours is, and its own process group, so
/// that a stop request also ends its children.
class SpawnSetup {
public:
    SpawnSetup(const PipeEnds& output, const PipeEnds& error) {
        ::posix_spawn_file_actions_init(&actions_);
        ::posix_spawnattr_init(&attributes_);
        sigset_t usual;
        sigemptyset(&usual);  // both are macros on some systems
        sigaddset(&usual, SIGPIPE);
        note(::posix_spawn_file_actions_adddup2(&actions_, output.write.get(), STDOUT_FILENO));
        note(::posix_spawn_file_actions_adddup2(&actions_, error.write.get(), STDERR_FILENO));
        // Reading from a terminal in the background stops the process, and we would wait forever.
        if (::isatty(STDIN_FILENO) != 0)
            note(::posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0));
        note(::posix_spawnattr_setsigdefault(&attributes_, &usual));
        note(::posix_spawnattr_setpgroup(&attributes_, 0));
        note(::posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETPGROUP));
    }
    ~SpawnSetup() {
        ::posix_spawn_file_actions_destroy(&actions_);
        ::posix_spawnattr_destroy(&attributes_);
    }
    SpawnSetup(const SpawnSetup&) = delete;
    SpawnSetup& operator=(const SpawnSetup&) = delete;

    /// 0, or the errno that made the setup fail.
    [[nodiscard]] int failure() const { return failure_; }
    [[nodiscard]] const posix_spawn_file_actions_t* actions() const { return &actions_; }
    [[nodiscard]] const posix_spawnattr_t* attributes() const { return &attributes_; }

private:
    void note(int error) {
        if (failure_ == 0)
            failure_ = error;
    }

    int failure_ = 0;
    posix_spawn_file_actions_t actions_{};
    posix_spawnattr_t attributes_{};
};

/// Waits for exit without reaping, so that the pid is not reused before `reap`.
void waitForEnd(pid_t process) {
    siginfo_t info{};
    while (::waitid(P_PID, static_cast<id_t>(process), &info, WEXITED | WNOWAIT) < 0 && errno == EINTR) {
    }
}

std::int32_t reap(pid_t process) {
    constexpr std::int32_t unknownStatus = -1;
    int status = 0;
    while (::waitpid(process, &status, 0) < 0) {
        if (errno != EINTR)
            return unknownStatus;
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

    auto output = platform::makePipe();
    auto error = platform::makePipe();
    if (!output || !error)
        return std::unexpected(output ? error.error() : output.error());
    pid_t process = 0;
    const SpawnSetup setup(*output, *error);
    int failure = setup.failure();
    if (failure == 0)
        failure =
            ::posix_spawn(&process, path.c_str(), setup.actions(), setup.attributes(), argv.data(), environ);
    if (failure != 0)
        return std::unexpected(std::error_code(failure, std::generic_category()));
    output->write.close();
    error->write.close();

    Result result;
    {
        const std::stop_callback killer(stop, [process] { ::kill(-process, SIGKILL); });
        result.output = readToEnd(output->read);
        result.error = wellFormed(readToEnd(error->read));
        waitForEnd(process);
    }
    result.status = reap(process);
    return result;
}

}  // namespace ulvak::Shell
