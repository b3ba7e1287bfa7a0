#include "platform/trash.h"

#import <Foundation/Foundation.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <system_error>
#include <utility>

#include "platform/macos/text.h"
#include "platform/posix/system_home.h"

namespace ulvak::platform {
namespace {

struct CodeRow {
    NSInteger cocoa;
    int number;
};

/// What moving to the Trash can fail with, where the system has not added the number itself.
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

/// The number that stands for an error, EIO where there is none: the service's words say the rest.
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

}  // namespace

std::expected<TrashedItem, FileError> moveToTrash(const Directory& parent, const std::string& name,
                                                  const ItemIdentity& identity, const std::string& path) {
    // Whatever HOME says, the item would go to the Trash of the user who is logged in.
    if (!posix::isInSystemHome())
        return std::unexpected(failed(ENOTSUP, path, "HOME başka bir ev klasörünü gösteriyor"));
    const auto there = entryIdentity(parent, name);
    if (!there)
        return std::unexpected(failed(ENOENT, path, {}));
    if (there != identity || !parent.isAt(path.substr(0, std::max<std::size_t>(path.rfind('/'), 1))))
        return std::unexpected(failed(ESTALE, path, {}));
    @autoreleasepool {
        NSURL* item = urlOf(path);
        if (item == nil)
            return std::unexpected(failed(EINVAL, path, "Bu yol okunamadı"));
        @try {
            NSError* error = nil;
            NSURL* result = nil;
            if ([NSFileManager.defaultManager trashItemAtURL:item resultingItemURL:&result error:&error]) {
                if (entryIdentity(parent, name) == identity)
                    return std::unexpected(failed(ESTALE, path, {}));
                const char* location = result.fileSystemRepresentation;
                return TrashedItem{
                    .origin = path, .location = location != nullptr ? location : "", .identity = identity};
            }
            return std::unexpected(failed(numberOf(error), path, textOf(error.localizedDescription)));
        } @catch (NSException* exception) {
            return std::unexpected(failed(EIO, path, textOf(exception.reason)));
        }
    }
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
