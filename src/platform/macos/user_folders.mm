#include "platform/user_folders.h"

#import <Foundation/Foundation.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <utility>

#include "platform/macos/text.h"
#include "platform/posix/user_folders.h"

namespace ulvak::platform {

std::optional<std::string> posix::systemHome() {
    @autoreleasepool {
        std::string home = pathOf(NSFileManager.defaultManager.homeDirectoryForCurrentUser);
        return home.starts_with('/') ? std::optional(std::move(home)) : std::nullopt;
    }
}

std::string posix::desktopsTrash(const std::string& home) {
    return trashDirectory(home);
}

std::string homeDirectory() {
    // Foundation ignores HOME. But a user who runs the program with another HOME, to try it or to test it,
    // must not be offered the real home's files for deletion.
    if (auto home = posix::absoluteFromEnvironment("HOME"))
        return *home;
    // A user unknown to the system has no home: a nonexistent path is better than somebody else's.
    return posix::systemHome().value_or("/var/empty");
}

std::string temporaryDirectory() {
    @autoreleasepool {
        const char* path = NSTemporaryDirectory().fileSystemRepresentation;
        return path != nullptr && path[0] == '/' ? path : "/tmp";
    }
}

std::optional<std::string> cacheDirectory() {
    std::array<char, 1024> buffer{};
    if (::confstr(_CS_DARWIN_USER_CACHE_DIR, buffer.data(), buffer.size()) < 1)
        return std::nullopt;
    return std::string(buffer.data(), std::ranges::find(buffer, '\0'));
}

std::string applicationSupportDirectory(const std::string& home) {
    return home + "/Library/Application Support";
}

std::string trashDirectory(const std::string& home) {
    return home + "/.Trash";
}

GuardedFolders guardedFolders(const std::string& home) {
    GuardedFolders folders = posix::commonFolders(home);
    folders.themselves.push_back(home + "/Library/CloudStorage");
    folders.themselves.push_back(home + "/Library/Mobile Documents");
    folders.withContents.push_back(home + "/Library/Keychains");
    return folders;
}

}  // namespace ulvak::platform
