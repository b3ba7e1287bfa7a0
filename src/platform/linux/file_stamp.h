#pragma once

#include <sys/stat.h>

#include <cstdint>
#include <limits>

#include "platform/file_time.h"

namespace ulvak::platform {

inline FileTime fileTime(const statx_timestamp& stamp) {
    std::int64_t microseconds = 0;
    if (__builtin_mul_overflow(stamp.tv_sec, std::int64_t{1'000'000}, &microseconds) ||
        __builtin_add_overflow(microseconds, static_cast<std::int64_t>(stamp.tv_nsec) / 1000, &microseconds))
        return stamp.tv_sec < 0 ? FileTime::min() : FileTime::max();
    return FileTime(std::chrono::microseconds(microseconds));
}

/// The kernel counts in units of 512 bytes, whatever the file system's own block size.
inline std::int64_t allocatedBytes(const struct statx& info) {
    constexpr std::uint64_t unit = 512;
    constexpr auto most = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max()) / unit;
    return static_cast<std::int64_t>((info.stx_blocks < most ? info.stx_blocks : most) * unit);
}

}  // namespace ulvak::platform
