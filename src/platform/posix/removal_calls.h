#pragma once

#include <functional>

#include "platform/posix/system.h"
#include "platform/removal.h"

namespace ulvak::platform::posix {

/// What removing asks of the system about folders whose contents live elsewhere: not every system has any.
struct RemovalCalls {
    std::function<int(NameReader&, int)> read = [](NameReader& reader, int folder) {
        return reader.read(folder);
    };
    std::function<int(int, const char*)> removePlaceholder = posix::removePlaceholder;
};

/// As `removeEntry` of `platform/removal.h`, by these calls.
[[nodiscard]] std::expected<void, FileError> removeEntry(const Directory& parent, const std::string& name,
                                                         const RemovalCalls& calls);

}  // namespace ulvak::platform::posix
