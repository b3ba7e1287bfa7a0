#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/paths.h"
#include "platform/desktop.h"

/// Which application a folder belongs to, on a system whose desktop lists its applications. They keep their
/// files in hidden folders of the home, in the folders the desktop provides for settings, data and caches,
/// and in those of their sandboxes, under names that resemble their own.
///
/// Threads: blocks on the disk; never call it on the UI thread.
namespace ulvak::FolderOwner {

/// A folder in one of those places.
struct OwnedFolder {
    std::string path;                ///< the one that the application named; absolute
    std::vector<std::string> names;  ///< its name, and those on the way from it to the folder in question
    bool isSandbox = false;          ///< named after an installed package
};

/// Judged by the path alone. nullopt for the places themselves, for other paths, and for names that many
/// programs or the desktop itself use.
[[nodiscard]] std::optional<OwnedFolder> ownedFolder(std::string_view path, const UserFolders& folders);

/// The name a folder's owner goes by: "Editor" for "org.example.Editor".
[[nodiscard]] std::string_view ownerName(const OwnedFolder& folder);

/// What is known of a folder's owner.
struct Facts {
    enum class Kind {
        app,      ///< `name` is an installed application as the desktop shows it
        command,  ///< `name` is an installed command
        absent,   ///< nothing by this name is installed
        unsure,
    };
    Kind kind = Kind::unsure;
    std::string name;
    bool isRunning = false;

    friend bool operator==(const Facts&, const Facts&) = default;
};

/// Absent only if everything was looked through and nothing resembles the folder's name. Reads at most
/// `maxNames` names in the folder, and looks for commands.
[[nodiscard]] Facts facts(const OwnedFolder& folder, const platform::InstalledApplications& installed,
                          std::size_t maxNames);

}  // namespace ulvak::FolderOwner
