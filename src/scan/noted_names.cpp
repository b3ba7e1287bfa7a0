#include "scan/noted_names.h"

#include <algorithm>
#include <utility>

#include "core/glob.h"

namespace ulvak {

NotedNames::NotedNames(std::vector<std::string> names)
    : names_(std::move(names)), isWhole_(names_.size() <= maxNames) {
    names_.resize(std::min(names_.size(), maxNames));
    for (std::size_t i = 0; i < names_.size(); ++i) {
        const std::string& name = names_[i];
        const auto id = static_cast<Id>(i);
        if (name.empty() || !ids_.emplace(name, id).second)
            continue;
        if (!name.contains('*'))
            mayBeLiteral_.set(key(name));
        else if (name.front() != '*')
            beginning_[static_cast<unsigned char>(name.front())].push_back(id);
        else if (name.back() != '*')
            ending_[static_cast<unsigned char>(name.back())].push_back(id);
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

void NotedNames::notePatterns(const Ids& patterns, std::string_view name, Set& seen) const {
    for (const Id id : patterns) {
        if (!seen[id] && globMatches(names_[id], name))
            seen.set(id);
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
