#pragma once

#include <atomic>
#include <cstdint>
#include <cstdlib>

namespace ulvak {

/// Adds to a count of files or bytes; aborts on overflow. No disk holds enough to overflow one, so an
/// overflow is our own bug or a file system that lies, and a wrong size must not be shown.
inline void addChecked(std::int64_t& count, std::int64_t amount) {
    if (__builtin_add_overflow(count, amount, &count))
        std::abort();
}

inline void addChecked(std::atomic<std::int64_t>& count, std::int64_t amount) {
    std::int64_t before = count.fetch_add(amount, std::memory_order_relaxed);
    addChecked(before, amount);
}

}  // namespace ulvak
