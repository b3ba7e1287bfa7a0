#include "platform/files.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <cstdlib>
#include <cstring>
#include <memory>

#include "platform/linux/file_stamp.h"

namespace ulvak::platform {

std::optional<FileInfo> fileInfo(const std::string& path) {
    struct statx info{};
    if (::statx(AT_FDCWD, path.c_str(), AT_NO_AUTOMOUNT, STATX_TYPE | STATX_BLOCKS | STATX_MTIME, &info) != 0)
        return std::nullopt;
    FileInfo result{.isDirectory = S_ISDIR(info.stx_mode), .allocatedSize = allocatedBytes(info)};
    if ((info.stx_mask & STATX_MTIME) != 0)
        result.modified = fileTime(info.stx_mtime);
    return result;
}

std::vector<std::string> listNames(const std::string& path) {
    std::vector<std::string> names;
    const std::unique_ptr<DIR, int (*)(DIR*)> folder(::opendir(path.c_str()), &::closedir);
    if (!folder)
        return names;
    while (const dirent* entry = ::readdir(folder.get())) {  // NOLINT(concurrency-mt-unsafe): own stream
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..")
            names.emplace_back(name);
    }
    return names;
}

std::optional<std::string> resolvedPath(const std::string& path) {
    const std::unique_ptr<char, void (*)(void*)> resolved(::realpath(path.c_str(), nullptr), &std::free);
    if (!resolved)
        return std::nullopt;
    return resolved.get();
}

}  // namespace ulvak::platform
