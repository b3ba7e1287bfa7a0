#pragma once

#include <sys/attr.h>

#include <cstddef>
#include <span>

namespace ulvak::platform {

/// The next piece of an open folder, as records with what `attributes` asks for: how many there are, 0 at the
/// end, or -1 with `errno` set. Renews no access date and fetches no folder that lives elsewhere.
[[nodiscard]] int readBulk(int folder, attrlist attributes, std::span<std::byte> buffer);

/// Name and type are all that is asked for.
[[nodiscard]] attrlist nameAttributes();

}  // namespace ulvak::platform
