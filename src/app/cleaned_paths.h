#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "core/finding.h"

namespace ulvak {

/// Of a scan, before anybody shares them.
using MutableFindings = std::vector<std::shared_ptr<Finding>>;

/// What was cleaned while a scan ran. Whether the scan has looked at each place before or after that, nobody
/// knows. A plain value.
class CleanedPaths {
public:
    /// An absolute path of which nothing was left.
    void addGone(std::string path) { paths_[std::move(path)] = true; }
    /// One of which something may be left.
    void addTouched(std::string path) { paths_.try_emplace(std::move(path), false); }
    [[nodiscard]] std::size_t size() const { return paths_.size(); }
    /// Whether a finding holds or is something that was cleaned, by the text of the paths alone.
    [[nodiscard]] bool touches(const Finding& finding) const;

    struct Rest {
        MutableFindings findings;
        /// False when a finding holds or is something that was cleaned in part, or that is there again: only
        /// another scan can tell its size.
        bool isKnown = true;
    };

    /// The scan's findings without those that are gone. Blocks for as long as the disk takes: of what was
    /// cleaned it is looked whether it is there again.
    [[nodiscard]] Rest rest(MutableFindings findings) const;

private:
    std::map<std::string, bool, std::less<>> paths_;  ///< each with whether it was gone
};

}  // namespace ulvak
