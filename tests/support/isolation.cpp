#include "support/isolation.h"

#include <grp.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <exception>
#include <thread>

#include "support/system.h"

#ifdef ULVAK_COVERAGE
/// GCC's coverage counters are written when a process exits normally. A child skips that.
extern "C" void __gcov_dump();  // NOLINT(clang-diagnostic-*): its own name
#endif

namespace ulvak::test {
namespace {

std::string systemError(const std::string& what) {
    return what + ": " + std::strerror(errno);
}

/// Prepares a child; returns the error, if any.
using Preparation = std::function<std::optional<std::string>()>;

int failedParts() {
    const auto* test = testing::UnitTest::GetInstance()->current_test_info();
    int failed = 0;
    for (int i = 0; test != nullptr && i < test->result()->total_part_count(); ++i)
        failed += test->result()->GetTestPartResult(i).failed() ? 1 : 0;
    return failed;
}

int runAsChild(const Preparation& prepare, const Body& body) {
    if (const auto reason = prepare()) {
        std::fprintf(stderr, "%s\n", reason->c_str());
        return 2;
    }
    const int before = failedParts();
    try {
        body();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "an exception: %s\n", error.what());
        return 3;
    }
    return failedParts() == before ? 0 : 1;
}

bool hasOtherThreads() {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(1);
    while (detail::threads() > 1) {
        if (std::chrono::steady_clock::now() > deadline)
            return true;
        std::this_thread::sleep_for(
            std::chrono::milliseconds(1));  // a joined thread is listed a moment longer
    }
    return false;
}

/// Returns the error, if any. A lock that another thread holds at the fork, such as the allocator's, would
/// stay locked in the child forever.
std::optional<std::string> forked(const Preparation& prepare, const Body& body) {
    if (hasOtherThreads())
        return "a child cannot be forked beside other threads";
    std::fflush(nullptr);
    const pid_t child = ::fork();
    if (child < 0)
        return systemError("fork");
    if (child == 0) {
        const int status = runAsChild(prepare, body);
        std::fflush(nullptr);
#ifdef ULVAK_COVERAGE
        __gcov_dump();
#endif
        ::_exit(status);  // no destructors: they would remove the parent's files
    }
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    if (WIFSIGNALED(status))
        return "the child died of signal " + std::to_string(WTERMSIG(status));
    if (WEXITSTATUS(status) != 0)
        return "it failed in the child, as said above (" + std::to_string(WEXITSTATUS(status)) + ")";
    return std::nullopt;
}

bool passed(const std::optional<std::string>& failure, const std::source_location& where) {
    if (failure)
        ADD_FAILURE_AT(where.file_name(), static_cast<int>(where.line())) << *failure;
    return !failure;
}

std::optional<std::string> nothingToPrepare() {
    return std::nullopt;
}

std::optional<std::string> becomeUnprivileged() {
    if (::geteuid() != 0)
        return std::nullopt;
    if (::setgroups(0, nullptr) != 0 || ::setgid(unprivilegedId) != 0 || ::setuid(unprivilegedId) != 0)
        return systemError("cannot drop the rights of root");
    return std::nullopt;
}

}  // namespace

bool inChild(const Body& body, std::source_location where) {
    return passed(forked(nothingToPrepare, body), where);
}

bool asUnprivileged(const Body& body, std::source_location where) {
    return passed(forked(becomeUnprivileged, body), where);
}

bool withPrivateMounts(const Body& body, std::source_location where) {
    return passed(forked(detail::separateMounts, body), where);
}

std::optional<std::string> whyNotUnprivileged(const std::string& path) {
    const auto failure = forked(becomeUnprivileged, [&] {
        if (::access(path.c_str(), R_OK | X_OK) != 0)
            ::_exit(1);
    });
    if (failure)
        return "an unprivileged user cannot be had, or does not reach " + path;
    return std::nullopt;
}

std::optional<std::string> whyNoPrivateMounts() {
    const auto failure = forked(detail::separateMounts, [] {
        if (!mountMemory("/tmp"))
            ::_exit(1);
    });
    if (failure)
        return "this user cannot mount anything";
    return std::nullopt;
}

}  // namespace ulvak::test
