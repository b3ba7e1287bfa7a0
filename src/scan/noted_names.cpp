#include "scan/noted_names.h"

#include <algorithm>
#include <utility>

#include "core/glob.h"

namespace ulvak {

namespace {

bool isSimple(std::string_view pattern) {
    return std::ranges::count(pattern, '*') == 1 && pattern.find_first_of("?[\\") == std::string_view::npos;
}

}  // namespace

NotedNames::NotedNames(std::vector<std::string> names)
    : names_(std::move(names)), isWhole_(names_.size() <= maxNames) {
    names_.resize(std::min(names_.size(), maxNames));
    for (std::size_t i = 0; i < names_.size(); ++i) {
        const std::string& name = names_[i];
        const auto id = static_cast<Id>(i);
        const std::size_t star = std::min(name.find('*'), name.size());
        const Pattern pattern{.id = id,
                              .begin = name.substr(0, star),
                              .end = name.substr(std::min(star + 1, name.size())),
                              .isSimple = isSimple(name)};
        if (name.empty() || !ids_.emplace(name, id).second)
            continue;
        if (!name.contains('*'))
            mayBeLiteral_.set(key(name));
        else if (name.front() != '*')
            beginning_[static_cast<unsigned char>(name.front())].push_back(pattern);
        else if (name.back() != '*')
            ending_[static_cast<unsigned char>(name.back())].push_back(pattern);
        else {
            ids_.erase(name);
            isWhole_ = false;
        }
    }
}

std::optional<NotedNames::Id> NotedNames::find(std::string_view name) const {
    const auto found = ids_.find(name);
    return found == ids_.end() ? std::nullopt : std::optional(found->second);
}

void NotedNames::noteLiteral(std::string_view name, Set& seen) const {
    if (const auto id = find(name); id && !name.contains('*'))
        seen.set(*id);
}

void NotedNames::notePatterns(const Patterns& patterns, std::string_view name, Set& seen) const {
    const auto matches = [&](const Pattern& pattern) {
        if (!pattern.isSimple)
            return globMatches(names_[pattern.id], name);
        return name.size() >= pattern.begin.size() + pattern.end.size() && name.ends_with(pattern.end) &&
               name.starts_with(pattern.begin);
    };
    for (const Pattern& pattern : patterns) {
        if (!seen[pattern.id] && matches(pattern))
            seen.set(pattern.id);
    }
}

std::vector<NotedNames::Id> NotedNames::ids(const Set& seen) {
    std::vector<Id> ids;
    if (seen.none())
        return ids;
    for (std::size_t i = 0; i < maxNames; ++i) {
        if (seen[i])
            ids.push_back(static_cast<Id>(i));
    }
    return ids;
}

}  // namespace ulvak
