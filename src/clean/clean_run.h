#pragma once

#include <cstddef>
#include <stop_token>
#include <vector>

#include "platform/trash.h"

namespace ulvak {

/// Work done once for several findings.
struct CleanAhead;

/// Inputs and outputs of cleaning one finding, besides its result. For one call of `Cleaner::clean` at a
/// time.
struct CleanRun {
    std::stop_token stop;  ///< checked between items; the item in progress is always finished
    std::size_t done = 0;  ///< items in the Trash or gone, even if a later one failed
    std::vector<platform::TrashedItem> trashed;  ///< items now in the Trash, in order
    CleanAhead* ahead = nullptr;                 ///< from a `Cleaner::prepare` that included this finding
};

}  // namespace ulvak
