#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/paths.h"
#include "scan/dir_node.h"

namespace ulvak {

/// Whether items in a temporary folder that everybody shares are still in use. Not thread-safe.
class TemporaryUse {
public:
    explicit TemporaryUse(const UserFolders& folders) : temp_(folders.temp) {}

    /// Turkish, beginning with a blank: what speaks against deleting an item that lies directly in the
    /// temporary folder. Empty if nothing does, or if the folder is this user's own.
    [[nodiscard]] std::string objection(const std::string& path, const DirNode& item);

private:
    [[nodiscard]] bool isOpen(const std::string& path);
    [[nodiscard]] int quietDays() const;

    std::string temp_;
    std::optional<bool> isShared_;
    std::optional<std::vector<std::string>> open_;  ///< what processes use there; read when first needed
};

}  // namespace ulvak
