#pragma once

#include <sys/types.h>

#include <cstdint>
#include <functional>
#include <optional>

namespace ulvak::test {

/// A child process that stops before and after every system call. Killed when the object is destroyed.
class TracedChild {
public:
    explicit TracedChild(const std::function<void()>& body);
    ~TracedChild();
    TracedChild(const TracedChild&) = delete;
    TracedChild& operator=(const TracedChild&) = delete;

    /// Whether this user may trace a process.
    [[nodiscard]] bool isTraced() const { return isTraced_; }

    /// Runs to the next system call's entry or exit; false if there is none.
    bool step();

    /// The number of the system call about to start.
    [[nodiscard]] std::optional<std::uint64_t> call() const;

private:
    pid_t process_ = -1;
    bool isTraced_ = false;
    bool isRunning_ = false;
};

}  // namespace ulvak::test
