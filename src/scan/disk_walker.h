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
#include "scan/noted_names.h"
#include "scan/scan_progress.h"

namespace ulvak {

/// Measures trees. Never writes, never follows a link below the root, never leaves the volume, opens nothing
/// but folders. Memory: a name and a date for each folder waiting to be entered, plus the nodes big enough to
/// keep. Nothing per file, except an identity for those with several hard links.
///
/// Threads: blocks the caller, which is one of the workers.
struct DiskWalker {
    ScanProgress& progress;
    /// The user's home folder, whose volume is always looked at; may be empty.
    std::string home;
    /// Full paths of folders that are never entered, as text.
    std::set<std::string, std::less<>> excluded;
    /// Full paths inside one tree where another root of the same call begins. They are skipped there, so that
    /// no file is counted twice.
    std::vector<std::string> innerRoots;
    /// Bytes; smaller children are counted but not kept.
    std::int64_t keepThreshold = 50'000'000;
    const NotedNames* noted = nullptr;  ///< names to note in `DirNode::noted`; null for none

    /// The tree at `path` (absolute; a link there is followed). Returns nullopt if nothing is there, or if it
    /// is on a volume that may never answer and does not hold the home folder. A folder that cannot be listed
    /// is empty and counted in `progress.denied`. A stop request ends the walk soon, with a partial result.
    [[nodiscard]] std::optional<DirNode> node(const std::string& path, std::stop_token stop = {}) const;

    /// The same for several trees in parallel; results in the order of `paths`.
    [[nodiscard]] std::vector<std::optional<DirNode>> nodes(std::span<const std::string> paths,
                                                            std::stop_token stop = {}) const;
};

}  // namespace ulvak
