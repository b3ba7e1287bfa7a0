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

/// Finds the rule for a scanned node. Patterns are prepared once; matching is then stateless and thread-safe.
/// Reads the disk only for rules with siblings, and only after the name has matched; a sibling that cannot be
/// checked counts as missing.
class RuleMatcher {
public:
    /// `rules` must outlive the matcher.
    explicit RuleMatcher(std::span<const Rule> rules, UserFolders folders);

    /// The first rule that matches the item at `path` (absolute, bytes); null if none does.
    [[nodiscard]] const Rule* match(std::string_view path, bool isDirectory, ScanContext context) const;

private:
    /// The user folders that a pattern may begin with.
    enum class Area : std::uint8_t { none, home, temp, cache };

    struct PathPattern {
        Area area = Area::none;
        std::string glob;  ///< relative to the area's folder; the whole pattern if there is no area
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
