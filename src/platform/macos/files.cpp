#include "platform/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <deque>
#include <string_view>

#include "platform/posix/file_stamp.h"
#include "platform/posix/system.h"
#include "platform/volume.h"

namespace ulvak::platform {
namespace {

/// The names of a path, to be gone through one after the other. Empty ones and "." say nothing.
void putInFront(std::deque<std::string>& names, std::string_view path) {
    std::vector<std::string> parts;
    while (!path.empty()) {
        const std::size_t end = std::min(path.find('/'), path.size());
        const std::string_view part = path.substr(0, end);
        if (!part.empty() && part != ".")
            parts.emplace_back(part);
        path.remove_prefix(std::min(end + 1, path.size()));
    }
    names.insert(names.begin(), parts.begin(), parts.end());
}

std::optional<std::string> linkTarget(const std::string& path) {
    std::array<char, PATH_MAX> buffer{};
    const ssize_t length = ::readlink(path.c_str(), buffer.data(), buffer.size());
    if (length < 0)
        return std::nullopt;
    return std::string(buffer.data(), static_cast<std::size_t>(length));
}

/// Whether following the link `name` in `folder`, itself without links, ends at something on the same volume.
/// Goes name by name, so that the place of another volume is known before anybody looks there, and has no
/// folder fetched on the way.
bool leadsToSomethingNear(const std::string& folder, const std::string& name) {
    const posix::QuietAccess quiet;
    constexpr int mostLinks = 32;  // as many as the kernel follows
    const std::vector<std::string> volumes = mountPoints();
    std::string at = folder == "/" ? "" : folder;
    std::deque<std::string> names{name};
    for (int links = 0; !names.empty();) {
        const std::string part = std::move(names.front());
        names.pop_front();
        if (part == "..") {
            at.resize(std::min(at.rfind('/'), at.size()));
            continue;
        }
        std::string here = at;
        here.append("/").append(part);
        if (std::ranges::find(volumes, here) != volumes.end())
            return false;
        struct stat info{};
        if (::lstat(here.c_str(), &info) != 0)
            return false;
        if (!S_ISLNK(info.st_mode)) {
            at = std::move(here);
            continue;
        }
        const auto target = linkTarget(here);
        if (!target || ++links > mostLinks)
            return false;
        if (target->starts_with('/'))
            at.clear();
        putInFront(names, *target);
    }
    return true;
}

}  // namespace

std::optional<FileInfo> fileInfo(const std::string& path) {
    struct stat info{};
    if (::stat(path.c_str(), &info) != 0)
        return std::nullopt;
    return FileInfo{
        .isDirectory = S_ISDIR(info.st_mode),
        .allocatedSize = allocatedBytes(static_cast<std::uint64_t>(std::max<blkcnt_t>(info.st_blocks, 0))),
        .modified = fileTime(info.st_mtimespec.tv_sec, info.st_mtimespec.tv_nsec),
        .volumeAndNumber = {posix::volumeNumber(info), info.st_ino},
    };
}

bool existsIn(const std::string& folder, const std::string& name) {
    const std::string path = folder + "/" + name;
    struct stat info{};
    if (::lstat(path.c_str(), &info) != 0)
        return false;
    if (!S_ISLNK(info.st_mode))
        return true;
    const auto resolved = resolvedPath(folder);
    return resolved && leadsToSomethingNear(*resolved, name);
}

}  // namespace ulvak::platform
