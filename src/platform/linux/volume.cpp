#include "platform/volume.h"

#include <sys/statvfs.h>

#include <algorithm>
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
    std::string device;  ///< "MAJOR:MINOR"
    std::string type;    ///< of the file system
};

bool isNumber(std::string_view text, int& number) {
    return std::from_chars(text.data(), text.data() + text.size(), number).ec == std::errc();
}

/// The kernel's table: "36 35 98:0 /root /mount/point options… - type source options". Only blanks separate.
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
        constexpr std::string_view dash = "- ";
        const std::size_t end = rest.starts_with(dash) ? 0 : rest.find(" - ");
        const std::string_view after =
            end == std::string_view::npos ? "" : rest.substr(rest.find(dash, end) + dash.size());
        Mount mount{.path = unescaped(fields[4]),
                    .device = std::string(fields[2]),
                    .type = std::string(after.substr(0, after.find(' ')))};
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

/// Mounts whose place no other has taken.
std::vector<Mount> uncoveredMounts() {
    std::vector<Mount> mounts = mountTable();
    MountsByPath byPath;
    MountsById byId;
    for (const Mount& mount : mounts) {
        byPath[mount.path].push_back(&mount);
        byId[mount.id] = &mount;
    }
    std::vector<Mount> result;
    for (const Mount& mount : mounts) {
        if (!isCovered(mount, byPath, byId))
            result.push_back(mount);
    }
    return result;
}

enum class Backing : std::uint8_t { none, disk, other };

/// What stands behind a file system. One that is on a disk has the disk's number, but for a few that have
/// numbers of their own; others with a number of their own are servers', or hold nothing that lasts.
Backing backingOf(const Mount& mount) {
    constexpr std::array<std::string_view, 4> ownNumbers = {"btrfs", "zfs", "bcachefs", "overlay"};
    constexpr std::array<std::string_view, 10> servers = {"nfs",  "nfs4",      "cifs",   "smb3", "9p",
                                                          "ceph", "glusterfs", "lustre", "afs",  "virtiofs"};
    const bool isProgram = mount.type == "fuse" || mount.type.starts_with("fuse.") || mount.type == "fuseblk";
    if (std::ranges::find(ownNumbers, mount.type) != ownNumbers.end())
        return Backing::disk;
    if (!isProgram && !mount.device.starts_with("0:"))
        return Backing::disk;
    // The session's own are no volumes that anybody trashes from.
    const bool isSession = mount.path.starts_with("/run/user/");
    const bool isServer = std::ranges::find(servers, mount.type) != servers.end();
    return (isProgram && !isSession) || isServer ? Backing::other : Backing::none;
}

/// Whether `path` lies below the place of `mount`.
bool isBelow(const std::string& path, const Mount& mount) {
    return path.size() > mount.path.size() && path.starts_with(mount.path) && path[mount.path.size()] == '/';
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
    std::vector<std::string> points;
    for (const Mount& mount : uncoveredMounts())
        points.push_back(mount.path);
    return points;
}

Volumes promptVolumes() {
    const std::vector<Mount> mounts = uncoveredMounts();
    Volumes volumes;
    for (const Mount& mount : mounts) {
        const Backing backing = backingOf(mount);
        const bool isReached = std::ranges::none_of(mounts, [&](const Mount& around) {
            const bool mayHang = backingOf(around) == Backing::other || around.type == "autofs" ||
                                 around.type.starts_with("fuse");
            return mayHang && isBelow(mount.path, around);
        });
        if (backing == Backing::disk && isReached)
            volumes.points.push_back(mount.path);
        else if (backing != Backing::none)
            volumes.isAll = false;
    }
    return volumes;
}

}  // namespace ulvak::platform
