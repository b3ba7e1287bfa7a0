#pragma once

#include <span>
#include <string>

namespace ulvak::platform::posix {

/// Whether following the link `name` in `folder`, which is absolute and itself without links, ends at
/// something without coming to another volume on its way. Goes name by name, so that the place of another
/// volume, one of `volumes`, is known before anybody looks there, and has no folder fetched on the way.
[[nodiscard]] bool leadsToSomethingNear(const std::string& folder, const std::string& name,
                                        std::span<const std::string> volumes);

}  // namespace ulvak::platform::posix
