#pragma once

#include <cstdint>

namespace ulvak {

/// Why a scan has no result.
enum class ScanError : std::uint8_t {
    outOfMemory,
};

}  // namespace ulvak
