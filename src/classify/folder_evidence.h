#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "classify/pattern_tree.h"
#include "platform/directory.h"
#include "scan/noted_names.h"

namespace ulvak {

/// What a walk noted of one folder.
struct NotedEntries {
    const NotedNames* names = nullptr;  ///< null if nothing was noted
    std::span<const NotedNames::Id> seen;
};

/// What lies directly inside a folder: as the walk noted it, or else read when it is first asked for. Follows
/// no link and enters no other volume below the folder. A folder that cannot be read holds nothing. Not
/// thread-safe.
class FolderEvidence {
public:
    /// Says that a folder is a cache; must begin with a signature.
    static constexpr std::string_view cacheTag = "CACHEDIR.TAG";

    explicit FolderEvidence(std::string path, NotedEntries noted = {})
        : path_(std::move(path)), noted_(noted) {}

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

    /// Whether something is there that the patterns below `node` name to keep. Of many entries only some are
    /// looked at, and `known` ones for sure.
    [[nodiscard]] bool holdsKept(const PatternTree::Node& node, std::span<const std::string> known = {});

    /// Whether the walk saw nothing there of what it looked for, which is all that rules ask for.
    [[nodiscard]] bool isKnownToLackAll() const {
        return noted_.names != nullptr && noted_.names->isWhole() && noted_.seen.empty();
    }

    /// Whether the walk saw a name or pattern there; nullopt if that is not known.
    [[nodiscard]] std::optional<bool> wasSeen(std::string_view entry) const;

private:
    [[nodiscard]] const platform::Directory* folder();
    [[nodiscard]] const std::vector<std::string>& names();

    std::string path_;
    NotedEntries noted_;
    std::optional<platform::Directory> folder_;
    std::optional<std::vector<std::string>> names_;
};

}  // namespace ulvak
