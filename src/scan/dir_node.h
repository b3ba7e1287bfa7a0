#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/file_time.h"
#include "scan/linked_file.h"
#include "scan/noted_names.h"

namespace ulvak {

struct DirNode;

/// A vector of nodes whose destructor neither recurses nor allocates: trees can be deeper than the stack, and
/// are freed when memory has run out.
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
    DirNodes* around_ = nullptr;  ///< during destruction: the vector that contains these nodes' parent
};

/// A file or folder of a scanned tree. A pruned view: `children` holds only what is big enough to matter,
/// while `size` and `fileCount` cover the whole subtree. Owns its children; no parent links.
struct DirNode {
    /// Bytes: the full path at a root, the name within its parent below that. Full paths everywhere would
    /// make memory grow with the square of the depth.
    std::string url;
    bool isDirectory = false;    ///< packages too
    bool isPackage = false;      ///< a folder that is shown as a single item
    std::int64_t size = 0;       ///< bytes allocated on disk in the subtree, each file counted once
    std::int64_t fileCount = 0;  ///< counts every hard link
    /// Bytes of `size` that are not freed when the subtree goes: the files have hard links outside it.
    std::int64_t heldElsewhere = 0;
    std::optional<FileTime> modified;  ///< the latest date of the entry itself, its files and sub-folders
    DirNodes children;                 ///< largest first
    std::optional<LinkedFile> linked;  ///< only for a file with several hard links
    /// Of the names that the walk took note of, those directly inside, whatever their size and kind;
    /// ascending.
    std::vector<NotedNames::Id> noted;
};

}  // namespace ulvak
