#include "platform/process.h"

#include <fcntl.h>
#include <signal.h>  // NOLINT(modernize-deprecated-headers): POSIX signal sets
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <vector>

#include "platform/files.h"
#include "platform/posix/user_folders.h"
#include "platform/user_folders.h"
#include "platform/volume.h"

extern char** environ;  // NOLINT(readability-redundant-declaration): glibc declares it, others do not

namespace ulvak::platform {
namespace {

/// What the calls that start a program take: its path and its arguments, in memory of their own.
class ArgumentVector {
public:
    ArgumentVector(const std::string& path, const auto& arguments) : words_{path} {
        words_.insert(words_.end(), arguments.begin(), arguments.end());
        for (std::string& word : words_)
            pointers_.push_back(word.data());
        pointers_.push_back(nullptr);
    }
    [[nodiscard]] char** argv() { return pointers_.data(); }

private:
    std::vector<std::string> words_;
    std::vector<char*> pointers_;
};

/// Keeps reading past the limit: otherwise the writer would block.
std::string readToEnd(const FileDescriptor& handle) {
    std::string bytes;
    std::vector<char> buffer(65536);  // not on the stack, which may be small
    for (;;) {
        const ssize_t count = ::read(handle.get(), buffer.data(), buffer.size());
        if (count > 0)
            bytes.append(buffer.data(),
                         std::min(static_cast<std::size_t>(count), maxStreamBytes - bytes.size()));
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

std::atomic<int> signalPipe = -1;
std::atomic<int> receivedSignal = 0;
static_assert(std::atomic<int>::is_always_lock_free, "used by a signal handler");

void onEndingSignal(int signal) {
    const int before = errno;
    receivedSignal = signal;
    const char byte = 0;
    if (::write(signalPipe, &byte, 1) < 0) {
        // Best effort: a signal handler can do nothing more.
    }
    errno = before;
}

/// Where commands are searched for, in order.
std::vector<std::string> commandFolders(const std::string& home) {
    std::vector<std::string> folders;
    const char* searched = std::getenv("PATH");  // NOLINT(concurrency-mt-unsafe): nobody sets it
    for (std::string_view rest = searched != nullptr ? searched : ""; !rest.empty();) {
        const std::size_t end = std::min(rest.find(':'), rest.size());
        if (rest.starts_with('/'))
            folders.emplace_back(rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    for (const char* place : {"/usr/local/bin", "/usr/bin", "/bin", "/usr/local/sbin", "/usr/sbin", "/sbin",
                              "/usr/games", "/snap/bin"})
        folders.emplace_back(place);
    for (const char* place : {"/.local/bin", "/bin", "/.cargo/bin", "/go/bin", "/.npm-global/bin",
                              "/.bun/bin", "/.deno/bin", "/.dotnet"})
        folders.push_back(home + place);
    return folders;
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
    ArgumentVector words(path, arguments);
    ::execv(path.c_str(), words.argv());
    return {errno, std::generic_category()};
}

std::expected<ProgramResult, std::error_code> runProgram(const std::string& path,
                                                         std::span<const std::string> arguments,
                                                         std::stop_token stop) {
    ArgumentVector words(path, arguments);
    auto output = makePipe();
    auto error = makePipe();
    if (!output || !error)
        return std::unexpected(output ? error.error() : output.error());
    pid_t process = 0;
    const SpawnSetup setup(*output, *error);
    int failure = setup.failure();
    if (failure == 0)
        failure =
            ::posix_spawn(&process, path.c_str(), setup.actions(), setup.attributes(), words.argv(), environ);
    if (failure != 0)
        return std::unexpected(std::error_code(failure, std::generic_category()));
    output->write.close();
    error->write.close();

    ProgramResult result;
    {
        const std::stop_callback killer(stop, [process] { ::kill(-process, SIGKILL); });
        result.output = readToEnd(output->read);
        result.error = readToEnd(error->read);
        waitForEnd(process);
    }
    result.status = reap(process);
    return result;
}

std::optional<int> watchEndingSignals() {
    auto pipe = makePipe();
    if (!pipe)
        return std::nullopt;
    signalPipe = pipe->write.release();
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        struct sigaction action{};
        // A signal that was ignored, for example by nohup, stays ignored.
        if (::sigaction(signal, nullptr, &action) != 0 || action.sa_handler == SIG_IGN)
            continue;
        action = {};
        action.sa_handler = &onEndingSignal;
        action.sa_flags = SA_RESTART | static_cast<int>(SA_RESETHAND);
        (void)::sigaction(signal, &action, nullptr);
    }
    return pipe->read.release();
}

void endBySignal() {
    const int signal = receivedSignal;
    if (signal == 0)
        return;
    (void)std::signal(signal, SIG_DFL);
    (void)std::raise(signal);
}

std::optional<bool> hasCommand(std::string_view name) {
    if (name.empty() || name.contains('/'))
        return false;
    const std::string home = homeDirectory();
    const Reach reach({&home, 1}, Reach::Others::prompt);
    bool isComplete = true;
    for (const std::string& folder : commandFolders(home)) {
        const Reach::Target place = reach.follow(std::string(folder).append("/").append(name));
        const auto info = place.isThere ? fileInfo(place.path) : std::nullopt;
        if (info && !info->isDirectory && ::access(place.path.c_str(), X_OK) == 0)
            return true;
        isComplete = isComplete && (place.isThere || reach.includes(place.path));
    }
    return isComplete ? std::optional(false) : std::nullopt;
}

}  // namespace ulvak::platform
