#include "platform/folder_facts.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>
#include <vector>

#include "platform/package_name.h"
#include "platform/posix/folder_stream.h"
#include "platform/posix/system.h"

namespace ulvak::platform {
namespace {

const dirent* nextEntry(DIR* stream) {
    const QuietAccess quiet;
    while (const dirent* entry = ::readdir(stream)) {  // NOLINT(concurrency-mt-unsafe): own stream
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..")
            return entry;
    }
    return nullptr;
}

}  // namespace

struct FolderListing::Handle {
    posix::FolderStream stream;
    int number = -1;
};

FolderListing::FolderListing(const std::string& path) : handle_(std::make_unique<Handle>()) {
    handle_->stream = posix::folderStream(posix::openFolder(AT_FDCWD, path.c_str()));
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
    const QuietAccess quiet;
    const auto item = posix::itemAt(handle_->number, name.c_str());
    if (!item || !item->isRegularFile || item->isPlaceholder)
        return std::nullopt;
    return item->length;
}

std::string FolderListing::beginning(const std::string& name, std::size_t count) const {
    const QuietAccess quiet;
    // Looked at before it is opened, for opening a device can have effects of its own; and after, for it may
    // have been swapped in between.
    if (!length(name))
        return {};
    const int handle = posix::openFile(handle_->number, name.c_str());
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
    std::vector<posix::FolderStream> levels;
    std::stop_token stop;

    /// Enters `name`, found in the deepest open folder, if it is a folder to enter.
    void enter(const char* name, const posix::Item& item) {
        if (item.isMountPoint || isPackageName(name) || levels.size() >= mostLevels)
            return;
        if (posix::FolderStream stream =
                posix::folderStream(posix::openFolderBelow(::dirfd(levels.back().get()), name)))
            levels.push_back(std::move(stream));
    }
};

FileSample::FileSample(const std::string& path, std::stop_token stop) : walk_(std::make_unique<Walk>()) {
    walk_->stop = std::move(stop);
    if (posix::FolderStream stream = posix::folderStream(posix::openFolder(AT_FDCWD, path.c_str())))
        walk_->levels.push_back(std::move(stream));
}

FileSample::~FileSample() = default;

std::optional<FileSample::File> FileSample::next() {
    const QuietAccess quiet;
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
        const auto item = posix::itemAt(::dirfd(folder), entry->d_name);
        if (entry->d_type == DT_REG && !item)
            return File{.name = entry->d_name, .allocatedSize = 0};
        if (!item)
            continue;
        if (item->isRegularFile)
            return File{.name = entry->d_name, .allocatedSize = item->allocatedSize};
        if (item->isFolder)
            walk_->enter(entry->d_name, *item);
    }
    return std::nullopt;
}

}  // namespace ulvak::platform
