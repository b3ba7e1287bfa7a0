#pragma once

#include <expected>
#include <functional>
#include <optional>
#include <set>
#include <stop_token>
#include <string>
#include <vector>

#include "core/finding.h"
#include "core/paths.h"
#include "scan/scan_progress.h"
#include "survey/scan_error.h"

namespace ulvak {

/// What a scan of a user's own account looks at beside the usual roots. A plain value.
struct FurtherPlaces {
    /// All of the user's, if there are others than the one in the home folder: those of other volumes, of
    /// sandboxed applications, or where the user has moved it.
    std::vector<std::string> trashes;
    std::vector<std::string> systems;  ///< explained, never cleaned; what cannot be read there is no alarm

    /// None with a home folder that is not the account's own: nobody tries things out on the whole machine.
    /// Reads the disk.
    [[nodiscard]] static FurtherPlaces of(const UserFolders& folders);
};

/// One complete scan: walks all roots, lists the simulators meanwhile, and analyses the trees. Never writes;
/// missing or unreadable items are left out. Fails only when memory runs out, and has freed its own by then.
///
/// Threads: blocks the caller; `progress` may be read from any thread.
struct Scanner {
    ScanProgress& progress;
    const UserFolders& folders;
    std::optional<FurtherPlaces> further{};  ///< those of the folders if not given

    /// The findings, largest first; empty when stopped.
    [[nodiscard]] std::expected<std::vector<Finding>, ScanError> run(std::stop_token stop = {}) const;

    /// Where a scan begins, in order.
    [[nodiscard]] static std::vector<std::string> roots(const UserFolders& folders);
    /// Full paths of folders that are never entered: their content is stored elsewhere, or is the system's.
    [[nodiscard]] static std::set<std::string, std::less<>> excluded(const UserFolders& folders);
};

}  // namespace ulvak
