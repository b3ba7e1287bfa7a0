#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/file_time.h"

namespace ulvak {

struct DirNode;

/// A vector of nodes that takes itself apart without recursion: trees can be deeper than a stack.
class DirNodes : public std::vector<DirNode> {
public:
    DirNodes() noexcept;
    explicit DirNodes(std::vector<DirNode> nodes) noexcept;
    DirNodes(DirNodes&& other) noexcept;
    DirNodes& operator=(DirNodes&& other) noexcept;
    DirNodes(const DirNodes&) = delete;
    DirNodes& operator=(const DirNodes&) = delete;
    ~DirNodes();
};

/// A folder or file of a scanned tree. A pruned view: `children` holds only what is big enough to
/// matter, while `size` and `fileCount` count everything below. Owns its children; no parent links.
struct DirNode {
    /// Where it is, in bytes: at a root the whole path, below it the name in the folder that holds it. A
    /// whole path for each would make memory grow with the square of the depth.
    std::string url;
    bool isDirectory = false;  ///< packages too
    bool isPackage = false;    ///< a folder that people see as one item
    std::int64_t size = 0;     ///< bytes held on disk by all files of the subtree
    std::int64_t fileCount = 0;
    std::optional<FileTime> modified;  ///< the latest date of its entry, its files and its sub-folders
    DirNodes children;                 ///< largest first
};

}  // namespace ulvak
