#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <system_error>

#include "platform/temporary_items.h"

namespace ulvak::platform {
namespace {

using Clock = std::chrono::system_clock;

constexpr std::size_t maxEntries = 50'000;

Clock::time_point changeOf(const struct stat& info) {
    return Clock::time_point(std::chrono::seconds(info.st_ctim.tv_sec));
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
