#pragma once

#include <chrono>
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
    explicit TemporaryUse(const UserFolders& folders,
                          std::chrono::system_clock::time_point now = std::chrono::system_clock::now())
        : temp_(folders.temp), now_(now) {}

    /// Turkish, beginning with a blank: what speaks against deleting an item that lies directly in the
    /// temporary folder. Empty if nothing does, or if the folder is this user's own.
    [[nodiscard]] std::string objection(const std::string& path, const DirNode& item);

private:
    [[nodiscard]] bool isOpen(const std::string& path);
    [[nodiscard]] int quietDays();
    /// The temporary folder without links: this is what the system calls open files.
    [[nodiscard]] const std::string& realTemp();

    std::string temp_;
    std::chrono::system_clock::time_point now_;
    std::optional<std::string> realTemp_;
    std::optional<bool> isShared_;
    std::optional<std::vector<std::string>> open_;  ///< what processes use there; read when first needed
};

}  // namespace ulvak
