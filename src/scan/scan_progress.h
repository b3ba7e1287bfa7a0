#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>
#include <string>
#include <utility>

#include "core/checked_add.h"

namespace ulvak {

/// Live counters of one scan. Thread-safe: written by its walks, read by whoever started it. Never reset;
/// each scan gets a new object.
class ScanProgress {
public:
    void addFiles(std::int64_t count) { addChecked(files_, count); }
    void addBytes(std::int64_t count) { addChecked(bytes_, count); }
    void addDenied(std::int64_t count) { addChecked(denied_, count); }
    /// For folders that are not the user's: counted as one, however many there are.
    void addDeniedBeyond() {
        if (deniedBeyond_.exchange(1) == 0)
            addDenied(1);
    }
    void setCurrent(std::string path) {
        const std::scoped_lock lock(currentMutex_);
        current_ = std::move(path);
    }

    /// Files counted so far.
    [[nodiscard]] std::int64_t files() const { return files_.load(std::memory_order_relaxed); }
    /// Allocated bytes counted so far, each file once. A file with several hard links is added when its last
    /// link has been seen, or when the walk ends. Never decreases.
    [[nodiscard]] std::int64_t bytes() const { return bytes_.load(std::memory_order_relaxed); }
    /// Folders that could not be listed.
    [[nodiscard]] std::int64_t denied() const { return denied_.load(std::memory_order_relaxed); }
    /// Those of them that are nothing to tell the user about.
    [[nodiscard]] std::int64_t deniedBeyond() const { return deniedBeyond_.load(std::memory_order_relaxed); }
    /// The folder entered last, from the top three levels only; path bytes.
    [[nodiscard]] std::string current() const {
        const std::scoped_lock lock(currentMutex_);
        return current_;
    }

private:
    std::atomic<std::int64_t> files_ = 0;
    std::atomic<std::int64_t> bytes_ = 0;
    std::atomic<std::int64_t> denied_ = 0;
    std::atomic<std::int64_t> deniedBeyond_ = 0;
    mutable std::mutex currentMutex_;
    std::string current_;  ///< guarded by `currentMutex_`
};

}  // namespace ulvak
