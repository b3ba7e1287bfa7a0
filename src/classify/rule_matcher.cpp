#include "classify/rule_matcher.h"

#include <algorithm>
#include <array>
#include <utility>

#include "core/glob.h"
#include "platform/ascii.h"
#include "platform/files.h"

namespace ulvak {
namespace {

constexpr GlobOptions pathOptions{.pathname = true, .ignoreCase = true};
constexpr GlobOptions nameOptions{.ignoreCase = true};

/// Patterns are case-insensitive, and so are the folders they begin with.
bool isWithinFolded(std::string_view path, std::string_view folder) {
    constexpr auto folded = [](char c) { return platform::lowerAscii(c); };
    if (path.size() < folder.size() ||
        !std::ranges::equal(path.substr(0, folder.size()), folder, {}, folded, folded))
        return false;
    return path.size() == folder.size() || folder.ends_with('/') || path[folder.size()] == '/';
}

}  // namespace

RuleMatcher::RuleMatcher(std::span<const Rule> rules, UserFolders folders)
    : folders_(std::move(folders)), hasOwnCache_(Paths::hasOwnCache(folders_)) {
    prepared_.reserve(rules.size());
    for (const Rule& rule : rules) {
        if (const auto* path = std::get_if<Rule::Path>(&rule.match))
            prepared_.push_back({.rule = &rule, .pattern = preparedPath(path->pattern)});
        else
            prepared_.push_back({.rule = &rule, .pattern = preparedName(std::get<Rule::Name>(rule.match))});
    }
}

RuleMatcher::PathPattern RuleMatcher::preparedPath(std::string_view pattern) const {
    constexpr std::array<std::pair<std::string_view, Area>, 3> tokens = {
        {{"~", Area::home}, {"$T", Area::temp}, {"$C", Area::cache}}};
    for (const auto& [token, area] : tokens) {
        // The folder itself is compared literally: a home folder named "[x]" is not a pattern.
        if (pattern == token || (pattern.starts_with(token) && pattern.substr(token.size()).starts_with('/')))
            return {.area = area, .glob = std::string(pattern.substr(token.size()))};
    }
    return {.area = Area::none, .glob = std::string(pattern)};
}

RuleMatcher::NamePattern RuleMatcher::preparedName(const Rule::Name& name) const {
    NamePattern prepared{.name = &name, .outside = {}};
    for (const std::string& entry : name.outside)
        prepared.outside.push_back(Paths::expand(entry, folders_));
    return prepared;
}

std::string_view RuleMatcher::folder(Area area) const {
    switch (area) {
        case Area::home:
            return folders_.home;
        case Area::temp:
            return folders_.temp;
        case Area::cache:
            return folders_.cache;
        case Area::none:
            break;
    }
    return {};
}

/// The innermost user folder that contains `path`; only its rules apply. Otherwise a home folder below the
/// temporary one would be a temporary file, and safe to delete. If two are the same folder, the home folder
/// wins.
RuleMatcher::Area RuleMatcher::areaOf(std::string_view path) const {
    Area innermost = Area::none;
    for (const Area area : {Area::home, Area::temp, Area::cache}) {
        if (area == Area::cache && !hasOwnCache_)
            continue;
        const bool isDeeper = innermost == Area::none || folder(area).size() > folder(innermost).size();
        if (isDeeper && isWithinFolded(path, folder(area)))
            innermost = area;
    }
    return innermost;
}

const Rule* RuleMatcher::match(std::string_view path, bool isDirectory, ScanContext context) const {
    path = Paths::withoutPrivate(path);
    const Area area = areaOf(path);
    for (const Prepared& prepared : prepared_) {
        if (const auto* pathPattern = std::get_if<PathPattern>(&prepared.pattern)) {
            if (matchesPath(*pathPattern, path, area))
                return prepared.rule;
            continue;
        }
        const bool applies = isDirectory && (context != ScanContext::personal || prepared.rule->inPersonal);
        if (applies && matchesName(std::get<NamePattern>(prepared.pattern), path))
            return prepared.rule;
    }
    return nullptr;
}

bool RuleMatcher::matchesPath(const PathPattern& pattern, std::string_view path, Area area) const {
    if (pattern.area == Area::none)
        return globMatches(pattern.glob, path, pathOptions);
    if (pattern.area != area)
        return false;
    const std::string_view base = folder(area);
    std::string_view rest = path.substr(base.size());
    if (base == "/" && path != "/")
        rest = path;  // "/" is the only folder whose path already ends in the "/" that patterns continue with
    return globMatches(pattern.glob, rest, pathOptions);
}

bool RuleMatcher::matchesName(const NamePattern& pattern, std::string_view path) {
    if (!globMatches(pattern.name->pattern, Paths::lastComponent(path), nameOptions))
        return false;
    if (std::ranges::any_of(pattern.outside,
                            [&](const std::string& prefix) { return path.starts_with(prefix); }))
        return false;
    return pattern.name->siblings.empty() || hasSibling(*pattern.name, path);
}

bool RuleMatcher::hasSibling(const Rule::Name& name, std::string_view path) {
    const std::string parent(Paths::parent(path));
    return std::ranges::any_of(name.siblings, [&](const std::string& sibling) {
        if (!sibling.contains('*'))
            return platform::existsIn(parent, sibling);
        const auto names = platform::listNames(parent);
        return std::ranges::any_of(names,
                                   [&](const std::string& entry) { return globMatches(sibling, entry); });
    });
}

}  // namespace ulvak
