#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "classify/pattern_tree.h"
#include "platform/directory.h"

namespace ulvak {

/// What lies directly inside a folder, read when it is first asked for. Follows no link and enters no other
/// volume below the folder. A folder that cannot be read holds nothing. Not thread-safe.
class FolderEvidence {
public:
    explicit FolderEvidence(std::string path) : path_(std::move(path)) {}

    /// One of these exists: a file name, or a pattern if it contains "*". Case-sensitive.
    [[nodiscard]] bool holdsOneOf(std::span<const std::string> entries);

    [[nodiscard]] const std::string& path() const { return path_; }

    /// A file, a folder or a link.
    [[nodiscard]] bool hasEntry(const std::string& name);
    /// The same, for callers that ask for several.
    [[nodiscard]] bool lists(const std::string& name);
    [[nodiscard]] bool hasFolder(const std::string& name);
    /// `relativePath` is one or more names joined with "/".
    [[nodiscard]] bool hasFile(const std::string& relativePath);

    /// Begins with the signature that tells backup programs that the folder is a cache.
    [[nodiscard]] bool hasCacheTag();

    /// Whether something is there that the patterns below `node` name to keep.
    [[nodiscard]] bool holdsKept(const PatternTree::Node& node);

private:
    [[nodiscard]] const platform::Directory* folder();
    [[nodiscard]] const std::vector<std::string>& names();

    std::string path_;
    std::optional<platform::Directory> folder_;
    std::optional<std::vector<std::string>> names_;
};

}  // namespace ulvak
