#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "core/finding.h"

namespace ulvak {

/// A scan's findings, before they are shared.
using MutableFindings = std::vector<std::shared_ptr<Finding>>;

/// What was cleaned while a scan ran. There is no telling whether the scan visited each path before or after.
/// A plain value.
class CleanedPaths {
public:
    /// Records an absolute path of which nothing was left.
    void addGone(std::string path) { paths_[std::move(path)] = true; }
    /// Records a path of which something may be left.
    void addTouched(std::string path) { paths_.try_emplace(std::move(path), false); }
    [[nodiscard]] std::size_t size() const { return paths_.size(); }
    /// Whether a finding is, contains or lies in something that was cleaned; compares path text only.
    [[nodiscard]] bool touches(const Finding& finding) const;

    struct Rest {
        MutableFindings findings;
        /// False if a finding contains or lies in something that was cleaned partly or has reappeared: only
        /// another scan can tell its size.
        bool isKnown = true;
    };

    /// The scan's findings without those that are gone. Blocks on the disk: checks whether what was cleaned
    /// has reappeared.
    [[nodiscard]] Rest rest(MutableFindings findings) const;

private:
    std::map<std::string, bool, std::less<>> paths_;  ///< value: whether it was gone
};

}  // namespace ulvak
