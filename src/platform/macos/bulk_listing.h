#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string_view>
#include <system_error>

#include "platform/directory.h"

/// What getattrlistbulk(2) puts into a buffer, one record an entry: its length, the attributes that follow,
/// an error, and then the attributes in the order of their bits, packed, on four-byte boundaries. Needs
/// nothing of the system, so that it can be tested on any; `directory.cpp` checks the numbers against the
/// system's, those of the types where it brings the header that has them.
namespace ulvak::platform {

/// The bits by which attributes are asked for and answered.
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
    static constexpr std::uint32_t totalAllocated = 0x0000'0004;  ///< files only, all their forks
    static constexpr std::uint32_t dataAllocated = 0x0000'0400;   ///< files only, the data fork

    static constexpr std::uint32_t common =
        returnedAttributes | error | name | volume | objectType | modified | number;
    static constexpr std::uint32_t folder = mountStatus;
    static constexpr std::uint32_t file = names | totalAllocated | dataAllocated;
};

/// Each field is absent when the record does not have it.
struct BulkRecord {
    /// Ends in a zero byte, which does not belong to it; lies in the buffer. Empty when there is no name, or
    /// one that no entry can have.
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

/// The record at `position`, which moves on to the one behind it. Nothing when what is there cannot be one:
/// then nothing after it can be understood either. `position` may be at any address.
[[nodiscard]] std::optional<BulkRecord> takeRecord(std::span<const std::byte> buffer, std::size_t& position);

/// What is told of an entry that is only listed, as far as the record says it.
[[nodiscard]] DirectoryEntry listedEntryOf(const BulkRecord& record);

/// What the walk is told of an entry. Nothing for one that the system does not describe.
[[nodiscard]] std::optional<DirectoryEntry> entryOf(const BulkRecord& record);

/// A folder's entries, read piece by piece into one buffer as getattrlistbulk(2) gives them: the system says
/// how many records a piece has, and where one ends the next begins. Needs nothing of the system. A view for
/// the length of a call: the buffer and the place in it are whoever's it is.
class BulkListing {
public:
    /// Puts the next piece into the buffer: how many records it has, 0 at the end, or -1 with `errno` set.
    using Read = std::function<int(std::span<std::byte>)>;

    /// `left` counts the records of the piece that are still to come, `position` is where they begin.
    BulkListing(std::span<std::byte> buffer, std::size_t& position, std::size_t& left)
        : buffer_(buffer), position_(position), left_(left) {}

    /// The next entry of the folder, those left out that the system does not describe and the folders named
    /// in `excluded` (null for none). Nothing at the end, and after an error, which is then set.
    [[nodiscard]] std::optional<DirectoryEntry> nextEntry(const Read& read, const NameSet* excluded,
                                                          std::error_code& error);

    /// The next piece for whoever asks for names: whether there is one (1), none any more (0), or it failed
    /// (-1 with `errno` set). A piece that cannot be understood to its end, or has an entry without a name,
    /// fails as a whole (EIO): what is missing would make the folder look emptier than it is.
    [[nodiscard]] int readNames(const Read& read);

    /// The next record of that piece; nothing at its end.
    [[nodiscard]] std::optional<BulkRecord> nextName();

private:
    [[nodiscard]] int fill(const Read& read);

    std::span<std::byte> buffer_;
    std::size_t& position_;
    std::size_t& left_;
};

}  // namespace ulvak::platform
