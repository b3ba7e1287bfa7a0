#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "platform/directory.h"

namespace ulvak {

/// The places below one root that a walk skips, as a tree of names. For the vast majority of folders, which
/// have no part in it, the cost is one null check. Move-only.
class SkipTree {
public:
    /// `relativePath` is names joined with "/"; empty for the root itself (not allowed for a volume).
    void addExcluded(std::string_view relativePath) { nodeAt(relativePath).isExcluded_ = true; }
    void addVolume(std::string_view relativePath);

    /// The subtree for a sub-folder; null if there is none.
    [[nodiscard]] const SkipTree* below(std::string_view name) const;
    /// Folders that are never entered.
    [[nodiscard]] bool isExcluded() const { return isExcluded_; }
    /// Names in this folder that are mount points. They must not even be looked at: a stat can hang on a dead
    /// server.
    [[nodiscard]] const platform::NameSet& volumes() const { return volumes_; }
    [[nodiscard]] bool isEmpty() const { return !isExcluded_ && volumes_.empty() && below_.empty(); }

private:
    SkipTree& nodeAt(std::string_view relativePath);

    bool isExcluded_ = false;
    platform::NameSet volumes_;
    std::map<std::string, std::unique_ptr<SkipTree>, std::less<>> below_;
};

}  // namespace ulvak
