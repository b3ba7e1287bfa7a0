#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <vector>

#include "platform/macos/bulk_listing.h"

// Parses the input as a file system's listing buffer. Whatever it is, each record must advance the position,
// and each name must lie within the buffer, terminated.

namespace {

void check(bool holds) {
    if (!holds)
        std::abort();
}

void checkName(std::string_view name, std::span<const std::byte> buffer) {
    if (name.empty())
        return;
    const auto* begin = reinterpret_cast<const std::byte*>(name.data());
    check(begin >= buffer.data() && begin + name.size() < buffer.data() + buffer.size());
    check(begin[name.size()] == std::byte{0});
    check(!name.contains('/') && name != "." && name != "..");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace ulvak::platform;
    // Exactly sized, so that any read beyond the end is detected.
    const std::vector<std::byte> buffer(reinterpret_cast<const std::byte*>(data),
                                        reinterpret_cast<const std::byte*>(data) + size);
    std::size_t position = 0;
    std::size_t before = 0;
    while (const auto record = takeRecord(buffer, position)) {
        check(position > before && position <= buffer.size());
        before = position;
        checkName(record->name, buffer);
        if (const auto entry = entryOf(*record))
            check(entry->allocatedSize >= 0 && !entry->name.empty());
    }
    check(position == before);
    return 0;
}
