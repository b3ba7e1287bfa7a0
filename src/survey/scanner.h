#pragma once

#include <expected>
#include <functional>
#include <set>
#include <stop_token>
#include <string>
#include <vector>

#include "core/finding.h"
#include "core/paths.h"
#include "scan/scan_progress.h"
#include "survey/scan_error.h"

namespace ulvak {

/// One complete scan: walks all roots, lists the simulators meanwhile, and analyses the trees. Never writes;
/// missing or unreadable items are left out. Fails only when memory runs out, and has freed its own by then.
///
/// Threads: blocks the caller; `progress` may be read from any thread.
struct Scanner {
    ScanProgress& progress;
    const UserFolders& folders;

    /// The findings, largest first; empty when stopped.
    [[nodiscard]] std::expected<std::vector<Finding>, ScanError> run(std::stop_token stop = {}) const;

    /// Where a scan begins, in order.
    [[nodiscard]] static std::vector<std::string> roots(const UserFolders& folders);
    /// Full paths of folders that are never entered: their content is stored elsewhere, or is the system's.
    [[nodiscard]] static std::set<std::string, std::less<>> excluded(const UserFolders& folders);
};

}  // namespace ulvak
