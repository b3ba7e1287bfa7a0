#include "platform/files.h"

#include <dirent.h>
#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string_view>

#include "platform/linux/file_stamp.h"
#include "platform/linux/open_for_listing.h"

namespace ulvak::platform {

std::optional<FileInfo> fileInfo(const std::string& path) {
    struct statx info{};
    if (::statx(AT_FDCWD, path.c_str(), AT_NO_AUTOMOUNT, STATX_TYPE | STATX_BLOCKS | STATX_MTIME | STATX_INO,
                &info) != 0)
        return std::nullopt;
    FileInfo result{.isDirectory = S_ISDIR(info.stx_mode), .allocatedSize = allocatedBytes(info)};
    result.volumeAndNumber = {(std::uint64_t{info.stx_dev_major} << 32U) | info.stx_dev_minor, info.stx_ino};
    if ((info.stx_mask & STATX_MTIME) != 0)
        result.modified = fileTime(info.stx_mtime);
    return result;
}

bool existsIn(const std::string& folder, const std::string& name) {
    const int parent = ::open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    if (parent < 0)
        return false;
    struct statx info{};
    bool exists =
        ::statx(parent, name.c_str(), AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT, STATX_TYPE, &info) == 0;
    if (exists && S_ISLNK(info.stx_mode)) {
        open_how how{};
        how.flags = O_PATH | O_CLOEXEC;
        how.resolve = RESOLVE_NO_XDEV;
        const auto target = static_cast<int>(::syscall(SYS_openat2, parent, name.c_str(), &how, sizeof how));
        exists = target >= 0 || (errno == ENOSYS && ::faccessat(parent, name.c_str(), F_OK, 0) == 0);
        if (target >= 0)
            ::close(target);
    }
    ::close(parent);
    return exists;
}

std::vector<std::string> listNames(const std::string& path) {
    std::vector<std::string> names;
    const int handle = openForListing([&](int flags) { return ::open(path.c_str(), flags); });
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
