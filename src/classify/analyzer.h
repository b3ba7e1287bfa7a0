#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "classify/rule.h"
#include "classify/simulator_info.h"
#include "core/finding.h"
#include "core/paths.h"
#include "scan/dir_node.h"
#include "scan/linked_file.h"
#include "scan/noted_names.h"

namespace ulvak {

/// Turns the trees of one scan into findings. Cannot fail. Reads only its input, except for the few disk
/// lookups of rules with evidence, and of what speaks against a finding that is easily deleted. Thread-safe.
struct Analyzer {
    std::vector<Rule> rules;  ///< in matching order
    SimulatorMap simulators;
    std::int64_t unitMinimum = 0;     ///< bytes; the smallest node that a unit rule reports
    std::int64_t defaultMinimum = 0;  ///< bytes; the smallest node reported without a rule
    /// The name of the application with this id; empty if it is not known. Null knows none.
    std::function<std::string(std::string_view id)> applicationName{};
    /// The user's Trashes: reported together, as one finding that is emptied.
    std::vector<std::string> trashes{};
    /// Paths of trees that are explained, but never cleaned.
    std::vector<std::string> untouched{};
    /// What the walk took note of in the nodes; null if it took none, so that evidence is read from the disk.
    const NotedNames* noted = nullptr;

    /// What a walk should take note of, for these rules.
    [[nodiscard]] static NotedNames evidence(std::span<const Rule> rules);

    /// The findings, largest first; equal sizes in discovery order (root by root, depth first). `innerRoots`
    /// are paths inside one tree where another scan root begins. A folder that contains one is looked into
    /// and never reported as a whole, since cleaning it would take the other root along, unless the program
    /// never cleans it anyway.
    [[nodiscard]] std::vector<Finding> run(std::span<const DirNode> roots, const UserFolders& folders,
                                           std::vector<std::string> innerRoots = {}) const;
};

/// The findings that are files with several hard links, by id.
using LinkedFindings = std::unordered_map<std::string, LinkedFile>;

/// Merges findings that share a group key; each group takes its first member's place. If several members are
/// hard links to one file, its bytes count once, and are held elsewhere only if it has further links.
[[nodiscard]] std::vector<Finding> mergeGroups(std::vector<Finding> findings,
                                               const LinkedFindings& linked = {});

}  // namespace ulvak
