#pragma once

#include <chrono>

namespace ulvak {

/// A point in time as file systems store it. Microseconds reach 292,000 years either way; values beyond that
/// are clamped.
using FileTime = std::chrono::sys_time<std::chrono::microseconds>;

}  // namespace ulvak
