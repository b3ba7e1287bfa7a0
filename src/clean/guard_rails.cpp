#include "clean/guard_rails.h"

#include <algorithm>
#include <ranges>
#include <utility>
#include <vector>

namespace ulvak {
namespace {

constexpr std::size_t cachePrefix = 2;  ///< index in `allowed_`

}  // namespace

std::string_view CleanPlace::folder() const {
    const std::size_t slash = relative.rfind('/');
    return std::string_view(relative).substr(0, slash == std::string::npos ? 0 : slash);
}

GuardRails::GuardRails(UserFolders folders, bool hasCache)
    : folders_(std::move(folders)),
      protected_{"/",
                 "/System",
                 "/Library",
                 "/Applications",
                 "/Users",
                 "/usr",
                 "/bin",
                 "/sbin",
                 "/opt",
                 "/private",
                 "/private/var",
                 "/opt/homebrew",
                 "/Users/Shared",
                 folders_.home,
                 folders_.home + "/Library",
                 folders_.home + "/Desktop",
                 folders_.home + "/Documents",
                 folders_.home + "/Downloads",
                 folders_.home + "/Pictures",
                 folders_.home + "/Movies",
                 folders_.home + "/Music",
                 folders_.home + "/Public",
                 folders_.home + "/Library/Application Support",
                 folders_.home + "/Library/Caches",
                 folders_.home + "/Library/Containers",
                 folders_.home + "/Library/Group Containers",
                 folders_.home + "/Library/Developer",
                 folders_.home + "/Library/Keychains",
                 folders_.home + "/Library/Preferences",
                 folders_.temp,
                 folders_.cache},
      forbidden_{"/System/", "/private/var/db/", "/private/var/vm/", "/usr/",
                 folders_.home + "/Library/Keychains/"},
      allowed_{folders_.home + "/", folders_.temp + "/", folders_.cache + "/", "/Applications/",
               "/Users/Shared/"},
      hasCache_(hasCache) {}

std::optional<std::string> GuardRails::standardized(std::string_view path) {
    if (!path.starts_with('/') || path.find('\0') != std::string_view::npos)
        return std::nullopt;
    std::vector<std::string_view> names;
    for (const auto piece : path | std::views::split('/')) {
        const std::string_view name(piece.begin(), piece.end());
        if (name == "..") {
            if (!names.empty())
                names.pop_back();
        } else if (!name.empty() && name != ".") {
            names.push_back(name);
        }
    }
    std::string result;
    for (const std::string_view name : names)
        result.append("/").append(name);
    return result.empty() ? "/" : result;
}

bool GuardRails::isAllowed(std::string_view path) const {
    return place(path).has_value();
}

std::optional<CleanPlace> GuardRails::place(std::string_view path) const {
    const auto standard = standardized(path);
    if (!standard)
        return std::nullopt;
    const std::string_view item = Paths::withoutPrivate(*standard);
    if (protected_.contains(item) || isForbidden(item))
        return std::nullopt;
    // Of nested folders, the innermost: nothing above it matters.
    const std::string* innermost = nullptr;
    for (const std::string& prefix : allowed_) {
        if (&prefix == &allowed_[cachePrefix] && !hasCache_)
            continue;
        if (item.starts_with(prefix) && (innermost == nullptr || prefix.size() > innermost->size()))
            innermost = &prefix;
    }
    if (innermost == nullptr)
        return std::nullopt;
    return CleanPlace{.anchor = innermost->substr(0, innermost->size() - 1),
                      .relative = std::string(item.substr(innermost->size()))};
}

bool GuardRails::isForbidden(std::string_view path) const {
    return std::ranges::any_of(forbidden_,
                               [&](const std::string& prefix) { return path.starts_with(prefix); });
}

}  // namespace ulvak
