#include "platform/volume.h"

#include <sys/statvfs.h>

#include <fstream>
#include <limits>
#include <sstream>
#include <string_view>

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
    std::ifstream table("/proc/self/mountinfo", std::ios::binary);
    std::string line;
    while (std::getline(table, line)) {
        // "36 35 98:0 /root /mount/point options…": the fifth field.
        std::istringstream fields(line);
        std::string field;
        for (int i = 0; i < 5; ++i)
            fields >> field;
        if (fields && field.starts_with('/'))
            points.push_back(unescaped(field));
    }
    return points;
}

}  // namespace ulvak::platform
