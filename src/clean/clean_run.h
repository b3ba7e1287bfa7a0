#pragma once

#include <cstddef>
#include <stop_token>
#include <vector>

#include "platform/trash.h"

namespace ulvak {

/// What was done once for several findings.
struct CleanAhead;

/// What goes in and out of cleaning one finding besides its result. For one call of `Cleaner::clean` at a
/// time.
struct CleanRun {
    std::stop_token stop;  ///< asked between items: the one that is being removed is finished
    std::size_t done = 0;  ///< items that are in the Trash or gone, also when it failed later
    std::vector<platform::TrashedItem> trashed;  ///< those in the Trash, in order
    CleanAhead* ahead = nullptr;                 ///< from `Cleaner::prepare` for this finding among others
};

}  // namespace ulvak
