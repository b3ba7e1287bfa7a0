#pragma once

#include <atomic>
#include <cstdint>
#include <cstdlib>

namespace ulvak {

/// Adds to a count of files or bytes. No disk holds as much as would overflow one: a sum that does is our own
/// error, or a file system that lies, and a wrong size must not be shown. It ends the program.
inline void addChecked(std::int64_t& count, std::int64_t amount) {
    if (__builtin_add_overflow(count, amount, &count))
        std::abort();
}

inline void addChecked(std::atomic<std::int64_t>& count, std::int64_t amount) {
    std::int64_t before = count.fetch_add(amount, std::memory_order_relaxed);
    addChecked(before, amount);
}

}  // namespace ulvak
