#include "support/gate.h"

#include <chrono>
#include <utility>

namespace ulvak::test {

void Gate::pass(std::stop_token stop) {
    std::unique_lock lock(mutex_);
    ++arrived_;
    // A failed test may never open the gate, and its application waits for the worker.
    changed_.wait_for(lock, std::move(stop), std::chrono::minutes(5), [this] { return isOpen_; });
}

int Gate::arrived() const {
    const std::scoped_lock lock(mutex_);
    return arrived_;
}

void Gate::set(bool isOpen) {
    const std::scoped_lock lock(mutex_);
    isOpen_ = isOpen;
    changed_.notify_all();
}

}  // namespace ulvak::test
