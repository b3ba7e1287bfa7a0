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

/// One complete scan: walks all roots, asks for the simulators meanwhile, and has the trees analysed.
/// Never writes; what is missing or unreadable is left out. Fails only when memory runs out, and has given
/// back by then what it had. Threads: blocks the caller; `progress` may be read from others.
struct Scanner {
    ScanProgress& progress;
    const UserFolders& folders;

    /// The findings, largest first; none when stopped.
    [[nodiscard]] std::expected<std::vector<Finding>, ScanError> run(std::stop_token stop = {}) const;

    /// The places that a scan begins at, in order.
    [[nodiscard]] static std::vector<std::string> roots(const UserFolders& folders);
    /// Full paths of folders that are never entered: what lies there is elsewhere, or the system's.
    [[nodiscard]] static std::set<std::string, std::less<>> excluded(const UserFolders& folders);
};

}  // namespace ulvak
