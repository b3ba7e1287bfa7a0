#include "ai/folder_owner.h"

#include <algorithm>
#include <array>
#include <unordered_map>
#include <utility>

#include "ai/fact_text.h"
#include "core/text.h"
#include "platform/directory.h"
#include "platform/process.h"
#include "platform/volume.h"

namespace ulvak::FolderOwner {
namespace {

using platform::InstalledApplication;
using platform::InstalledApplications;

/// Characters; shorter names resemble too many.
constexpr std::size_t tellingLength = 3;

struct Place {
    std::string path;
    bool isSandbox = false;
};

/// Folders of many owners, and of the desktop and the libraries that programs share.
constexpr std::array<std::string_view, 67> nobodysNames = {"app",
                                                           "apple",
                                                           "applications",
                                                           "apps",
                                                           "at-spi",
                                                           "autostart",
                                                           "backgrounds",
                                                           "bin",
                                                           "cache",
                                                           "com",
                                                           "config",
                                                           "containers",
                                                           "data",
                                                           "dbus",
                                                           "dconf",
                                                           "desktop-directories",
                                                           "doc",
                                                           "environment.d",
                                                           "event-sound-cache",
                                                           "flatpak",
                                                           "fontconfig",
                                                           "fonts",
                                                           "glib-2.0",
                                                           "gnupg",
                                                           "google",
                                                           "gstreamer-1.0",
                                                           "gtk-2.0",
                                                           "gtk-3.0",
                                                           "gtk-4.0",
                                                           "gvfs",
                                                           "gvfs-metadata",
                                                           "ibus",
                                                           "icc",
                                                           "icons",
                                                           "java",
                                                           "keyrings",
                                                           "lib",
                                                           "local",
                                                           "locale",
                                                           "macos",
                                                           "man",
                                                           "menus",
                                                           "mesa_shader_cache",
                                                           "mesa_shader_cache_db",
                                                           "microsoft",
                                                           "mime",
                                                           "nv",
                                                           "nvidia",
                                                           "obexd",
                                                           "org",
                                                           "pki",
                                                           "pulse",
                                                           "radv_builtin_shaders",
                                                           "sessions",
                                                           "share",
                                                           "snap",
                                                           "sounds",
                                                           "ssh",
                                                           "state",
                                                           "systemd",
                                                           "themes",
                                                           "thumbnails",
                                                           "tmp",
                                                           "trash",
                                                           "user",
                                                           "var",
                                                           "wallpapers"};

static_assert(std::ranges::is_sorted(nobodysNames));

/// Makers whose folders have one for each application.
constexpr std::array<std::string_view, 3> makers = {"apple", "google", "microsoft"};

bool isNobodys(std::string_view name) {
    return std::ranges::binary_search(nobodysNames, lowerCased(name));
}

/// Where applications have folders of their own; those inside others first.
std::vector<Place> places(const UserFolders& folders) {
    std::vector<Place> result;
    for (const std::string& moved :
         {folders.userCache, folders.userConfig, folders.userData, folders.userState}) {
        if (!moved.empty())
            result.push_back({moved + "/"});
    }
    for (const std::string_view usual : {".cache/", ".config/", ".local/share/", ".local/state/"})
        result.push_back({Paths::join(folders.home, usual)});
    for (const std::string_view sandboxes : {".var/app/", "snap/"})
        result.push_back({.path = Paths::join(folders.home, sandboxes), .isSandbox = true});
    result.push_back({Paths::join(folders.home, ".")});
    return result;
}

std::vector<std::string> components(std::string_view path) {
    std::vector<std::string> names;
    for (std::string_view rest = path; !rest.empty();) {
        const std::size_t end = std::min(rest.find('/'), rest.size());
        if (end > 0)
            names.emplace_back(rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return names;
}

/// The last component of a name with at least three, as in "org.example.Editor"; otherwise the name.
std::string_view withoutDomain(std::string_view name) {
    const std::size_t last = name.rfind('.');
    const std::size_t first = name.find('.');
    if (first == last || first == 0 || last + 1 == name.size())
        return name;
    return name.substr(last + 1);
}

/// "intellijidea" for "IntelliJIdea2024.1".
std::string withoutVersion(std::string_view name) {
    std::string key = nameKey(name);
    while (!key.empty() && key.back() >= '0' && key.back() <= '9')
        key.pop_back();
    return FactText::characterCount(key) < tellingLength ? nameKey(name) : key;
}

bool isAlike(std::string_view name, std::string_view other) {
    return nameKey(name) == nameKey(other);
}

/// The installed applications by the keys of their names. Of several with one name, the first is one that is
/// called so, before those of which only the program is: shortcuts that a program makes to its own parts.
/// Then, one that runs.
class KnownNames {
public:
    explicit KnownNames(const InstalledApplications& installed) : installed_(installed) {
        for (const InstalledApplication& app : installed.all) {
            for (const std::string_view id : {std::string_view(app.id), withoutDomain(app.id)})
                add(id, {&app, false});
            for (const std::string& name : app.names)
                add(name, {&app, false});
            for (const std::string& program : app.programs)
                add(program, {&app, true});
        }
    }

    [[nodiscard]] const InstalledApplications& installed() const { return installed_; }

    /// The application of this name, with or without a domain or a version; null if there is none.
    [[nodiscard]] const InstalledApplication* find(std::string_view name) const {
        for (const std::string& key : {nameKey(name), nameKey(withoutDomain(name)), withoutVersion(name)}) {
            if (const auto known = byKey_.find(key); known != byKey_.end())
                return known->second.app;
        }
        return nullptr;
    }

private:
    struct Entry {
        const InstalledApplication* app = nullptr;
        bool isProgram = false;
    };

    void add(std::string_view name, Entry entry) {
        const std::string key = nameKey(name);
        if (key.empty())
            return;
        const auto [known, isNew] = byKey_.try_emplace(key, entry);
        const auto rank = [](const Entry& each) { return std::pair(each.isProgram, !each.app->isRunning); };
        if (!isNew && rank(entry) < rank(known->second))
            known->second = entry;
    }

    const InstalledApplications& installed_;
    std::unordered_map<std::string, Entry> byKey_;
};

/// Whether `key` is the beginning of a name up to the end of a word or to a number.
bool beginsName(std::string_view key, std::string_view name) {
    std::size_t matched = 0;
    bool isNewWord = true;
    for (const char c : lowerCased(name)) {
        if (!isWordByte(c)) {
            isNewWord = true;
            continue;
        }
        if (matched == key.size())
            return isNewWord || (c >= '0' && c <= '9');
        if (c != key[matched])
            return false;
        ++matched;
        isNewWord = false;
    }
    return matched == key.size();
}

/// Whether `key` is one of a name's words: "maps" in "gnome-maps".
bool isWordOf(std::string_view key, std::string_view name) {
    std::string word;
    for (const char c : lowerCased(name) + " ") {
        if (isWordByte(c)) {
            word += c;
            continue;
        }
        if (word == key)
            return true;
        word.clear();
    }
    return false;
}

/// Whether an application's name may mean the same: it begins or continues the other, or one is a word of it,
/// as a maker's name is of an id.
bool resembles(const InstalledApplication& app, std::string_view name) {
    const std::string key = withoutVersion(name);
    if (FactText::characterCount(key) < tellingLength)
        return false;
    const auto isClose = [&](std::string_view other) {
        const std::string otherKey = nameKey(other);
        return beginsName(key, other) || isWordOf(key, other) ||
               (FactText::characterCount(otherKey) > tellingLength && beginsName(otherKey, name));
    };
    return isClose(app.id) || isClose(withoutDomain(app.id)) || std::ranges::any_of(app.names, isClose) ||
           std::ranges::any_of(app.programs, isClose);
}

/// The application that a sandbox's folder is of.
const InstalledApplication* sandboxed(std::string_view name, const InstalledApplications& installed) {
    const std::string entries = std::string(name) + "_";
    const bool isFlatpak = name.contains('.');
    const auto found = std::ranges::find_if(installed.all, [&](const InstalledApplication& app) {
        // A snap without entries has no names either.
        return app.id.starts_with(entries) || (app.id == name && (isFlatpak || app.names.empty()));
    });
    return found != installed.all.end() ? &*found : nullptr;
}

/// What the names in a folder tell.
struct Contents {
    std::vector<const InstalledApplication*> owners;  ///< each once
    bool hasPrograms = false;  ///< its program may be in it, for shells to load or for some PATH to name
};

Contents contentsOf(const OwnedFolder& folder, const KnownNames& known, std::size_t maxNames) {
    const platform::Reach reach({&folder.path, 1}, platform::Reach::Others::prompt);
    const platform::Reach::Target place = reach.follow(folder.path);
    const auto opened = place.isThere ? platform::Directory::open(place.path).value_or(platform::Directory())
                                      : platform::Directory();
    platform::EntryReader reader(platform::Attributes::listed);
    reader.start(opened);
    Contents contents;
    for (std::size_t seen = 0; seen < maxNames; ++seen) {
        const platform::DirectoryEntry* entry = reader.next();
        if (entry == nullptr)
            break;
        const std::string_view name = entry->name;
        contents.hasPrograms =
            contents.hasPrograms || name == "bin" || beginsName(nameKey(ownerName(folder)), name);
        const auto* app = isNobodys(name) ? nullptr : known.find(name);
        if (app != nullptr && std::ranges::find(contents.owners, app) == contents.owners.end())
            contents.owners.push_back(app);
    }
    return contents;
}

Facts factsOf(const InstalledApplication& app) {
    return {.kind = Facts::Kind::app,
            .name = app.names.empty() ? app.id : app.names.front(),
            .isRunning = app.isRunning};
}

/// The only application that resembles a name; unsure if there are several, or if the resemblance is weak.
std::optional<Facts> resembling(std::string_view name, const InstalledApplications& installed) {
    const InstalledApplication* only = nullptr;
    for (const InstalledApplication& app : installed.all) {
        if (!resembles(app, name))
            continue;
        if (only != nullptr && (app.names.empty() || only->names != app.names))
            return Facts();
        only = &app;
    }
    if (only == nullptr)
        return std::nullopt;
    const auto begins = [key = withoutVersion(name)](std::string_view other) {
        return beginsName(key, other);
    };
    const bool isSure = begins(withoutDomain(only->id)) || std::ranges::any_of(only->names, begins) ||
                        std::ranges::any_of(only->programs, begins);
    return isSure ? factsOf(*only) : Facts();
}

/// Of an application after which the folder is not named itself: by what is inside, on the way, or alike.
std::optional<Facts> guessed(const OwnedFolder& folder, const KnownNames& known, std::size_t maxNames) {
    if (folder.names.size() > 1) {
        if (const auto* app = known.find(folder.names[1]))
            return factsOf(*app);
    }
    const Contents contents = contentsOf(folder, known, maxNames);
    if (folder.names.size() == 1 && contents.owners.size() == 1)
        return factsOf(*contents.owners.front());
    if (auto alike = resembling(folder.names.front(), known.installed()))
        return alike;
    return contents.hasPrograms || !contents.owners.empty() ? std::optional(Facts()) : std::nullopt;
}

/// The installed command that has a folder's name, in the user's spelling of it or in small letters. nullopt
/// if it cannot be known.
std::optional<std::string> command(std::string_view name) {
    bool isKnown = true;
    for (const std::string& spelling : {std::string(name), lowerCased(name), withoutVersion(name)}) {
        const auto isThere = platform::hasCommand(spelling);
        if (isThere.value_or(false))
            return spelling;
        isKnown = isKnown && isThere;
    }
    return isKnown ? std::optional(std::string()) : std::nullopt;
}

Facts judged(const OwnedFolder& folder, const InstalledApplications& installed, std::size_t maxNames) {
    const std::string& name = folder.names.front();
    const KnownNames known(installed);
    const InstalledApplication* app = known.find(name);
    if (folder.isSandbox) {
        if (const auto* own = sandboxed(name, installed))
            return factsOf(*own);
        // The same application may now be installed in another way.
        const std::string_view owner = ownerName(folder);
        if (app != nullptr || std::ranges::any_of(installed.all, [&](const InstalledApplication& other) {
                return resembles(other, owner);
            }))
            return {};
    }
    if (app != nullptr)
        return factsOf(*app);
    const std::string owner(ownerName(folder));
    const auto program = command(owner);
    if (program && !program->empty())
        return {.kind = Facts::Kind::command, .name = *program};
    if (!folder.isSandbox) {
        if (auto guess = guessed(folder, known, maxNames))
            return std::move(*guess);
    }
    if (!program || !installed.isComplete || FactText::characterCount(owner) < tellingLength)
        return {};
    return {.kind = Facts::Kind::absent, .name = owner};
}

}  // namespace

std::optional<OwnedFolder> ownedFolder(std::string_view path, const UserFolders& folders) {
    for (const Place& place : places(folders)) {
        // The places themselves are nobody's.
        if (path == std::string_view(place.path).substr(0, place.path.size() - 1))
            return std::nullopt;
        if (!path.starts_with(place.path))
            continue;
        OwnedFolder folder{.path = place.path,
                           .names = components(path.substr(place.path.size())),
                           .isSandbox = place.isSandbox};
        if (folder.names.size() > 1 &&
            std::ranges::find(makers, lowerCased(folder.names.front())) != makers.end()) {
            folder.path += folder.names.front() + "/";
            folder.names.erase(folder.names.begin());
        }
        if (folder.names.empty() || isNobodys(ownerName(folder)))
            return std::nullopt;
        folder.path += folder.names.front();
        return folder;
    }
    return std::nullopt;
}

std::string_view ownerName(const OwnedFolder& folder) {
    return withoutDomain(folder.names.front());
}

Facts facts(const OwnedFolder& folder, const InstalledApplications& installed, std::size_t maxNames) {
    Facts found = judged(folder, installed, maxNames);
    const std::string& name = folder.names.front();
    const auto isIt = [&](std::string_view process) {
        return isAlike(process, name) || isAlike(process, ownerName(folder)) ||
               (!found.name.empty() && isAlike(process, found.name));
    };
    if (!folder.isSandbox && !found.isRunning && std::ranges::any_of(installed.processes, isIt)) {
        found.isRunning = true;
        // What runs has not been removed, even if it was never installed.
        if (found.kind == Facts::Kind::absent || found.kind == Facts::Kind::unsure)
            found = {.name = std::string(ownerName(folder)), .isRunning = true};
    }
    return found;
}

}  // namespace ulvak::FolderOwner
