#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string_view>
#include <system_error>

#include "platform/directory.h"

/// The buffer format of getattrlistbulk(2), one record per entry: its length, the set of attributes that
/// follow, an error, and then the attributes in bit order, packed, 4-byte aligned. Independent of the system,
/// so that it can be tested on any; `directory.cpp` checks the constants against the system's, those of the
/// types if it includes the header that defines them.
namespace ulvak::platform {

/// The bits that request and report attributes.
struct BulkBits {
    static constexpr std::uint32_t returnedAttributes = 0x8000'0000;
    static constexpr std::uint32_t error = 0x2000'0000;
    static constexpr std::uint32_t name = 0x0000'0001;
    static constexpr std::uint32_t volume = 0x0000'0002;
    static constexpr std::uint32_t objectType = 0x0000'0008;
    static constexpr std::uint32_t modified = 0x0000'0400;
    static constexpr std::uint32_t number = 0x0200'0000;
    static constexpr std::uint32_t mountStatus = 0x0000'0004;     ///< folders only
    static constexpr std::uint32_t names = 0x0000'0001;           ///< files only
    static constexpr std::uint32_t totalAllocated = 0x0000'0004;  ///< files only, all forks
    static constexpr std::uint32_t dataAllocated = 0x0000'0400;   ///< files only, the data fork

    static constexpr std::uint32_t common =
        returnedAttributes | error | name | volume | objectType | modified | number;
    static constexpr std::uint32_t folder = mountStatus;
    static constexpr std::uint32_t file = names | totalAllocated | dataAllocated;
};

/// Fields are nullopt if the record does not contain them.
struct BulkRecord {
    /// NUL-terminated (the NUL is not included); points into the buffer. Empty if there is no name, or one
    /// that no entry can have.
    std::string_view name;
    std::uint32_t error = 0;  ///< why the system could not describe the entry
    std::optional<std::uint32_t> volume;
    std::optional<std::uint32_t> objectType;
    std::optional<FileTime> modified;
    std::optional<std::uint64_t> number;
    std::optional<std::uint32_t> mountStatus;
    std::optional<std::uint32_t> names;
    std::optional<std::int64_t> totalAllocated;  ///< bytes
    std::optional<std::int64_t> dataAllocated;   ///< bytes

    [[nodiscard]] bool isFolder() const;
};

/// Parses the record at `position` and advances it to the next one. nullopt if it is not valid: then nothing
/// after it can be parsed either. `position` need not be aligned.
[[nodiscard]] std::optional<BulkRecord> takeRecord(std::span<const std::byte> buffer, std::size_t& position);

/// The entry of a record read with `Attributes::listed`, as far as the record describes it.
[[nodiscard]] DirectoryEntry listedEntryOf(const BulkRecord& record);

/// The entry of a record for the walk. nullopt if the system does not describe it.
[[nodiscard]] std::optional<DirectoryEntry> entryOf(const BulkRecord& record);

/// A folder's entries, read piece by piece into one buffer as getattrlistbulk(2) delivers them: the system
/// reports the number of records in a piece, and each begins where the previous one ends. Independent of the
/// system. A view for the duration of a call; the caller owns the buffer and the position.
class BulkListing {
public:
    /// Reads the next piece into the buffer. Returns its number of records, 0 at the end, or -1 with `errno`
    /// set.
    using Read = std::function<int(std::span<std::byte>)>;

    /// `left` counts the remaining records of the piece; `position` is where they begin.
    BulkListing(std::span<std::byte> buffer, std::size_t& position, std::size_t& left)
        : buffer_(buffer), position_(position), left_(left) {}

    /// The next entry of the folder; skips entries the system does not describe and folders named in
    /// `excluded` (null for none). nullopt at the end, and after an error, which is then set.
    [[nodiscard]] std::optional<DirectoryEntry> nextEntry(const Read& read, const NameSet* excluded,
                                                          std::error_code& error);

    /// Reads the next piece for `nextName`. Returns 1 if there is one, 0 at the end, -1 with `errno` set on
    /// failure. A piece that cannot be fully parsed, or has an entry without a name, fails as a whole (EIO):
    /// skipping entries would make the folder look emptier than it is.
    [[nodiscard]] int readNames(const Read& read);

    /// The next record of that piece; nullopt at its end.
    [[nodiscard]] std::optional<BulkRecord> nextName();

private:
    [[nodiscard]] int fill(const Read& read);

    std::span<std::byte> buffer_;
    std::size_t& position_;
    std::size_t& left_;
};

}  // namespace ulvak::platform
