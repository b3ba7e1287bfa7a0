#pragma once

#include <dirent.h>

#include <cstddef>
#include <cstring>

namespace ulvak::platform {

/// What `getdents64` writes of one entry: inode, offset, record length, type, name with its zero byte.
struct DirectoryRecord {
    const char* name = nullptr;  ///< in the buffer
    unsigned char type = DT_UNKNOWN;
    std::size_t length = 0;  ///< bytes to the next record

    [[nodiscard]] bool isDotOrDotDot() const {
        return name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'));
    }
};

/// `start` is where the kernel has begun a record.
[[nodiscard]] inline DirectoryRecord directoryRecordAt(const std::byte* start) {
    unsigned short length = 0;
    std::memcpy(&length, start + offsetof(dirent64, d_reclen), sizeof length);
    return {.name = reinterpret_cast<const char*>(start + offsetof(dirent64, d_name)),
            .type = std::to_integer<unsigned char>(start[offsetof(dirent64, d_type)]),
            .length = length};
}

}  // namespace ulvak::platform
