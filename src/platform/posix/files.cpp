#include "platform/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <memory>
#include <string_view>

#include "platform/posix/folder_stream.h"
#include "platform/posix/system.h"

namespace ulvak::platform {

std::vector<std::string> listNames(const std::string& path) {
    const QuietAccess quiet;
    std::vector<std::string> names;
    const auto folder = posix::folderStream(posix::openFolder(AT_FDCWD, path.c_str()));
    if (!folder)
        return names;
    while (const dirent* entry = ::readdir(folder.get())) {  // NOLINT(concurrency-mt-unsafe): own stream
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..")
            names.emplace_back(name);
    }
    return names;
}

std::optional<bool> isOwnFolder(const std::string& path) {
    struct stat status{};
    if (::lstat(path.c_str(), &status) == 0)
        return S_ISDIR(status.st_mode) && status.st_uid == ::geteuid();
    return errno == ENOENT ? std::nullopt : std::optional(false);
}

std::optional<std::string> resolvedPath(const std::string& path) {
    const std::unique_ptr<char, void (*)(void*)> resolved(::realpath(path.c_str(), nullptr), &std::free);
    if (!resolved)
        return std::nullopt;
    return resolved.get();
}

}  // namespace ulvak::platform
