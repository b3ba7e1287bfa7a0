#pragma once

#include <cstdint>
#include <optional>

namespace ulvak {

/// The capacity of the start-up volume, in bytes.
struct DiskInfo {
    std::int64_t total = 0;
    std::int64_t available = 0;

    /// Queries the file system that holds "/"; returns nullopt when it does not say. Thread-safe.
    [[nodiscard]] static std::optional<DiskInfo> current();

    friend bool operator==(const DiskInfo&, const DiskInfo&) = default;
};

}  // namespace ulvak
