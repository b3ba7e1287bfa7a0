#include "platform/trash.h"

#import <Foundation/Foundation.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <optional>
#include <system_error>
#include <utility>

#include "platform/macos/text.h"
#include "platform/posix/user_folders.h"
#include "platform/volume.h"

namespace ulvak::platform {
namespace {

struct CodeRow {
    NSInteger cocoa;
    int number;
};

/// Ways a move to the Trash can fail without an underlying POSIX error.
constexpr std::array<CodeRow, 8> codes = {{
    {NSFileNoSuchFileError, ENOENT},
    {NSFileReadNoSuchFileError, ENOENT},
    {NSFileReadNoPermissionError, EACCES},
    {NSFileWriteNoPermissionError, EACCES},
    {NSFileWriteFileExistsError, EEXIST},
    {NSFileWriteOutOfSpaceError, ENOSPC},
    {NSFileWriteVolumeReadOnlyError, EROFS},
    {NSFeatureUnsupportedError, ENOTSUP},
}};

/// The errno value for an error; EIO if there is none, and the service's message has to do.
int numberOf(NSError* error) {
    for (NSError* at = error; at != nil; at = at.userInfo[NSUnderlyingErrorKey]) {
        if ([at.domain isEqualToString:NSPOSIXErrorDomain])
            return static_cast<int>(at.code);
    }
    if ([error.domain isEqualToString:NSCocoaErrorDomain]) {
        for (const CodeRow& row : codes) {
            if (row.cocoa == error.code)
                return row.number;
        }
    }
    return EIO;
}

FileError failed(int number, const std::string& path, std::string detail) {
    return {.code = {number, std::generic_category()}, .path = path, .detail = std::move(detail)};
}

std::string folderOf(const std::string& path) {
    return path.substr(0, std::max<std::size_t>(path.rfind('/'), 1));
}

/// The identity of the entry at a path, not following a link.
std::optional<ItemIdentity> identityAt(const std::string& path) {
    const auto folder = path.empty() ? std::unexpected(std::error_code()) : Directory::open(folderOf(path));
    return folder ? entryIdentity(*folder, path.substr(path.rfind('/') + 1)) : std::nullopt;
}

bool isLink(const Directory& parent, const std::string& name) {
    struct stat info{};
    return ::fstatat(parent.handle(), name.c_str(), &info, AT_SYMLINK_NOFOLLOW) == 0 && S_ISLNK(info.st_mode);
}

/// Checks that what arrived at `location` is the item. Anything else is put back if its old name is free;
/// otherwise it stays in the Trash.
std::expected<TrashedItem, FileError> arrived(const Directory& parent, const std::string& name,
                                              const ItemIdentity& item, const std::string& path,
                                              const std::string& location) {
    if (identityAt(location) == item)
        return TrashedItem{.origin = path, .location = location, .identity = item};
    if (location.empty() ||
        ::renameatx_np(AT_FDCWD, location.c_str(), parent.handle(), name.c_str(), RENAME_EXCL) != 0)
        return std::unexpected(failed(ESTALE, path, location));
    return std::unexpected(failed(ESTALE, path, {}));
}

}  // namespace

/// This system keeps no notes beside the items.
class TrashNotes::Notes {};

TrashNotes::TrashNotes() = default;
TrashNotes::~TrashNotes() = default;
void TrashNotes::add(const Directory& /*parent*/, const std::string& /*name*/, const std::string& /*path*/) {}
void TrashNotes::flush() {}

std::expected<TrashedItem, FileError> moveToTrash(const Directory& parent, const std::string& name,
                                                  const ItemIdentity& item, const std::string& path,
                                                  TrashNotes* /*ahead*/) {
    // Whatever HOME says, the item would go to the Trash of the logged-in user.
    if (!posix::isInSystemHome())
        return std::unexpected(failed(ENOTSUP, path, "HOME başka bir ev klasörünü gösteriyor"));
    const auto there = entryIdentity(parent, name);
    if (!there)
        return std::unexpected(failed(ENOENT, path, {}));
    if (there != item || !parent.isAt(folderOf(path)))
        return std::unexpected(failed(ESTALE, path, {}));
    @autoreleasepool {
        // By file reference: whatever takes the path from here on is not what moves. A link has no reference
        // of its own; it resolves to the target.
        NSURL* place = urlOf(path);
        NSURL* reference = [place fileReferenceURL];
        if (reference == nil || identityAt(pathOf(reference)) != item)
            reference = isLink(parent, name) ? place : nil;
        if (reference == nil)
            return std::unexpected(failed(ESTALE, path, {}));
        @try {
            NSError* error = nil;
            NSURL* result = nil;
            if (![NSFileManager.defaultManager trashItemAtURL:reference
                                             resultingItemURL:&result
                                                        error:&error])
                return std::unexpected(failed(numberOf(error), path, textOf(error.localizedDescription)));
            return arrived(parent, name, item, path, pathOf(result));
        } @catch (NSException* exception) {
            return std::unexpected(failed(EIO, path, textOf(exception.reason)));
        }
    }
}

void recordTrashedFolders(std::span<const TrashedFolder> /*folders*/) {}

TrashFolders trashFolders() {
    TrashFolders result;
    const auto add = [&](const std::string& path) {
        const std::size_t slash = path.rfind('/');
        const auto around = Directory::open(path.substr(0, slash));
        auto folder =
            around ? around->openBelow(path.substr(slash + 1).c_str()) : std::unexpected(around.error());
        struct stat info{};
        if (folder && (::fstat(folder->handle(), &info) != 0 || info.st_uid != ::geteuid()))
            folder = std::unexpected(std::make_error_code(std::errc::permission_denied));
        if (folder || folder.error() != std::errc::no_such_file_or_directory)
            result.folders.push_back({.path = path, .folder = std::move(folder)});
    };
    add(trashDirectory(homeDirectory()));
    const PromptVolumes volumes = promptVolumes();
    for (const std::string& top : volumes.places) {
        if (top != "/")
            add(top + "/.Trashes/" + std::to_string(::geteuid()));
    }
    result.isAll = volumes.isAll;
    return result;
}

const TrashLayout& trashLayout() {
    static const TrashLayout layout;
    return layout;
}

std::optional<Command> trashEmptyingCommand(const std::string& trash) {
    if (!posix::isDesktopsTrash(trash))
        return std::nullopt;
    return Command{.program = "/usr/bin/osascript",
                   .arguments = {"-e", "tell application \"Finder\" to empty trash"}};
}

}  // namespace ulvak::platform
