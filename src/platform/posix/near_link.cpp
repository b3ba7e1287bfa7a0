#include "platform/posix/near_link.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <climits>
#include <deque>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/posix/system.h"

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

bool isBelowOneOf(const std::string& folder, std::span<const std::string> volumes) {
    return std::ranges::any_of(volumes, [&](const std::string& volume) {
        return volume != "/" && (folder + "/").starts_with(volume + "/");
    });
}

}  // namespace

bool posix::leadsToSomethingNear(const std::string& folder, const std::string& name,
                                 std::span<const std::string> volumes) {
    const QuietAccess quiet;
    constexpr int mostLinks = 32;  // no more than either kernel follows
    std::string at = folder == "/" ? "" : folder;
    std::deque<std::string> names;
    putInFront(names, name);
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
        if (target->starts_with('/')) {
            if (isBelowOneOf(folder, volumes))
                return false;  // it begins at the root, whose volume is another one
            at.clear();
        }
        putInFront(names, *target);
    }
    return true;
}

}  // namespace ulvak::platform
