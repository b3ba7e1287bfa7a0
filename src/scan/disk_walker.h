#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <span>
#include <stop_token>
#include <string>
#include <vector>

#include "scan/dir_node.h"
#include "scan/scan_progress.h"

namespace ulvak {

/// Measures trees. Never writes, never follows a link below the root, never leaves the volume, opens
/// nothing but folders. Holds one name and one date for each folder that waits to be entered, and the
/// nodes that are big enough to keep; nothing for each file.
/// Threads: blocks the caller, which is one of the workers.
struct DiskWalker {
    ScanProgress& progress;
    /// Full paths of folders that are never entered, as text.
    std::set<std::string, std::less<>> excluded;
    /// Full paths inside one tree at which another one of the same call begins: left to that one, so that
    /// no file is counted twice.
    std::vector<std::string> innerRoots;
    /// Bytes; smaller children are counted but not kept.
    std::int64_t keepThreshold = 50'000'000;

    /// The tree at `path` (absolute; a link there is followed), or nothing when nothing is there, or when it
    /// is on a volume that may never answer and does not hold the home folder: nobody waits for that. A
    /// folder that cannot be listed is empty and counted in `progress.denied`. Stopping ends the walk soon,
    /// with what it has.
    [[nodiscard]] std::optional<DirNode> node(const std::string& path, std::stop_token stop = {}) const;

    /// The same for several trees at once; results in the order of `paths`.
    [[nodiscard]] std::vector<std::optional<DirNode>> nodes(std::span<const std::string> paths,
                                                            std::stop_token stop = {}) const;
};

}  // namespace ulvak
