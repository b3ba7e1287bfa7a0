#include "platform/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <list>

#include "platform/directory.h"
#include "platform/posix/system.h"

namespace ulvak::platform {
namespace {

using Names = std::expected<std::vector<std::string>, std::error_code>;

/// For a folder opened just for this.
Names namesIn(const std::expected<Directory, std::error_code>& folder) {
    if (!folder)
        return std::unexpected(folder.error());
    std::vector<std::string> names;
    EntryReader reader(Attributes::listed);
    reader.start(*folder);
    while (const DirectoryEntry* entry = reader.next())
        names.emplace_back(entry->name);
    if (reader.error())
        return std::unexpected(reader.error());
    return names;
}

}  // namespace

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

std::optional<std::string> linkTarget(const std::string& path) {
    std::array<char, PATH_MAX> buffer{};
    const ssize_t length = ::readlink(path.c_str(), buffer.data(), buffer.size());
    if (length < 0)
        return std::nullopt;
    return std::string(buffer.data(), static_cast<std::size_t>(length));
}

Names entryNames(const Directory& folder) {
    // Opens its own listing: the position in `folder`'s may be in use.
    Names names = namesIn(folder.openBelow("."));
    if (names)
        std::ranges::sort(*names);
    return names;
}

std::vector<std::string> listNames(const std::string& path) {
    return namesIn(Directory::open(path)).value_or(std::vector<std::string>());
}

std::optional<std::int64_t> fileLength(const Directory& folder, const std::string& name) {
    const QuietAccess quiet;
    const auto item = posix::itemAt(folder.handle(), name.c_str());
    if (!item || !item->isRegularFile || item->isPlaceholder)
        return std::nullopt;
    return item->length;
}

std::string fileBeginning(const Directory& folder, const std::string& name, std::size_t count) {
    const QuietAccess quiet;
    // Checked before opening, since opening a device can have side effects; and after, as it may have been
    // swapped in between.
    if (!fileLength(folder, name))
        return {};
    const FileDescriptor file = posix::openFile(folder.handle(), name.c_str());
    struct stat info{};
    if (!file.isOpen() || ::fstat(file.get(), &info) != 0 || !S_ISREG(info.st_mode))
        return {};
    std::string bytes(count, '\0');
    std::size_t have = 0;
    while (have < count) {
        const ssize_t got = ::read(file.get(), bytes.data() + have, count - have);
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            break;
        have += static_cast<std::size_t>(got);
    }
    bytes.resize(have);
    return bytes;
}

struct FileSample::Walk {
    struct Level {
        Directory folder;
        EntryReader reader{Attributes::listed};
    };

    /// From the topmost folder down to the one being listed.
    std::list<Level> levels;
    std::stop_token stop;

    void push(std::expected<Directory, std::error_code> folder) {
        if (!folder)
            return;
        Level& level = levels.emplace_back();
        level.folder = std::move(*folder);
        level.reader.start(level.folder);
    }

    /// Descends into `entry` of the deepest open folder, if it is a folder to enter.
    void enter(const DirectoryEntry& entry, const posix::Item& item) {
        if (item.isFolder && !item.isMountPoint && !isPackageName(entry.name) && levels.size() < maxLevels)
            push(levels.back().folder.openBelow(entry.terminatedName()));
    }
};

FileSample::FileSample(const std::string& path, std::stop_token stop) : walk_(std::make_unique<Walk>()) {
    walk_->stop = std::move(stop);
    walk_->push(Directory::open(path));
}

FileSample::~FileSample() = default;

std::optional<FileSample::File> FileSample::next() {
    const QuietAccess quiet;
    while (!walk_->levels.empty() && !walk_->stop.stop_requested()) {
        Walk::Level& level = walk_->levels.back();
        const DirectoryEntry* entry = level.reader.next();
        if (entry == nullptr) {
            walk_->levels.pop_back();
            continue;
        }
        if (entry->kind == EntryKind::link)
            continue;
        const auto item = posix::itemAt(level.folder.handle(), entry->terminatedName());
        if (item ? item->isRegularFile : entry->isRegularFile)
            return File{.name = entry->name, .allocatedSize = item ? item->allocatedSize : 0};
        if (item)
            walk_->enter(*entry, *item);
    }
    return std::nullopt;
}

}  // namespace ulvak::platform
