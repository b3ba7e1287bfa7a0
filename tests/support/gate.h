#pragma once

#include <condition_variable>
#include <mutex>
#include <stop_token>

namespace ulvak::test {

/// Holds workers back until the test lets them go. Shut at first. Threads: any.
class Gate {
public:
    /// Returns when the gate is open, at a stop, or after far longer than a test waits for anything.
    void pass(std::stop_token stop = {});
    void open() { set(true); }
    void shut() { set(false); }
    /// How many have come to the gate so far.
    [[nodiscard]] int arrived() const;

private:
    void set(bool isOpen);

    mutable std::mutex mutex_;
    std::condition_variable_any changed_;
    bool isOpen_ = false;  ///< guarded by `mutex_`
    int arrived_ = 0;      ///< guarded by `mutex_`
};

}  // namespace ulvak::test
