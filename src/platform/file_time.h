#pragma once

#include <chrono>

namespace ulvak {

/// A point in time as file systems keep it. Microseconds reach 292,000 years either way; what a file
/// system claims beyond that is held at the end of the range.
using FileTime = std::chrono::sys_time<std::chrono::microseconds>;

}  // namespace ulvak
