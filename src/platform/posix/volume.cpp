#include "platform/volume.h"

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <deque>
#include <utility>

#include "platform/files.h"

namespace ulvak::platform {
namespace {

/// Prepends the components of a path. Empty ones and "." are dropped.
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

/// Whether `path` is `folder` or below it.
bool isWithin(std::string_view path, std::string_view folder) {
    return path.starts_with(folder) &&
           (path.size() == folder.size() || folder.ends_with('/') || path[folder.size()] == '/');
}

std::vector<std::string> resolved(std::span<const std::string> folders) {
    std::vector<std::string> real;
    for (const std::string& folder : folders)
        real.push_back(resolvedPath(folder).value_or(folder));
    return real;
}

Reach::Target endedAt(std::string path, const std::deque<std::string>& rest) {
    for (const std::string& name : rest)
        path.append("/").append(name);
    return {.path = path.empty() ? "/" : std::move(path)};
}

}  // namespace

std::vector<std::string> mountPoints() {
    std::vector<std::string> points;
    for (Mount& mount : mounts())
        points.push_back(std::move(mount.path));
    return points;
}

PromptVolumes promptVolumes() {
    constexpr std::array<std::string_view, 5> systems = {"/dev/", "/proc/", "/run/user/", "/sys/",
                                                         "/System/"};
    PromptVolumes volumes;
    const std::vector<Mount> all = mounts();
    for (const Mount& mount : all) {
        if (std::ranges::any_of(systems,
                                [&](std::string_view folder) { return mount.path.starts_with(folder); }))
            continue;
        const bool isPrompt = std::ranges::none_of(
            all, [&](const Mount& around) { return around.mayHang && isWithin(mount.path, around.path); });
        if (isPrompt)
            volumes.places.push_back(mount.path);
        else
            volumes.isAll = false;
    }
    return volumes;
}

// Resolved before the mount list is read: resolving may trigger a mount.
Reach::Reach(std::span<const std::string> folders, Others others)
    : folders_(resolved(folders)), others_(others), mounts_(platform::mounts()) {
    findVolumes();
}

Reach::Reach(std::span<const std::string> folders, Others others, std::vector<Mount> mounts)
    : folders_(folders.begin(), folders.end()), others_(others), mounts_(std::move(mounts)) {
    findVolumes();
}

void Reach::findVolumes() {
    for (const std::string& folder : folders_) {
        if (const Mount* mount = mountOf(folder))
            volumes_.push_back(mount->volume);
    }
}

const Mount* Reach::mountOf(std::string_view path) const {
    const Mount* innermost = nullptr;
    for (const Mount& mount : mounts_) {
        if (isWithin(path, mount.path) &&
            (innermost == nullptr || mount.path.size() >= innermost->path.size()))
            innermost = &mount;
    }
    return innermost;
}

std::string_view Reach::mountPointOf(std::string_view path) const {
    const Mount* mount = mountOf(path);
    return mount != nullptr ? std::string_view(mount->path) : "/";
}

bool Reach::includes(std::string_view path) const {
    const Mount* mount = mountOf(path);
    if (mount == nullptr || std::ranges::find(volumes_, mount->volume) != volumes_.end())
        return true;
    const bool isOnTheWay = std::ranges::any_of(
        folders_, [&](const std::string& folder) { return isWithin(folder, mount->path); });
    if (!mount->mayHang)
        return isOnTheWay || others_ == Others::prompt;
    // Of a mount on the way to a folder, only the path to that folder is known to be safe.
    return std::ranges::any_of(folders_, [&](const std::string& folder) { return isWithin(folder, path); });
}

Reach::Target Reach::follow(std::string_view path) const {
    const QuietAccess quiet;
    constexpr int maxLinks = 40;  // no more than either kernel follows
    if (!path.starts_with('/'))
        return {.path = std::string(path)};
    const bool mustBeFolder = path.ends_with('/');
    std::string at;
    std::deque<std::string> names;
    putInFront(names, path);
    for (int links = 0; !names.empty();) {
        const std::string part = std::move(names.front());
        names.pop_front();
        if (part == "..") {
            at.resize(std::min(at.rfind('/'), at.size()));
            continue;
        }
        std::string here = at;
        here.append("/").append(part);
        struct stat info{};
        if (!includes(here) || ::lstat(here.c_str(), &info) != 0)
            return endedAt(std::move(here), names);
        if (!S_ISLNK(info.st_mode)) {
            if (!S_ISDIR(info.st_mode) && (!names.empty() || mustBeFolder))
                return endedAt(std::move(here), names);
            at = std::move(here);
            continue;
        }
        const auto target = linkTarget(here);
        if (!target || ++links > maxLinks)
            return endedAt(std::move(here), names);
        if (target->starts_with('/'))
            at.clear();
        putInFront(names, *target);
    }
    return {.path = at.empty() ? "/" : std::move(at), .isThere = true};
}

}  // namespace ulvak::platform
