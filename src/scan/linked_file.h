#pragma once

#include <cstdint>

namespace ulvak {

/// A file with several names as one place knows it. Twenty-four bytes: a disk can hold millions of them.
struct LinkedFile {
    /// Counts of names end here: a file with so many never counts as complete.
    static constexpr std::uint16_t maxNames = UINT16_MAX;

    std::uint64_t number = 0;  ///< the file system's
    std::int64_t size = 0;     ///< bytes on disk
    std::uint32_t volume = 0;
    std::uint16_t names = 0;  ///< on the whole disk
    std::uint16_t seen = 0;   ///< of these, here; 0 only in an empty slot of the table

    [[nodiscard]] bool isSameAs(const LinkedFile& other) const {
        return number == other.number && volume == other.volume;
    }
    [[nodiscard]] bool isComplete() const { return seen >= names && names < maxNames; }
};

}  // namespace ulvak
