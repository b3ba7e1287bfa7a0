#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

#include "classify/rule.h"
#include "classify/simulator_info.h"
#include "core/finding.h"
#include "core/paths.h"
#include "scan/dir_node.h"
#include "scan/linked_file.h"

namespace ulvak {

/// Turns the trees of one scan into findings. Reads only what it is given, apart from the looks at the
/// disk that rules with siblings need; cannot fail. Safe from several threads.
struct Analyzer {
    std::vector<Rule> rules;  ///< in the order in which they are tried
    SimulatorMap simulators;
    std::int64_t unitMinimum = 0;     ///< bytes; the smallest node that a unit rule reports
    std::int64_t defaultMinimum = 0;  ///< bytes; the smallest node that is reported without one

    /// The findings, largest first, equal sizes in the order in which they were found: root by root,
    /// depth first. `innerRoots` are paths inside one tree at which another scan root begins; what holds
    /// one is looked into and not reported as a whole, unless the program never cleans it anyway: cleaning
    /// would take the other root along.
    [[nodiscard]] std::vector<Finding> run(std::span<const DirNode> roots, const UserFolders& folders,
                                           std::vector<std::string> innerRoots = {}) const;
};

/// The files among findings that have several names, by the findings' ids.
using LinkedFindings = std::unordered_map<std::string, LinkedFile>;

/// Merges the findings that share a group key, each group at the place of its first member. Of members that
/// are names of one file the bytes count once, and are held elsewhere only if it has further names.
[[nodiscard]] std::vector<Finding> mergeGroups(std::vector<Finding> findings,
                                               const LinkedFindings& linked = {});

}  // namespace ulvak
