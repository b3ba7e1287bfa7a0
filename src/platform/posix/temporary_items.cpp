#include "platform/temporary_items.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <system_error>

namespace ulvak::platform {
namespace {

using Clock = std::chrono::system_clock;

constexpr std::size_t maxEntries = 50'000;

Clock::time_point changeOf(const struct stat& info) {
#ifdef __APPLE__
    const timespec& at = info.st_ctimespec;
#else
    const timespec& at = info.st_ctim;
#endif
    return Clock::time_point(std::chrono::seconds(at.tv_sec));
}

void add(const std::string& path, ItemContents& contents) {
    struct stat info{};
    if (::lstat(path.c_str(), &info) != 0) {
        contents.wasSeenWhole = false;
        return;
    }
    contents.changed = std::max(contents.changed, changeOf(info));
    contents.isAllOwn = contents.isAllOwn && info.st_uid == ::geteuid();
    contents.holdsSocket = contents.holdsSocket || S_ISSOCK(info.st_mode) || S_ISFIFO(info.st_mode);
}

}  // namespace

bool isSharedFolder(const std::string& path) {
    struct stat info{};
    return ::stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode) &&
           ((info.st_mode & S_IWOTH) != 0 || info.st_uid != ::geteuid());
}

std::optional<bool> isOwnItem(const std::string& path) {
    struct stat info{};
    if (::lstat(path.c_str(), &info) != 0)
        return std::nullopt;
    return info.st_uid == ::geteuid();
}

ItemContents contentsOf(const std::string& path) {
    namespace fs = std::filesystem;
    ItemContents contents;
    add(path, contents);
    std::error_code error;
    if (!fs::is_directory(fs::symlink_status(path, error)))
        return contents;
    std::size_t left = maxEntries;
    for (fs::recursive_directory_iterator entry(path, error), end; !error && entry != end;
         entry.increment(error)) {
        if (left-- == 0) {
            contents.wasSeenWhole = false;
            break;
        }
        add(entry->path().native(), contents);
    }
    contents.wasSeenWhole = contents.wasSeenWhole && !error;
    return contents;
}

}  // namespace ulvak::platform
