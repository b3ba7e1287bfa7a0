#include "platform/macos/bulk_listing.h"

#include <cerrno>

namespace ulvak::platform {

int BulkListing::fill(const Read& read) {
    position_ = left_ = 0;
    for (;;) {
        const int count = read(buffer_);
        if (count > 0)
            left_ = static_cast<std::size_t>(count);
        if (count >= 0 || errno != EINTR)
            return count;
    }
}

std::optional<DirectoryEntry> BulkListing::nextEntry(const Read& read, const NameSet* untouched,
                                                     std::error_code& error) {
    while (!error) {
        if (left_ == 0) {
            const int count = fill(read);
            // A folder whose names live elsewhere, and are not fetched for this, holds nothing on this disk.
            if (count < 0 && errno != EDEADLK)
                error = {errno, std::generic_category()};
            if (count <= 0)
                return std::nullopt;
        }
        const auto record = takeRecord(buffer_, position_);
        if (!record) {
            error = std::make_error_code(std::errc::io_error);
            left_ = 0;
            return std::nullopt;
        }
        --left_;
        auto entry = entryOf(*record);
        const bool isPassedOver =
            record->isFolder() && untouched != nullptr && entry && untouched->contains(entry->name);
        if (entry && !isPassedOver)
            return entry;
    }
    return std::nullopt;
}

int BulkListing::readNames(const Read& read) {
    const int count = fill(read);
    if (count <= 0)
        return count;
    std::size_t position = 0;
    for (std::size_t left = left_; left > 0; --left) {
        const auto record = takeRecord(buffer_, position);
        if (!record || record->name.empty()) {
            left_ = 0;
            errno = EIO;
            return -1;
        }
    }
    return 1;
}

std::optional<BulkRecord> BulkListing::nextName() {
    if (left_ == 0)
        return std::nullopt;
    --left_;
    return takeRecord(buffer_, position_);
}

}  // namespace ulvak::platform
