#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "platform/directory.h"

namespace ulvak {

/// The places below one root that a walk stays out of, as a tree of names: a folder that has no part in it,
/// as nearly all, costs one look at a null pointer.
/// Move-only.
class SkipTree {
public:
    /// `relativePath` is names joined with "/"; empty for the root itself, but a volume has a name.
    void addExcluded(std::string_view relativePath) { nodeAt(relativePath).isExcluded_ = true; }
    void addVolume(std::string_view relativePath);

    /// The part of the tree below a sub-folder; null when there is none.
    [[nodiscard]] const SkipTree* below(std::string_view name) const;
    /// Folders that are never entered.
    [[nodiscard]] bool isExcluded() const { return isExcluded_; }
    /// Names in this folder at which volumes are mounted: not even to be looked at, for a look can wait for
    /// a server that is gone.
    [[nodiscard]] const platform::NameSet& volumes() const { return volumes_; }
    [[nodiscard]] bool isEmpty() const { return !isExcluded_ && volumes_.empty() && below_.empty(); }

private:
    SkipTree& nodeAt(std::string_view relativePath);

    bool isExcluded_ = false;
    platform::NameSet volumes_;
    std::map<std::string, std::unique_ptr<SkipTree>, std::less<>> below_;
};

}  // namespace ulvak
