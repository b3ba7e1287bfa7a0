#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/macos/bulk_listing.h"

/// Hand-built records in the system's format.
namespace ulvak::platform {

inline constexpr std::uint32_t fileType = 1;
inline constexpr std::uint32_t folderType = 2;
inline constexpr std::uint32_t blockDeviceType = 3;
inline constexpr std::uint32_t deviceType = 4;
inline constexpr std::uint32_t linkType = 5;
inline constexpr std::uint32_t socketType = 6;
inline constexpr std::uint32_t fifoType = 7;
inline constexpr std::uint32_t mountPoint = 1;
inline constexpr std::uint32_t trigger = 2;

using Bytes = std::vector<std::byte>;

template <typename Value>
void append(Bytes& bytes, Value value) {
    const auto* begin = reinterpret_cast<const std::byte*>(&value);
    bytes.insert(bytes.end(), begin, begin + sizeof value);
}

template <typename Value>
void put(Bytes& bytes, std::size_t at, Value value) {
    std::memcpy(bytes.data() + at, &value, sizeof value);
}

/// The fields a record is to have.
struct Written {
    std::optional<std::string> name;
    std::optional<std::uint32_t> error;
    std::optional<std::uint32_t> volume;
    std::optional<std::uint32_t> type;
    std::optional<std::pair<std::int64_t, std::int64_t>> modified;
    std::optional<std::uint64_t> number;
    std::optional<std::uint32_t> mountStatus;
    std::optional<std::uint32_t> names;
    std::optional<std::int64_t> totalAllocated;
    std::optional<std::int64_t> dataAllocated;
};

inline constexpr std::size_t setOffset = sizeof(std::uint32_t);
inline constexpr std::size_t fieldsOffset = setOffset + 5 * sizeof(std::uint32_t);

inline Bytes record(const Written& what) {
    Bytes bytes;
    append(bytes, std::uint32_t{0});
    const auto bit = [](const auto& field, std::uint32_t value) { return field ? value : 0U; };
    append(bytes, BulkBits::returnedAttributes | bit(what.name, BulkBits::name) |
                      bit(what.error, BulkBits::error) | bit(what.volume, BulkBits::volume) |
                      bit(what.type, BulkBits::objectType) | bit(what.modified, BulkBits::modified) |
                      bit(what.number, BulkBits::number));
    append(bytes, std::uint32_t{0});
    append(bytes, bit(what.mountStatus, BulkBits::mountStatus));
    append(bytes, bit(what.names, BulkBits::names) | bit(what.totalAllocated, BulkBits::totalAllocated) |
                      bit(what.dataAllocated, BulkBits::dataAllocated));
    append(bytes, std::uint32_t{0});
    if (what.error)
        append(bytes, *what.error);
    const std::size_t reference = bytes.size();
    if (what.name)
        append(bytes, std::uint64_t{0});
    if (what.volume)
        append(bytes, *what.volume);
    if (what.type)
        append(bytes, *what.type);
    if (what.modified) {
        append(bytes, what.modified->first);
        append(bytes, what.modified->second);
    }
    if (what.number)
        append(bytes, *what.number);
    if (what.mountStatus)
        append(bytes, *what.mountStatus);
    if (what.names)
        append(bytes, *what.names);
    if (what.totalAllocated)
        append(bytes, *what.totalAllocated);
    if (what.dataAllocated)
        append(bytes, *what.dataAllocated);
    if (what.name) {
        put(bytes, reference, static_cast<std::int32_t>(bytes.size() - reference));
        put(bytes, reference + 4, static_cast<std::uint32_t>(what.name->size() + 1));
        for (const char c : *what.name)
            append(bytes, c);
        append(bytes, '\0');
    }
    while (bytes.size() % 8 != 0)
        append(bytes, '\0');
    put(bytes, 0, static_cast<std::uint32_t>(bytes.size()));
    return bytes;
}

}  // namespace ulvak::platform
