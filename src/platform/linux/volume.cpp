#include "platform/volume.h"

#include <sys/statvfs.h>

#include <array>
#include <charconv>
#include <fstream>
#include <limits>
#include <string_view>
#include <system_error>
#include <unordered_map>
#include <utility>

namespace ulvak::platform {
namespace {

/// The kernel writes blanks, tabs, line feeds and backslashes in a path as "\ooo".
std::string unescaped(std::string_view text) {
    const auto isOctal = [&](std::size_t i) { return i < text.size() && text[i] >= '0' && text[i] <= '7'; };
    std::string result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\\' && isOctal(i + 1) && isOctal(i + 2) && isOctal(i + 3)) {
            const int code = (text[i + 1] - '0') * 64 + (text[i + 2] - '0') * 8 + (text[i + 3] - '0');
            result += static_cast<char>(code);
            i += 3;
        } else {
            result += text[i];
        }
    }
    return result;
}

struct Mount {
    int id = 0;
    int parentId = 0;
    std::string path;
};

bool isNumber(std::string_view text, int& number) {
    return std::from_chars(text.data(), text.data() + text.size(), number).ec == std::errc();
}

/// The kernel's table: "36 35 98:0 /root /mount/point options…". Only blanks separate.
std::vector<Mount> mountTable() {
    std::vector<Mount> mounts;
    std::ifstream table("/proc/self/mountinfo", std::ios::binary);
    std::string line;
    while (std::getline(table, line)) {
        std::array<std::string_view, 5> fields;
        std::string_view rest = line;
        for (std::string_view& field : fields) {
            const std::size_t blank = rest.find(' ');
            field = rest.substr(0, blank);
            rest.remove_prefix(blank == std::string_view::npos ? rest.size() : blank + 1);
        }
        Mount mount{.path = unescaped(fields[4])};
        if (!isNumber(fields[0], mount.id) || !isNumber(fields[1], mount.parentId))
            return {};  // a table that cannot be understood is none
        if (mount.path.starts_with('/'))
            mounts.push_back(std::move(mount));
    }
    return mounts;
}

using MountsByPath = std::unordered_map<std::string, std::vector<const Mount*>>;
using MountsById = std::unordered_map<int, const Mount*>;

/// Whether `mount` is `upper`, or is mounted on it, directly or through others.
bool isMountedOn(const Mount& mount, const Mount& upper, const MountsById& byId) {
    const Mount* at = &mount;
    for (std::size_t steps = 0; steps <= byId.size(); ++steps) {
        if (at->id == upper.id)
            return true;
        const auto parent = byId.find(at->parentId);
        if (parent == byId.end() || parent->second == at)
            return false;
        at = parent->second;
    }
    return false;
}

/// A mount that a later one, at its place or above, has covered: its path may now be a folder like others.
bool isCovered(const Mount& mount, const MountsByPath& byPath, const MountsById& byId) {
    for (std::size_t end = mount.path.size(); end > 0; end = mount.path.rfind('/', end - 1)) {
        if (end == std::string::npos)
            break;
        const auto there = byPath.find(mount.path.substr(0, end));
        if (there == byPath.end())
            continue;
        for (const Mount* other : there->second) {
            if (!isMountedOn(mount, *other, byId))
                return true;
        }
    }
    return false;
}

std::int64_t bytes(std::uint64_t blocks, std::uint64_t blockSize) {
    std::int64_t product = 0;
    if (__builtin_mul_overflow(blocks, blockSize, &product))
        return std::numeric_limits<std::int64_t>::max();
    return product;
}

}  // namespace

std::optional<VolumeCapacity> volumeCapacity(const std::string& path) {
    struct statvfs info{};
    if (::statvfs(path.c_str(), &info) != 0)
        return std::nullopt;
    const std::uint64_t blockSize = info.f_frsize != 0 ? info.f_frsize : info.f_bsize;
    return VolumeCapacity{.total = bytes(info.f_blocks, blockSize),
                          .available = bytes(info.f_bavail, blockSize)};
}

std::vector<std::string> mountPoints() {
    const std::vector<Mount> mounts = mountTable();
    MountsByPath byPath;
    MountsById byId;
    for (const Mount& mount : mounts) {
        byPath[mount.path].push_back(&mount);
        byId[mount.id] = &mount;
    }
    std::vector<std::string> points;
    for (const Mount& mount : mounts) {
        if (!isCovered(mount, byPath, byId))
            points.push_back(mount.path);
    }
    return points;
}

}  // namespace ulvak::platform
