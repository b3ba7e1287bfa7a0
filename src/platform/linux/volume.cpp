#include "platform/volume.h"

#include <sys/statvfs.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <fstream>
#include <limits>
#include <string>
#include <string_view>
#include <system_error>
#include <unordered_map>
#include <utility>

namespace ulvak::platform {
namespace {

/// The kernel escapes spaces, tabs, line feeds and backslashes in a path as "\ooo".
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

struct TableRow {
    int id = 0;
    int parentId = 0;
    Mount mount;
};

bool isNumber(std::string_view text, int& number) {
    return std::from_chars(text.data(), text.data() + text.size(), number).ec == std::errc();
}

/// The next space-separated field of a line.
std::string_view nextField(std::string_view& rest) {
    const std::size_t blank = rest.find(' ');
    const std::string_view field = rest.substr(0, blank);
    rest.remove_prefix(blank == std::string_view::npos ? rest.size() : blank + 1);
    return field;
}

/// Whether a file system of that type and source depends on another computer or another program.
bool asksOthers(std::string_view type, std::string_view source) {
    constexpr std::array<std::string_view, 34> types = {
        "9p",    "acfs",  "afs",   "aufs",    "autofs",   "beegfs",   "ceph",  "cifs",   "coda",
        "davfs", "fhgfs", "fuse",  "fuseblk", "gfs",      "gfs2",     "gpfs",  "lustre", "mfs",
        "ncp",   "ncpfs", "nfs",   "nfs4",    "ocfs2",    "orangefs", "panfs", "prl_fs", "pvfs2",
        "smb3",  "smbfs", "sshfs", "vboxsf",  "virtiofs", "vmhgfs",   "wekafs"};
    // Unknown types are recognised by their server: "host:/path", "//host/path".
    return std::ranges::find(types, type) != types.end() || type.starts_with("fuse.") ||
           source.starts_with("//") || (source.contains(":/") && !source.starts_with('/'));
}

/// Parses mountinfo: "36 35 98:0 /root /mount/point options… - type source options".
std::vector<TableRow> mountTable() {
    std::vector<TableRow> rows;
    std::ifstream table("/proc/self/mountinfo", std::ios::binary);
    std::string line;
    while (std::getline(table, line)) {
        std::string_view rest = line;
        TableRow row;
        if (!isNumber(nextField(rest), row.id) || !isNumber(nextField(rest), row.parentId))
            return {};  // an unparsable table counts as none
        const std::string_view volume = nextField(rest);
        const std::size_t colon = std::min(volume.find(':'), volume.size());
        int major = 0;
        int minor = 0;
        if (!isNumber(volume.substr(0, colon), major) ||
            !isNumber(volume.substr(std::min(colon + 1, volume.size())), minor))
            return {};
        row.mount.volume = (static_cast<std::uint64_t>(major) << 32U) | static_cast<std::uint32_t>(minor);
        (void)nextField(rest);
        row.mount.path = unescaped(nextField(rest));
        while (!rest.empty() && nextField(rest) != "-") {
        }
        const std::string_view type = nextField(rest);
        row.mount.mayHang = row.mount.path != "/" && asksOthers(type, unescaped(nextField(rest)));
        if (row.mount.path.starts_with('/'))
            rows.push_back(std::move(row));
    }
    return rows;
}

using MountsByPath = std::unordered_map<std::string, std::vector<const TableRow*>>;
using MountsById = std::unordered_map<int, const TableRow*>;

/// Whether `mount` is `upper`, or is mounted on it, directly or through others.
bool isMountedOn(const TableRow& mount, const TableRow& upper, const MountsById& byId) {
    const TableRow* at = &mount;
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

/// Whether a later mount, at its path or above, hides this one: its path may now be an ordinary folder.
bool isCovered(const TableRow& row, const MountsByPath& byPath, const MountsById& byId) {
    for (std::size_t end = row.mount.path.size(); end > 0; end = row.mount.path.rfind('/', end - 1)) {
        if (end == std::string::npos)
            break;
        const auto there = byPath.find(row.mount.path.substr(0, end));
        if (there == byPath.end())
            continue;
        for (const TableRow* other : there->second) {
            if (!isMountedOn(row, *other, byId))
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

std::vector<Mount> mounts() {
    const std::vector<TableRow> rows = mountTable();
    MountsByPath byPath;
    MountsById byId;
    for (const TableRow& row : rows) {
        byPath[row.mount.path].push_back(&row);
        byId[row.id] = &row;
    }
    std::vector<Mount> mounts;
    for (const TableRow& row : rows) {
        if (!isCovered(row, byPath, byId))
            mounts.push_back(row.mount);
    }
    return mounts;
}

}  // namespace ulvak::platform
