#include "platform/trash.h"

#import <Foundation/Foundation.h>

#include <array>
#include <cerrno>
#include <system_error>

#include "platform/macos/text.h"

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

}  // namespace

std::expected<void, FileError> moveToTrash(const std::string& path) {
    @autoreleasepool {
        NSError* error = nil;
        if ([NSFileManager.defaultManager trashItemAtURL:urlOf(path) resultingItemURL:nil error:&error])
            return {};
        return std::unexpected(FileError{.code = {numberOf(error), std::generic_category()},
                                         .path = path,
                                         .detail = textOf(error.localizedDescription)});
    }
}

const TrashLayout& trashLayout() {
    static const TrashLayout layout;
    return layout;
}

const Command& trashEmptyingCommand() {
    static const Command command{.program = "/usr/bin/osascript",
                                 .arguments = {"-e", "tell application \"Finder\" to empty trash"}};
    return command;
}

}  // namespace ulvak::platform
