#pragma once

#include <condition_variable>
#include <mutex>
#include <stop_token>

namespace ulvak::test {

/// Blocks workers until the test opens it. Closed at first. Thread-safe.
class Gate {
public:
    /// Returns once the gate is open, on a stop, or after a timeout far longer than any test waits.
    void pass(std::stop_token stop = {});
    void open() { set(true); }
    void shut() { set(false); }
    /// How many calls of `pass` there have been.
    [[nodiscard]] int arrived() const;

private:
    void set(bool isOpen);

    mutable std::mutex mutex_;
    std::condition_variable_any changed_;
    bool isOpen_ = false;  ///< guarded by `mutex_`
    int arrived_ = 0;      ///< guarded by `mutex_`
};

}  // namespace ulvak::test
