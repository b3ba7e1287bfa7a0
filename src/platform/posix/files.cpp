#include "platform/files.h"

#include <dirent.h>
#include <fcntl.h>

#include <cstdlib>
#include <memory>
#include <string_view>

#include "platform/posix/system.h"

namespace ulvak::platform {

std::vector<std::string> listNames(const std::string& path) {
    const posix::QuietAccess quiet;
    std::vector<std::string> names;
    const int handle = posix::openFolder(AT_FDCWD, path.c_str());
    const std::unique_ptr<DIR, int (*)(DIR*)> folder(handle < 0 ? nullptr : ::fdopendir(handle), &::closedir);
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
