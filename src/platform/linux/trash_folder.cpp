#include "platform/linux/trash_folder.h"

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/durable_file.h"
#include "platform/files.h"
#include "platform/linux/trash_note.h"
#include "platform/posix/system.h"
#include "platform/trash.h"
#include "platform/user_folders.h"
#include "platform/volume.h"

namespace ulvak::platform {
namespace {

using posix::lastError;

constexpr mode_t onlyThisUser = 0700;
constexpr mode_t writableByOthers = S_IWGRP | S_IWOTH;

std::error_code notSupported() {
    return {ENOTSUP, std::generic_category()};
}

/// Opens the folder `name` of `parent`, if this user owns it and nobody else may change its contents.
std::expected<Directory, std::error_code> openOwn(const Directory& parent, const std::string& name) {
    auto folder = parent.openBelow(name.c_str());
    if (!folder)
        return folder;
    struct stat info{};
    if (::fstat(folder->handle(), &info) != 0)
        return std::unexpected(lastError());
    if (info.st_uid != ::geteuid())
        return std::unexpected(std::make_error_code(std::errc::permission_denied));
    // Older programs created it with the umask's default permissions.
    if ((info.st_mode & writableByOthers) != 0 &&
        (::fchmod(folder->handle(), onlyThisUser) != 0 || ::fstat(folder->handle(), &info) != 0 ||
         (info.st_mode & writableByOthers) != 0))
        return std::unexpected(std::make_error_code(std::errc::permission_denied));
    return folder;
}

std::expected<Directory, std::error_code> makeOwn(const Directory& parent, const std::string& name) {
    if (::mkdirat(parent.handle(), name.c_str(), onlyThisUser) != 0 && errno != EEXIST)
        return std::unexpected(lastError());
    return openOwn(parent, name);
}

/// Completes a Trash with its two folders.
std::expected<OpenTrash, std::error_code> whole(std::expected<Directory, std::error_code> folder,
                                                std::string path, std::string top) {
    if (!folder)
        return std::unexpected(folder.error());
    auto items = makeOwn(*folder, trashLayout().items);
    if (!items)
        return std::unexpected(items.error());
    auto notes = makeOwn(*folder, trashLayout().notes);
    if (!notes)
        return std::unexpected(notes.error());
    return OpenTrash{.path = std::move(path),
                     .top = std::move(top),
                     .folder = std::move(*folder),
                     .items = std::move(*items),
                     .notes = std::move(*notes)};
}

/// The shared Trash folder at the top of a volume, if it is valid: a real folder with the sticky bit, in
/// which one user cannot rename another's entries.
std::expected<Directory, std::error_code> openShared(const Directory& top) {
    auto shared = top.openBelow(".Trash");
    struct stat info{};
    if (shared && (::fstat(shared->handle(), &info) != 0 || (info.st_mode & S_ISVTX) == 0))
        return std::unexpected(notSupported());
    return shared;
}

struct Names {
    std::string user = std::to_string(::geteuid());
    std::string shared = ".Trash/" + user;
    std::string own = ".Trash-" + user;
};

/// The mount id of a path; the device number if the kernel does not report it.
std::optional<std::uint64_t> mountOf(int folder, const char* path) {
    struct statx info{};
    if (::statx(folder, path, AT_NO_AUTOMOUNT | AT_EMPTY_PATH, STATX_MNT_ID, &info) != 0)
        return std::nullopt;
    return (info.stx_mask & STATX_MNT_ID) != 0
               ? info.stx_mnt_id
               : (std::uint64_t{info.stx_dev_major} << 32U) | info.stx_dev_minor;
}

/// The mount point of the volume that contains `inside`, whose path is `realPath`.
std::string topOf(const Directory& inside, const std::string& realPath) {
    const auto mount = mountOf(inside.handle(), "");
    std::string top = realPath;
    while (top.size() > 1) {
        const std::string around = top.substr(0, std::max<std::size_t>(top.rfind('/'), 1));
        if (!mount || mountOf(AT_FDCWD, around.c_str()) != mount)
            break;
        top = around;
    }
    return top;
}

/// Whether a folder can be read without waiting for a server or another program.
bool isWithinReach(const std::string& folder) {
    const std::string home = homeDirectory();
    const Reach reach({&home, 1}, Reach::Others::prompt);
    return reach.includes(reach.follow(folder).path);
}

bool isInMemory(const Directory& folder) {
    struct statfs info{};
    return ::fstatfs(folder.handle(), &info) != 0 || info.f_type == TMPFS_MAGIC || info.f_type == RAMFS_MAGIC;
}

std::string joined(const std::string& top, const std::string& name) {
    return top.ends_with('/') ? top + name : top + "/" + name;
}

// The list "directorysizes" of a Trash has a line for each folder: its size in bytes, its note's date, by
// which the line is known to belong to this very folder, and its name. It saves file managers a walk.

constexpr std::size_t maxListBytes = 256UZ * 1024 * 1024;

/// The list's lines, keyed by folder name as encoded there.
using Lines = std::map<std::string, std::string, std::less<>>;

Lines linesOf(std::string_view list) {
    Lines lines;
    while (!list.empty()) {
        const std::string_view line = list.substr(0, list.find('\n'));
        list.remove_prefix(std::min(line.size() + 1, list.size()));
        const std::size_t blank = line.rfind(' ');
        if (blank != std::string_view::npos)
            lines[std::string(line.substr(blank + 1))] = line;
    }
    return lines;
}

void updateSizes(const std::string& trash, const std::map<std::string, std::int64_t>& sizes) {
    const std::string path = trash + "/directorysizes";
    struct stat info{};
    if (::lstat(path.c_str(), &info) == 0 && !S_ISREG(info.st_mode))
        return;
    Lines lines = linesOf(readFile(path, maxListBytes).value_or(""));
    std::set<std::string, std::less<>> there;
    for (const std::string& name : listNames(trash + "/" + trashLayout().items))
        there.insert(percentEncoded(name));
    std::erase_if(lines, [&](const auto& line) { return !there.contains(line.first); });
    for (const auto& [name, bytes] : sizes) {
        std::string note = trash;
        note.append("/")
            .append(trashLayout().notes)
            .append("/")
            .append(name)
            .append(trashLayout().noteSuffix);
        const std::string shown = percentEncoded(name);
        if (there.contains(shown) && ::lstat(note.c_str(), &info) == 0)
            lines[shown] = std::to_string(bytes)
                               .append(" ")
                               .append(std::to_string(info.st_mtim.tv_sec))
                               .append(" ")
                               .append(shown);
    }
    if (lines.empty())
        return;  // the Trash was emptied meanwhile
    std::string list;
    for (const auto& [name, line] : lines)
        list.append(line).append("\n");
    // Dropped by design: without the list, file managers measure for themselves.
    (void)replaceFile(path, list);
}

/// Where snaps keep their data, each version in a home folder of its own: "snap/<name>/<version>". Relative
/// to the user's; links such as "current" are left out.
std::vector<std::string> snapData(const Directory& home) {
    std::vector<std::string> folders;
    const auto namesIn = [&](const std::string& folder) {
        const auto open = home.openBelow(folder.c_str());
        auto names = open ? entryNames(*open) : std::unexpected(open.error());
        return names ? std::move(*names) : std::vector<std::string>();
    };
    for (const std::string& name : namesIn("snap")) {
        const std::string snap = "snap/" + name;
        for (const std::string& version : namesIn(snap))
            folders.push_back(joined(snap, version) + "/.local/share");
    }
    return folders;
}

}  // namespace

bool isOnSameVolume(const Directory& one, const Directory& other) {
    struct stat first{};
    struct stat second{};
    return ::fstat(one.handle(), &first) == 0 && ::fstat(other.handle(), &second) == 0 &&
           first.st_dev == second.st_dev;
}

std::expected<OpenTrash, std::error_code> homeTrash() {
    std::string path = trashDirectory(homeDirectory());
    const std::size_t slash = path.rfind('/');
    const std::string data = path.substr(0, slash);
    if (!isWithinReach(data))
        return std::unexpected(std::make_error_code(std::errc::cross_device_link));
    if (const auto error = makeFolders(data))
        return std::unexpected(error);
    const auto parent = Directory::open(data);
    if (!parent)
        return std::unexpected(parent.error());
    auto folder = makeOwn(*parent, path.substr(slash + 1));
    return whole(std::move(folder), std::move(path), "");
}

std::expected<OpenTrash, std::error_code> volumeTrash(const Directory& inside, const std::string& realPath) {
    if (isInMemory(inside))
        return std::unexpected(notSupported());
    const std::string top = topOf(inside, realPath);
    const auto folder = Directory::open(top);
    if (!folder)
        return std::unexpected(folder.error());
    const Names names;
    if (const auto shared = openShared(*folder)) {
        if (auto trash = whole(makeOwn(*shared, names.user), joined(top, names.shared), top))
            return trash;
    }
    auto trash = whole(makeOwn(*folder, names.own), joined(top, names.own), top);
    // Nobody has created one for this user here, and this user may not.
    if (!trash && trash.error() == std::errc::permission_denied)
        return std::unexpected(notSupported());
    return trash;
}

TrashFolders trashFolders() {
    TrashFolders result;
    std::set<FileNumber> seen;
    const auto add = [&](std::string path, std::expected<Directory, std::error_code> folder) {
        if (!folder && (folder.error() == std::errc::no_such_file_or_directory ||
                        folder.error() == std::errc::not_a_directory))
            return;
        // One volume may be mounted at several places.
        const auto identity = folder ? posix::identityAt(folder->handle(), "") : std::nullopt;
        if (!identity || seen.insert(identity->number).second)
            result.folders.push_back({.path = std::move(path), .folder = std::move(folder)});
    };
    const std::string home = trashDirectory(homeDirectory());
    const std::size_t slash = home.rfind('/');
    const bool isReached = isWithinReach(home.substr(0, slash));
    if (isReached) {
        const auto data = Directory::open(home.substr(0, slash));
        add(home, data ? openOwn(*data, home.substr(slash + 1)) : std::unexpected(data.error()));
    }
    const std::string around = homeDirectory();
    if (const auto folder =
            isWithinReach(around) ? Directory::open(around) : std::unexpected(notSupported())) {
        for (const std::string& below : snapData(*folder)) {
            if (const auto data = folder->openBelow(below.c_str()))
                add(joined(joined(around, below), "Trash"), openOwn(*data, "Trash"));
        }
    }

    const Names names;
    const PromptVolumes volumes = promptVolumes();
    for (const std::string& top : volumes.places) {
        const auto folder = Directory::open(top);
        if (!folder)
            continue;  // a folder that cannot be entered holds no Trash that the desktop shows either
        if (const auto shared = openShared(*folder))
            add(joined(top, names.shared), openOwn(*shared, names.user));
        add(joined(top, names.own), openOwn(*folder, names.own));
    }
    result.isAll = volumes.isAll && isReached;
    return result;
}

void recordTrashedFolders(std::span<const TrashedFolder> folders) {
    std::map<std::string, std::map<std::string, std::int64_t>> byTrash;
    const std::string middle = "/" + trashLayout().items + "/";
    for (const TrashedFolder& folder : folders) {
        const std::size_t at = folder.location.rfind(middle);
        if (at != std::string::npos)
            byTrash[folder.location.substr(0, at)][folder.location.substr(at + middle.size())] = folder.bytes;
    }
    for (const auto& [trash, sizes] : byTrash)
        updateSizes(trash, sizes);
}

}  // namespace ulvak::platform
