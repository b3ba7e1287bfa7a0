#include "platform/trash.h"

#include <gio/gio.h>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <system_error>
#include <utility>

#include "platform/files.h"
#include "platform/posix/system_home.h"
#include "platform/user_folders.h"

namespace ulvak::platform {
namespace {

/// The number that stands for an error of GIO, EIO where there is none: the service's words say the rest.
int numberOf(const GError& error) {
    if (error.domain != G_IO_ERROR)
        return EIO;
    switch (error.code) {
        case G_IO_ERROR_NOT_FOUND:
            return ENOENT;
        case G_IO_ERROR_PERMISSION_DENIED:
            return EACCES;
        case G_IO_ERROR_NO_SPACE:
            return ENOSPC;
        case G_IO_ERROR_READ_ONLY:
            return EROFS;
        case G_IO_ERROR_BUSY:
            return EBUSY;
        case G_IO_ERROR_FILENAME_TOO_LONG:
            return ENAMETOOLONG;
        case G_IO_ERROR_NOT_SUPPORTED:
            return ENOTSUP;
        case G_IO_ERROR_TIMED_OUT:
            return ETIMEDOUT;
        default:
            return EIO;
    }
}

}  // namespace

std::expected<TrashedItem, FileError> moveToTrash(const Directory& parent, const std::string& name,
                                                  const ItemIdentity& item, const std::string& path) {
    const auto failed = [&](int number, std::string detail = {}) {
        return std::unexpected(
            FileError{.code = {number, std::generic_category()}, .path = path, .detail = std::move(detail)});
    };
    const auto there = entryIdentity(parent, name);
    if (!there)
        return failed(ENOENT);
    if (there != item || !parent.isAt(path.substr(0, std::max<std::size_t>(path.rfind('/'), 1))))
        return failed(ESTALE);
    // The local file system's own implementation: what else is installed to serve files is not even loaded.
    const std::unique_ptr<GFile, void (*)(void*)> file(
        g_vfs_get_file_for_path(g_vfs_get_local(), path.c_str()), &g_object_unref);
    GError* failure = nullptr;
    if (g_file_trash(file.get(), nullptr, &failure) == FALSE) {
        const std::unique_ptr<GError, void (*)(GError*)> error(failure, &g_error_free);
        return failed(numberOf(*error), error->message);
    }
    if (entryIdentity(parent, name) == item)
        return failed(ESTALE);
    TrashedItem trashed{.origin = path, .location = {}, .identity = item};
    const std::string files = trashDirectory(homeDirectory()) + "/files";
    if (const auto folder = Directory::open(files)) {
        for (const std::string& trashedName : listNames(files)) {
            if (entryIdentity(*folder, trashedName) == item)
                trashed.location = files + "/" + trashedName;
        }
    }
    return trashed;
}

const TrashLayout& trashLayout() {
    static const TrashLayout layout{.items = "files", .notes = "info", .noteSuffix = ".trashinfo"};
    return layout;
}

/// The program asks a service of the session, which knows nothing of this process's HOME and XDG_DATA_HOME.
std::optional<Command> trashEmptyingCommand(const std::string& trash) {
    if (!posix::isDesktopsTrash(trash))
        return std::nullopt;
    return Command{.program = "/usr/bin/gio", .arguments = {"trash", "--empty"}};
}

}  // namespace ulvak::platform
