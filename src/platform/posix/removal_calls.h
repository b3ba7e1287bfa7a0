#pragma once

#include <cstddef>
#include <functional>

#include "platform/posix/system.h"
#include "platform/removal.h"

namespace ulvak::platform::posix {

/// What removing asks of the system about folders whose contents live elsewhere, as not every system has any,
/// and how many do it.
struct RemovalCalls {
    std::function<int(NameReader&, int)> read = [](NameReader& reader, int folder) {
        return reader.read(folder);
    };
    std::function<int(int, const char*)> removePlaceholder = posix::removePlaceholder;
    /// Threads at most. More than there are processors: taking folders away is mostly waiting for the disk.
    std::size_t workers = 4;
    /// Folders that the calling thread enters before it asks others for help.
    std::size_t foldersAlone = 8;
};

/// As `removeEntry` of `platform/removal.h`, by these calls, which may come from any thread.
[[nodiscard]] std::expected<void, FileError> removeEntry(const Directory& parent, const std::string& name,
                                                         const RemovalCalls& calls);

}  // namespace ulvak::platform::posix
