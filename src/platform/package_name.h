#pragma once

#include <string_view>

namespace ulvak::platform {

/// Whether a folder of this name is a document or bundle that people see as one item: by what follows the
/// last dot of the name, whatever the case of its letters. The same on every system. Safe from any thread.
[[nodiscard]] bool isPackageName(std::string_view name);

}  // namespace ulvak::platform
