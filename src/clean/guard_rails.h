#pragma once

#include <array>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "core/paths.h"

namespace ulvak {

/// Where an item lies, relative to one of the folders in which removal is allowed at all.
struct CleanPlace {
    std::string anchor;    ///< the innermost such folder that contains the item; no trailing "/"
    std::string relative;  ///< from the anchor to the item, names joined with "/"; not empty

    [[nodiscard]] std::string path() const { return anchor + "/" + relative; }
    [[nodiscard]] std::string_view name() const { return Paths::lastComponent(relative); }
    /// The item's parent, relative to the anchor; empty if that is the anchor.
    [[nodiscard]] std::string_view folder() const;

    friend bool operator==(const CleanPlace&, const CleanPlace&) = default;
};

/// What may be removed, judged by the text of a path alone. Immutable; thread-safe.
class GuardRails {
public:
    /// Without `hasCache`, the cache folder gets no special treatment: see `Paths::hasOwnCache`.
    explicit GuardRails(UserFolders folders, bool hasCache = true);

    [[nodiscard]] const UserFolders& folders() const { return folders_; }

    /// Whether the item at an absolute path may be removed. Links are deliberately not resolved: the path
    /// that was shown is the path that is judged.
    [[nodiscard]] bool isAllowed(std::string_view path) const;

    /// The place that this path names, without ".", ".." and redundant "/"; nullopt unless `isAllowed`.
    /// Ensures that what is judged is also what is removed.
    [[nodiscard]] std::optional<CleanPlace> place(std::string_view path) const;

    /// Never removed themselves; what they contain is judged by the prefixes.
    [[nodiscard]] const std::set<std::string, std::less<>>& protectedPaths() const { return protected_; }
    /// Nothing below these is removed. All prefixes end in "/".
    [[nodiscard]] const std::array<std::string, 5>& forbiddenPrefixes() const { return forbidden_; }
    /// Nothing is removed anywhere else. The cache's prefix counts only with `hasCache`.
    [[nodiscard]] const std::array<std::string, 5>& allowedPrefixes() const { return allowed_; }

    /// Lexically normalises an absolute path, dropping ".", "..", doubled and trailing "/": "/a/../b" is "/b"
    /// even if "/a" is a link. Returns nullopt if the path is relative or contains a NUL byte.
    [[nodiscard]] static std::optional<std::string> standardized(std::string_view path);

private:
    /// Whether removal is forbidden there, whatever else allows it. `path` must be standardized.
    [[nodiscard]] bool isForbidden(std::string_view path) const;

    UserFolders folders_;
    std::set<std::string, std::less<>> protected_;
    std::array<std::string, 5> forbidden_;
    std::array<std::string, 5> allowed_;
    bool hasCache_;
};

}  // namespace ulvak
