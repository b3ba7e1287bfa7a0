#include "support/linux/traced_child.h"

#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

namespace ulvak::test {

TracedChild::TracedChild(const std::function<void()>& body) {
    process_ = ::fork();
    if (process_ == 0) {
        if (::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0)
            ::_exit(1);
        ::raise(SIGSTOP);
        body();
        ::_exit(0);
    }
    int status = 0;
    isTraced_ =
        ::waitpid(process_, &status, 0) == process_ && WIFSTOPPED(status) &&
        ::ptrace(PTRACE_SETOPTIONS, process_, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL) == 0;
    isRunning_ = WIFSTOPPED(status);
}

TracedChild::~TracedChild() {
    if (isRunning_) {
        ::kill(process_, SIGKILL);
        ::waitpid(process_, nullptr, 0);
    }
}

bool TracedChild::step() {
    int status = 0;
    do {
        ::ptrace(PTRACE_SYSCALL, process_, nullptr, nullptr);
        if (::waitpid(process_, &status, 0) != process_)
            return false;
    } while (WIFSTOPPED(status) && WSTOPSIG(status) != (SIGTRAP | 0x80));
    isRunning_ = WIFSTOPPED(status);
    return isRunning_;
}

std::optional<std::uint64_t> TracedChild::call() const {
    __ptrace_syscall_info info{};
    if (::ptrace(PTRACE_GET_SYSCALL_INFO, process_, sizeof info, &info) <= 0 ||
        info.op != PTRACE_SYSCALL_INFO_ENTRY)
        return std::nullopt;
    return info.entry.nr;
}

}  // namespace ulvak::test
