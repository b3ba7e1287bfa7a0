#pragma once

#include <string>
#include <string_view>

namespace ulvak {

/// The four well-known folders of a user: absolute paths, bytes, without a trailing "/" (unless one is "/").
struct UserFolders {
    std::string home;
    std::string temp;
    std::string cache;
    std::string trash;

    /// Asks the operating system. The program does so once, where it starts.
    [[nodiscard]] static UserFolders ofCurrentUser();
};

/// Paths as the rule book writes them and as people read them. Pure, but for `hasOwnCache`.
namespace Paths {

/// A leading "~", "$T" or "$C" (home, temporary, cache folder), alone or before a "/", is replaced;
/// anything else comes back unchanged.
[[nodiscard]] std::string expand(std::string_view text, const UserFolders& folders);

/// Whether `cache` is a cache. Where the system names none, its place is derived from the temporary folder's,
/// and what stands there may be anything: it is believed only beside a temporary folder named "T", as the
/// systems have it that name one, and where neither is somebody else's or a link. In the home folder, or as
/// a link there, it never is: "~/C" may well be somebody's work; nor is "/C", which may be somebody's disk.
/// Without one nothing is scanned, called a cache or removed for lying there. Looks at the disk.
[[nodiscard]] bool hasOwnCache(const UserFolders& folders);

/// The short form of a full path for the user: "~/Library", "Geçici klasör/x", "Sistem önbelleği/x". The
/// bytes of the path are kept; make them `printable` before they are shown.
[[nodiscard]] std::string display(std::string_view path, const UserFolders& folders);

/// Without the "/private" before "/var/folders/": the form in which the temporary and the cache folder
/// are known on systems where "/var" is a link.
[[nodiscard]] std::string_view withoutPrivate(std::string_view path);

/// `folder` and `name` with exactly one "/" between them.
[[nodiscard]] std::string join(std::string_view folder, std::string_view name);

/// What stands before the last "/" of an absolute path; "/" for the root and what lies in it.
[[nodiscard]] std::string_view parent(std::string_view path);

/// What follows the last "/"; "/" for the root.
[[nodiscard]] std::string_view lastComponent(std::string_view path);

/// What follows the last dot of a name, as written; empty for ".name" and "name.".
[[nodiscard]] std::string_view extension(std::string_view name);

/// Whether `path` is `folder` or lies below it, compared as text, component by component.
[[nodiscard]] bool isWithin(std::string_view path, std::string_view folder);

}  // namespace Paths
}  // namespace ulvak
