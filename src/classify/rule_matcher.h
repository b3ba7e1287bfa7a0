#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "classify/rule.h"
#include "core/paths.h"

namespace ulvak {

/// Finds the rule for a scanned node. Prepares the patterns once; matching then keeps no state, and may be
/// done from several threads. Looks at the disk only for rules with siblings, and only after the name has
/// matched; what cannot be looked at counts as not there.
class RuleMatcher {
public:
    /// `rules` must outlive the matcher.
    explicit RuleMatcher(std::span<const Rule> rules, UserFolders folders);

    /// The first rule that matches the item at `path` (absolute, bytes), or nothing.
    [[nodiscard]] const Rule* match(std::string_view path, bool isDirectory, ScanContext context) const;

private:
    /// One of the user's folders that patterns may begin with.
    enum class Area : std::uint8_t { none, home, temp, cache };

    struct PathPattern {
        Area area = Area::none;
        std::string glob;  ///< from the area's folder on; the whole pattern without an area
    };
    struct NamePattern {
        const Rule::Name* name = nullptr;
        std::vector<std::string> outside;  ///< expanded
    };
    struct Prepared {
        const Rule* rule = nullptr;
        std::variant<PathPattern, NamePattern> pattern;
    };

    [[nodiscard]] PathPattern preparedPath(std::string_view pattern) const;
    [[nodiscard]] NamePattern preparedName(const Rule::Name& name) const;
    [[nodiscard]] std::string_view folder(Area area) const;
    [[nodiscard]] Area areaOf(std::string_view path) const;
    [[nodiscard]] bool matchesPath(const PathPattern& pattern, std::string_view path, Area area) const;
    [[nodiscard]] static bool matchesName(const NamePattern& pattern, std::string_view path);
    [[nodiscard]] static bool hasSibling(const Rule::Name& name, std::string_view path);

    UserFolders folders_;
    bool hasOwnCache_ = false;
    std::vector<Prepared> prepared_;
};

}  // namespace ulvak
