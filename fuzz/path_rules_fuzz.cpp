#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "clean/guard_rails.h"

// Compares the guard rails with the same rules said more plainly. An input is a byte that chooses the user,
// and the path.

namespace {

using ulvak::GuardRails;
using ulvak::UserFolders;

const std::array<UserFolders, 4> users = {{
    {.home = "/Users/a", .temp = "/var/folders/a/T", .cache = "/var/folders/a/C"},
    {.home = "/home/a", .temp = "/tmp", .cache = "/C"},
    {.home = "/home/a", .temp = "/home/a/tmp", .cache = "/home/a/C"},
    {.home = "/", .temp = "/tmp", .cache = "/C"},
}};

/// Empty for what is no absolute path.
std::string tidy(const std::string& path) {
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

bool mustStay(const std::string& item, const UserFolders& user) {
    for (const char* kept : {"/", "/System", "/Library", "/Applications", "/Users", "/usr", "/bin", "/sbin",
                             "/opt", "/private", "/private/var", "/opt/homebrew", "/Users/Shared"}) {
        if (item == kept)
            return true;
    }
    for (const char* kept :
         {"", "/Library", "/Desktop", "/Documents", "/Downloads", "/Pictures", "/Movies", "/Music", "/Public",
          "/Library/Application Support", "/Library/Caches", "/Library/Containers",
          "/Library/Group Containers", "/Library/Developer", "/Library/Keychains", "/Library/Preferences"}) {
        if (item == user.home + kept)
            return true;
    }
    if (item == user.temp || item == user.cache)
        return true;
    for (const char* closed : {"/System/", "/private/var/db/", "/private/var/vm/", "/usr/"}) {
        if (item.starts_with(closed))
            return true;
    }
    return item.starts_with(user.home + "/Library/Keychains/");
}

bool mayGo(const std::string& item, const UserFolders& user) {
    return !item.empty() && !mustStay(item, user) &&
           (item.starts_with(user.home + "/") || item.starts_with(user.temp + "/") ||
            item.starts_with(user.cache + "/") || item.starts_with("/Applications/") ||
            item.starts_with("/Users/Shared/"));
}

void check(bool holds) {
    if (!holds)
        std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0)
        return 0;
    const UserFolders& user = users[data[0] % users.size()];
    const std::string path(reinterpret_cast<const char*>(data + 1), size - 1);
    const GuardRails rails(user);
    const std::string item = tidy(path);
    const auto place = rails.place(path);

    check(rails.isAllowed(path) == mayGo(item, user));
    check(place.has_value() == rails.isAllowed(path));
    if (!place)
        return 0;
    check(place->path() == item);
    check(!place->relative.empty() && !place->name().empty());
    check(place->name().find('/') == std::string_view::npos && place->name() != "." && place->name() != "..");
    check(rails.place(place->path()) == place);
    return 0;
}
