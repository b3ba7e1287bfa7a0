#pragma once

#include <array>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "core/paths.h"

namespace ulvak {

/// Where an item lies: below one of the folders in which something may be removed at all.
struct CleanPlace {
    std::string anchor;  ///< that folder, the innermost of those that hold the item; without a "/" at the end
    std::string relative;  ///< from there to the item: names joined with "/"; not empty

    [[nodiscard]] std::string path() const { return anchor + "/" + relative; }
    [[nodiscard]] std::string_view name() const { return Paths::lastComponent(relative); }
    /// The folder that holds the item, from the anchor on; empty when the anchor does.
    [[nodiscard]] std::string_view folder() const;

    friend bool operator==(const CleanPlace&, const CleanPlace&) = default;
};

/// What may be removed, judged by the text of a path alone. Immutable; safe from any thread.
class GuardRails {
public:
    /// Without `hasCache` the cache folder's place is one like any other: see `Paths::hasOwnCache`.
    explicit GuardRails(UserFolders folders, bool hasCache = true);

    [[nodiscard]] const UserFolders& folders() const { return folders_; }

    /// Whether the item at an absolute path may be removed. Links are not resolved on purpose: the path that
    /// was shown is the path that is judged.
    [[nodiscard]] bool isAllowed(std::string_view path) const;

    /// Where the item is that this path names, without ".", ".." and needless "/"; only for a path that
    /// `isAllowed`. What is judged and what is removed are so the same.
    [[nodiscard]] std::optional<CleanPlace> place(std::string_view path) const;

    /// Never removed themselves; what lies in them is judged by the prefixes.
    [[nodiscard]] const std::set<std::string, std::less<>>& protectedPaths() const { return protected_; }
    /// Nothing below is removed. All prefixes end in "/".
    [[nodiscard]] const std::array<std::string, 5>& forbiddenPrefixes() const { return forbidden_; }
    /// Nothing is removed anywhere else; below the cache's only where there is one.
    [[nodiscard]] const std::array<std::string, 5>& allowedPrefixes() const { return allowed_; }

    /// An absolute path without ".", "..", doubled "/" and a "/" at the end, as text: "/a/../b" is "/b" even
    /// where "/a" is a link. Absent for a path that is relative or holds a zero byte.
    [[nodiscard]] static std::optional<std::string> standardized(std::string_view path);

private:
    /// Whether nothing is removed there, whatever else allows it. `path` is standardized.
    [[nodiscard]] bool isForbidden(std::string_view path) const;

    UserFolders folders_;
    std::set<std::string, std::less<>> protected_;
    std::array<std::string, 5> forbidden_;
    std::array<std::string, 5> allowed_;
    bool hasCache_;
};

}  // namespace ulvak
