#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <system_error>

#include "platform/directory.h"
#include "platform/macos/bulk_record.h"

namespace ulvak::platform {

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
    /// in `untouched` (null for none). Nothing at the end, and after an error, which is then set.
    [[nodiscard]] std::optional<DirectoryEntry> nextEntry(const Read& read, const NameSet* untouched,
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
