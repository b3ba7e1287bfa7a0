#pragma once

#include <cstdint>
#include <limits>

#include "platform/file_time.h"

namespace ulvak::platform {

/// What file systems keep as seconds and nanoseconds since 1970.
inline FileTime fileTime(std::int64_t seconds, std::int64_t nanoseconds) {
    std::int64_t microseconds = 0;
    if (__builtin_mul_overflow(seconds, std::int64_t{1'000'000}, &microseconds) ||
        __builtin_add_overflow(microseconds, nanoseconds / 1000, &microseconds))
        return seconds < 0 ? FileTime::min() : FileTime::max();
    return FileTime(std::chrono::microseconds(microseconds));
}

/// The kernels count in units of 512 bytes, whatever the file system's own block size.
inline std::int64_t allocatedBytes(std::uint64_t blocks) {
    constexpr std::uint64_t unit = 512;
    constexpr auto most = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max()) / unit;
    return static_cast<std::int64_t>((blocks < most ? blocks : most) * unit);
}

}  // namespace ulvak::platform
