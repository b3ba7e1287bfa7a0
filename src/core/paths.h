#pragma once

#include <string>
#include <string_view>

namespace ulvak {

/// A user's well-known folders: absolute paths, bytes, no trailing "/" (except "/" itself).
struct UserFolders {
    std::string home;
    std::string temp;
    std::string cache;
    std::string trash;
    // Where applications keep their files by the desktop's convention, if the user has moved these folders;
    // otherwise empty, and they are at their usual places in the home folder.
    std::string userCache;
    std::string userConfig;
    std::string userData;
    std::string userState;

    /// Queries the operating system. Called once, at start-up.
    [[nodiscard]] static UserFolders ofCurrentUser();
};

/// Paths as the rule book writes them and as people read them. Pure, except for `hasOwnCache`.
namespace Paths {

/// Replaces a leading "~", "$T" or "$C" (home, temporary, cache folder), alone or before a "/". Anything else
/// is returned unchanged.
[[nodiscard]] std::string expand(std::string_view text, const UserFolders& folders);

/// Whether `cache` really is a cache. Where the system names none, its path is derived from the temporary
/// folder's, and whatever is there may be anything. Such a guess is trusted only next to a temporary folder
/// named "T" (the layout of the systems that do name one), and only if neither folder is a link or belongs to
/// another user. A cache in the home folder, or a link into it, is never trusted: "~/C" may well be
/// somebody's work. Nor is "/C", which may be somebody's disk. Without a trusted cache, nothing is scanned,
/// classified or removed for lying in it. Reads the disk.
[[nodiscard]] bool hasOwnCache(const UserFolders& folders);

/// Shortens a full path for the user: "~/Library", "Geçici klasör/x", "Sistem önbelleği/x". Keeps the path's
/// bytes; apply `printable` before showing it.
[[nodiscard]] std::string display(std::string_view path, const UserFolders& folders);

/// Strips "/private" from before "/var/folders/", which is how the temporary and cache folders are known on
/// systems where "/var" is a link.
[[nodiscard]] std::string_view withoutPrivate(std::string_view path);

/// Joins `folder` and `name` with exactly one "/".
[[nodiscard]] std::string join(std::string_view folder, std::string_view name);

/// The part before the last "/" of an absolute path; "/" for the root and its direct children.
[[nodiscard]] std::string_view parent(std::string_view path);

/// The part after the last "/"; "/" for the root.
[[nodiscard]] std::string_view lastComponent(std::string_view path);

/// The part after the last dot of a name, case preserved; empty for ".name" and "name.".
[[nodiscard]] std::string_view extension(std::string_view name);

/// Whether `path` is `folder` or below it. Lexical, component by component.
[[nodiscard]] bool isWithin(std::string_view path, std::string_view folder);

}  // namespace Paths
}  // namespace ulvak
