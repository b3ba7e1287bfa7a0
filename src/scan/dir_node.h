#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/file_time.h"
#include "scan/linked_file.h"

namespace ulvak {

struct DirNode;

/// A vector of nodes that takes itself apart without recursion and without memory: trees can be deeper than a
/// stack, and are given up when there is no memory left.
class DirNodes : public std::vector<DirNode> {
public:
    DirNodes() noexcept;
    explicit DirNodes(std::vector<DirNode> nodes) noexcept;
    DirNodes(DirNodes&& other) noexcept;
    DirNodes& operator=(DirNodes&& other) noexcept;
    DirNodes(const DirNodes&) = delete;
    DirNodes& operator=(const DirNodes&) = delete;
    ~DirNodes();

private:
    DirNodes* around_ =
        nullptr;  ///< while being taken apart: the vector with the node whose children these are
};

/// A folder or file of a scanned tree. A pruned view: `children` holds only what is big enough to
/// matter, while `size` and `fileCount` count everything below. Owns its children; no parent links.
struct DirNode {
    /// Where it is, in bytes: at a root the whole path, below it the name in the folder that holds it. A
    /// whole path for each would make memory grow with the square of the depth.
    std::string url;
    bool isDirectory = false;    ///< packages too
    bool isPackage = false;      ///< a folder that people see as one item
    std::int64_t size = 0;       ///< bytes held on disk by all files of the subtree, each once
    std::int64_t fileCount = 0;  ///< every name of a file counts
    /// Bytes of `size` that stay when the subtree goes: their files have names outside it too.
    std::int64_t heldElsewhere = 0;
    std::optional<FileTime> modified;  ///< the latest date of its entry, its files and its sub-folders
    DirNodes children;                 ///< largest first
    std::optional<LinkedFile> linked;  ///< of a file that has several names
};

}  // namespace ulvak
