#pragma once

#include <sys/types.h>

#include <cstdint>
#include <functional>
#include <optional>

namespace ulvak::test {

/// A child that does something and stops at every call to the kernel, before it and after it. Killed with the
/// object, wherever it is.
class TracedChild {
public:
    explicit TracedChild(const std::function<void()>& body);
    ~TracedChild();
    TracedChild(const TracedChild&) = delete;
    TracedChild& operator=(const TracedChild&) = delete;

    /// Whether this user may trace a program.
    [[nodiscard]] bool isTraced() const { return isTraced_; }

    /// Goes on to where the next call begins or ends; whether there is one.
    bool step();

    /// The number of the call that is about to begin.
    [[nodiscard]] std::optional<std::uint64_t> call() const;

private:
    pid_t process_ = -1;
    bool isTraced_ = false;
    bool isRunning_ = false;
};

}  // namespace ulvak::test
