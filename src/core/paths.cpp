#include "core/paths.h"

#include <algorithm>
#include <array>
#include <ranges>
#include <utility>

#include "platform/files.h"
#include "platform/user_folders.h"
#include "platform/volume.h"

namespace ulvak {
namespace {

constexpr std::string_view privatePrefix = "/private";

/// Normalises a folder's path: "/home//ayse/./" becomes "/home/ayse". Only the disk can resolve ".." after a
/// link; a disk that may never answer is not asked, except about `home`.
std::string tidied(const std::string& path, const std::string& home) {
    if ((path + "/").contains("/../")) {
        const platform::Reach reach({&home, 1}, platform::Reach::Others::prompt);
        const platform::Reach::Target place = reach.follow(path);
        return place.isThere ? place.path : path;
    }
    std::string result;
    for (const auto piece : path | std::views::split('/')) {
        const std::string_view name(piece.begin(), piece.end());
        if (!name.empty() && name != ".")
            result.append("/").append(name);
    }
    return result.empty() ? "/" : result;
}

std::string besideTemp(const std::string& temp) {
    return Paths::join(Paths::parent(temp), "C");
}

/// Whether a guessed cache looks like one. A missing folder is harmless; a volume that may never answer is
/// not touched.
bool isGoodGuess(const UserFolders& folders) {
    if (Paths::lastComponent(folders.temp) != "T")
        return false;
    // Do not hang on a dead server just to learn what it holds.
    const platform::Reach reach({&folders.home, 1}, platform::Reach::Others::prompt);
    return std::ranges::all_of(std::array{folders.temp, folders.cache}, [&](const std::string& folder) {
        return reach.includes(reach.follow(folder).path) && platform::isOwnFolder(folder).value_or(true);
    });
}

}  // namespace

UserFolders UserFolders::ofCurrentUser() {
    UserFolders folders;
    const std::string home = platform::homeDirectory();
    folders.home = tidied(home, home);
    folders.temp = tidied(platform::temporaryDirectory(), home);
    if (const auto cache = platform::cacheDirectory())
        folders.cache = tidied(*cache, home);
    else
        folders.cache = besideTemp(folders.temp);
    folders.trash = tidied(platform::trashDirectory(folders.home), home);
    const platform::MovedFolders moved = platform::movedFolders();
    const auto trusted = [&](const std::string& path) {
        std::string folder = path.empty() ? path : tidied(path, home);
        // A folder around the home folder holds more than applications' files.
        return folder.empty() || Paths::isWithin(folders.home, folder) ? std::string() : folder;
    };
    folders.userCache = trusted(moved.cache);
    folders.userConfig = trusted(moved.config);
    folders.userData = trusted(moved.data);
    folders.userState = trusted(moved.state);
    return folders;
}

namespace Paths {

std::string expand(std::string_view text, const UserFolders& folders) {
    const std::array<std::pair<std::string_view, const std::string*>, 3> tokens = {
        {{"~", &folders.home}, {"$T", &folders.temp}, {"$C", &folders.cache}}};
    for (const auto& [token, folder] : tokens) {
        if (text == token)
            return *folder;
        if (text.starts_with(token) && text.substr(token.size()).starts_with('/'))
            return Paths::join(*folder, text.substr(token.size() + 1));
    }
    return std::string(text);
}

bool hasOwnCache(const UserFolders& folders) {
    const bool isGuessed = folders.cache == besideTemp(folders.temp) && !platform::cacheDirectory();
    if (isGuessed && !isGoodGuess(folders))
        return false;
    // The folder itself may be missing or be a link: both its location and its target count.
    const auto real = [](const std::string& path) { return platform::resolvedPath(path).value_or(path); };
    const std::string home = real(folders.home);
    const std::string parent = real(std::string(Paths::parent(folders.cache)));
    return parent != "/" && !isWithin(folders.cache, folders.home) && !isWithin(real(folders.cache), home) &&
           !isWithin(parent, home);
}

std::string display(std::string_view path, const UserFolders& folders) {
    path = withoutPrivate(path);
    // Deliberately a plain text prefix, unlike the home folder's: a sibling of the temporary folder whose
    // name begins the same way is shown as belonging to it.
    if (path.starts_with(folders.temp))
        return std::string("Geçici klasör").append(path.substr(folders.temp.size()));
    if (path.starts_with(folders.cache))
        return std::string("Sistem önbelleği").append(path.substr(folders.cache.size()));
    if (path == folders.home)
        return "~";
    if (path.starts_with(folders.home) && path.substr(folders.home.size()).starts_with('/'))
        return std::string("~").append(path.substr(folders.home.size()));
    return std::string(path);
}

std::string_view withoutPrivate(std::string_view path) {
    return path.starts_with("/private/var/folders/") ? path.substr(privatePrefix.size()) : path;
}

std::string join(std::string_view folder, std::string_view name) {
    std::string path(folder);
    if (!path.ends_with('/'))
        path += '/';
    path += name;
    return path;
}

std::string_view parent(std::string_view path) {
    const std::size_t slash = path.rfind('/');
    return path.substr(0, slash == 0 || slash == std::string_view::npos ? 1 : slash);
}

std::string_view lastComponent(std::string_view path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string_view::npos || path == "/" ? path : path.substr(slash + 1);
}

std::string_view extension(std::string_view name) {
    const std::size_t dot = name.rfind('.');
    return dot == std::string_view::npos || dot == 0 ? std::string_view() : name.substr(dot + 1);
}

bool isWithin(std::string_view path, std::string_view folder) {
    if (!path.starts_with(folder))
        return false;
    return path.size() == folder.size() || folder.ends_with('/') || path[folder.size()] == '/';
}

}  // namespace Paths
}  // namespace ulvak
