#include "platform/folder_facts.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <utility>
#include <vector>

#include "platform/linux/file_stamp.h"
#include "platform/package_name.h"

namespace ulvak::platform {
namespace {

constexpr int readFlags = O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;

/// O_NOATIME keeps our looks from renewing the date that tells when somebody last used a file. Only the
/// owner may ask for it; others open without.
int openQuietly(int parent, const char* name, int flags) {
    const int handle = ::openat(parent, name, readFlags | flags | O_NOATIME);
    return handle < 0 && errno == EPERM ? ::openat(parent, name, readFlags | flags) : handle;
}

struct CloseStream {
    void operator()(DIR* stream) const { ::closedir(stream); }
};
using Stream = std::unique_ptr<DIR, CloseStream>;

Stream openStream(int parent, const char* name, int flags) {
    const int handle = openQuietly(parent, name, O_DIRECTORY | flags);
    if (handle < 0)
        return nullptr;
    Stream stream(::fdopendir(handle));
    if (!stream)
        ::close(handle);
    return stream;
}

const dirent* nextEntry(DIR* stream) {
    while (const dirent* entry = ::readdir(stream)) {  // NOLINT(concurrency-mt-unsafe): own stream
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..")
            return entry;
    }
    return nullptr;
}

std::optional<struct statx> describe(int parent, const char* name) {
    struct statx info{};
    constexpr unsigned wanted = STATX_TYPE | STATX_SIZE | STATX_BLOCKS;
    if (::statx(parent, name, AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT, wanted, &info) != 0)
        return std::nullopt;
    return info;
}

bool isMountPoint(const struct statx& info) {
    return (info.stx_attributes & info.stx_attributes_mask & STATX_ATTR_MOUNT_ROOT) != 0;
}

}  // namespace

std::optional<FileTime> lastAccess(const std::string& path) {
    struct statx info{};
    if (::statx(AT_FDCWD, path.c_str(), AT_NO_AUTOMOUNT, STATX_ATIME, &info) != 0 ||
        (info.stx_mask & STATX_ATIME) == 0)
        return std::nullopt;
    return fileTime(info.stx_atime);
}

struct FolderListing::Handle {
    Stream stream;
    int number = -1;
};

FolderListing::FolderListing(const std::string& path) : handle_(std::make_unique<Handle>()) {
    handle_->stream = openStream(AT_FDCWD, path.c_str(), 0);
    if (handle_->stream)
        handle_->number = ::dirfd(handle_->stream.get());
}

FolderListing::~FolderListing() = default;

std::optional<std::string_view> FolderListing::next() {
    const dirent* entry = handle_->stream ? nextEntry(handle_->stream.get()) : nullptr;
    return entry != nullptr ? std::optional<std::string_view>(entry->d_name) : std::nullopt;
}

std::optional<std::int64_t> FolderListing::length(const std::string& name) const {
    if (handle_->number < 0)
        return std::nullopt;
    const auto info = describe(handle_->number, name.c_str());
    if (!info || !S_ISREG(info->stx_mode))
        return std::nullopt;
    // A file that has a length but holds nothing on disk is a hole, or its contents are elsewhere. Files
    // small enough to lie in the inode still report a block.
    if (info->stx_size > 0 && info->stx_blocks == 0)
        return std::nullopt;
    return static_cast<std::int64_t>(std::min<std::uint64_t>(info->stx_size, std::uint64_t{INT64_MAX}));
}

std::string FolderListing::beginning(const std::string& name, std::size_t count) const {
    // Looked at before it is opened, for opening a device can have effects of its own; and after, for it may
    // have been swapped in between.
    if (!length(name))
        return {};
    const int handle = openQuietly(handle_->number, name.c_str(), O_NOFOLLOW);
    if (handle < 0)
        return {};
    std::string bytes;
    struct stat info{};
    if (::fstat(handle, &info) == 0 && S_ISREG(info.st_mode)) {
        bytes.resize(count);
        std::size_t have = 0;
        while (have < count) {
            const ssize_t got = ::read(handle, bytes.data() + have, count - have);
            if (got < 0 && errno == EINTR)
                continue;
            if (got <= 0)
                break;
            have += static_cast<std::size_t>(got);
        }
        bytes.resize(have);
    }
    ::close(handle);
    return bytes;
}

struct FileSample::Walk {
    /// The folders from the first down to the one being listed.
    std::vector<Stream> levels;
    std::stop_token stop;

    /// Enters `name`, found in the deepest open folder, if it is a folder to enter.
    void enter(const char* name, const struct statx& info) {
        if (isMountPoint(info) || isPackageName(name) || levels.size() >= mostLevels)
            return;
        if (Stream stream = openStream(::dirfd(levels.back().get()), name, O_NOFOLLOW))
            levels.push_back(std::move(stream));
    }
};

FileSample::FileSample(const std::string& path, std::stop_token stop) : walk_(std::make_unique<Walk>()) {
    walk_->stop = std::move(stop);
    if (Stream stream = openStream(AT_FDCWD, path.c_str(), 0))
        walk_->levels.push_back(std::move(stream));
}

FileSample::~FileSample() = default;

std::optional<FileSample::File> FileSample::next() {
    while (!walk_->levels.empty() && !walk_->stop.stop_requested()) {
        DIR* folder = walk_->levels.back().get();
        const dirent* entry = nextEntry(folder);
        if (entry == nullptr) {
            walk_->levels.pop_back();
            continue;
        }
        const bool canMatter =
            entry->d_type == DT_REG || entry->d_type == DT_DIR || entry->d_type == DT_UNKNOWN;
        if (!canMatter)
            continue;
        const auto info = describe(::dirfd(folder), entry->d_name);
        if (entry->d_type == DT_REG && !info)
            return File{.name = entry->d_name, .allocatedSize = 0};
        if (!info)
            continue;
        if (S_ISREG(info->stx_mode))
            return File{.name = entry->d_name, .allocatedSize = allocatedBytes(*info)};
        if (S_ISDIR(info->stx_mode))
            walk_->enter(entry->d_name, *info);
    }
    return std::nullopt;
}

}  // namespace ulvak::platform
