#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/paths.h"

/// Reference implementation of the guard rails, for tests and the fuzzer.
namespace ulvak::test {

/// The agreed tables, with placeholders for the user's folders.
inline constexpr std::array<std::string_view, 31> protectedTable = {
    "/",
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
    "HOME",
    "HOME/Library",
    "HOME/Desktop",
    "HOME/Documents",
    "HOME/Downloads",
    "HOME/Pictures",
    "HOME/Movies",
    "HOME/Music",
    "HOME/Public",
    "HOME/Library/Application Support",
    "HOME/Library/Caches",
    "HOME/Library/Containers",
    "HOME/Library/Group Containers",
    "HOME/Library/Developer",
    "HOME/Library/Keychains",
    "HOME/Library/Preferences",
    "TEMP",
    "CACHE",
};
inline constexpr std::array<std::string_view, 5> forbiddenTable = {
    "/System/", "/private/var/db/", "/private/var/vm/", "/usr/", "HOME/Library/Keychains/",
};
inline constexpr std::array<std::string_view, 5> allowedTable = {
    "HOME/", "TEMP/", "CACHE/", "/Applications/", "/Users/Shared/",
};

template <std::size_t Count>
std::vector<std::string> filledIn(const std::array<std::string_view, Count>& table, const UserFolders& user) {
    std::vector<std::string> rows;
    for (const std::string_view row : table) {
        std::string text(row);
        for (const auto& [placeholder, path] :
             {std::pair<std::string_view, const std::string&>{"HOME", user.home},
              {"TEMP", user.temp},
              {"CACHE", user.cache}}) {
            if (text.starts_with(placeholder))
                text.replace(0, placeholder.size(), path);
        }
        rows.push_back(std::move(text));
    }
    return rows;
}

/// The same rule in its simplest form: resolves the path name by name, then goes through the tables.
class PlainRule {
public:
    explicit PlainRule(const UserFolders& user)
        : protected_(filledIn(protectedTable, user)),
          forbidden_(filledIn(forbiddenTable, user)),
          allowed_(filledIn(allowedTable, user)) {}

    /// Empty if `path` is not absolute.
    static std::string tidy(const std::string& path) {
        if (path.empty() || path[0] != '/' || path.find('\0') != std::string::npos)
            return "";
        std::string result;
        std::string name;
        for (const char c : path + "/") {
            if (c != '/') {
                name += c;
                continue;
            }
            if (name == "..")
                result.erase(result.empty() ? 0 : result.rfind('/'));
            else if (!name.empty() && name != ".")
                result += "/" + name;
            name.clear();
        }
        if (result.empty())
            return "/";
        return result.starts_with("/private/var/folders/") ? result.substr(8) : result;
    }

    /// Whether a tidy path is protected or below a forbidden prefix.
    [[nodiscard]] bool mustStay(const std::string& item) const {
        return std::ranges::find(protected_, item) != protected_.end() || beginsWithOneOf(item, forbidden_);
    }

    [[nodiscard]] bool allows(const std::string& path) const {
        const std::string item = tidy(path);
        return !mustStay(item) && beginsWithOneOf(item, allowed_);
    }

private:
    static bool beginsWithOneOf(const std::string& item, const std::vector<std::string>& prefixes) {
        return std::ranges::any_of(prefixes,
                                   [&](const std::string& prefix) { return item.starts_with(prefix); });
    }

    std::vector<std::string> protected_;
    std::vector<std::string> forbidden_;
    std::vector<std::string> allowed_;
};

}  // namespace ulvak::test
