#pragma once

#include <cstdint>

namespace ulvak {

/// A file with several hard links, as seen from one folder. Kept at 24 bytes: a disk can hold millions.
struct LinkedFile {
    /// Link counts saturate here; such a file never counts as complete.
    static constexpr std::uint16_t maxNames = UINT16_MAX;

    std::uint64_t number = 0;  ///< inode number
    std::int64_t size = 0;     ///< bytes on disk
    std::uint32_t volume = 0;
    std::uint16_t names = 0;  ///< hard links on the whole disk
    std::uint16_t seen = 0;   ///< of those, seen here; 0 only in an empty slot of the table

    [[nodiscard]] bool isSameAs(const LinkedFile& other) const {
        return number == other.number && volume == other.volume;
    }
    [[nodiscard]] bool isComplete() const { return seen >= names && names < maxNames; }
};

}  // namespace ulvak
