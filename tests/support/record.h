#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <utility>
#include <vector>

namespace ulvak::test {

/// A list that other threads append to and the test reads.
template <typename Value>
class Record {
public:
    void add(Value value) {
        const std::scoped_lock lock(mutex_);
        values_.push_back(std::move(value));
        grown_.notify_all();
    }
    [[nodiscard]] std::vector<Value> values() const {
        const std::scoped_lock lock(mutex_);
        return values_;
    }
    [[nodiscard]] std::size_t size() const { return values().size(); }
    /// The whole list, once it has `count` values or a minute has passed.
    [[nodiscard]] std::vector<Value> waitFor(std::size_t count) const {
        std::unique_lock lock(mutex_);
        grown_.wait_for(lock, std::chrono::minutes(1), [&] { return values_.size() >= count; });
        return values_;
    }

private:
    mutable std::mutex mutex_;
    mutable std::condition_variable grown_;
    std::vector<Value> values_;  ///< guarded by `mutex_`
};

}  // namespace ulvak::test
