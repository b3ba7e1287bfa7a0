#include "platform/removal.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <optional>
#include <system_error>
#include <utility>
#include <vector>

#include "platform/posix/removal_calls.h"
#include "platform/posix/system.h"

namespace ulvak::platform {
namespace {

/// Folders held open at a time, one a level; those further up are found again through "..".
constexpr std::size_t mostOpen = 64;
constexpr std::size_t fewestOpen = 4;
/// How often a folder is listed again because something has come into it, or because the file system
/// skips entries when others are removed during a listing.
constexpr int mostListings = 64;

std::error_code systemError(int number) {
    return {number, std::generic_category()};
}

/// As `fileInfo` numbers volumes.
FileNumber numberOf(const struct stat& info) {
    return {posix::volumeNumber(info), info.st_ino};
}

std::optional<FileNumber> numberOf(int handle) {
    struct stat info{};
    if (::fstat(handle, &info) != 0)
        return std::nullopt;
    return numberOf(info);
}

/// 0, or the number of the error.
int unlink(const Directory& parent, const char* name, int flags) {
    while (::unlinkat(parent.handle(), name, flags) != 0) {
        if (errno != EINTR)
            return errno;
    }
    return 0;
}

/// A folder that is being emptied.
struct Level {
    std::string name;
    Directory folder;                  ///< closed when too many are open
    std::optional<FileNumber> number;  ///< known when it is closed
    /// Folders in it that were listed and not removed yet, the next one last. Forgotten when it is closed:
    /// the listing then starts anew.
    std::vector<std::string> pending;
    int listings = 1;
};

class Removal {
public:
    Removal(const Directory& parent, const posix::RemovalCalls& calls)
        : parent_(parent), calls_(calls), mostOpen_(std::clamp(spareHandles() / 2, fewestOpen, mostOpen)) {}

    std::expected<void, FileError> run(const std::string& name) {
        int failure = unlink(parent_, name.c_str(), 0);
        if (isFolder(failure, parent_, name))
            failure = enter(parent_, name);
        while (failure == 0 && !levels_.empty())
            failure = step();
        if (failure == 0)
            return {};
        return std::unexpected(FileError{.code = systemError(failure), .path = pathOf(failedName_)});
    }

private:
    /// Whether unlinking failed because the entry is a folder. Some file systems say so with EPERM, which
    /// means much else besides.
    bool isFolder(int failure, const Directory& parent, const std::string& name) {
        failedName_ = name;
        if (failure != EPERM)
            return failure == EISDIR;
        struct stat info{};
        return ::fstatat(parent.handle(), name.c_str(), &info, AT_SYMLINK_NOFOLLOW) == 0 &&
               S_ISDIR(info.st_mode);
    }

    /// Makes the folder `name` of `parent` the innermost level.
    int enter(const Directory& parent, const std::string& name) {
        auto folder = parent.openBelow(name.c_str());
        if (!folder && isOutOfHandles(folder.error()) && closeOutermost())
            folder = parent.openBelow(name.c_str());
        if (!folder) {
            failedName_ = name;
            // What may not be listed may still be empty.
            if (folder.error() == std::errc::permission_denied &&
                unlink(parent, name.c_str(), AT_REMOVEDIR) == 0)
                return 0;
            if (livesElsewhere(folder.error()))
                return removeUnfetched(parent, name);
            // Another volume is mounted here: it is in use, as the kernel says of every mount point.
            return folder.error() == std::errc::cross_device_link ? EBUSY : folder.error().value();
        }
        levels_.push_back({.name = name, .folder = std::move(*folder)});
        if (levels_.size() - closed_ > mostOpen_)
            closeOutermost();
        return 0;
    }

    /// A folder whose contents live elsewhere goes as it is: nothing is fetched in order to be removed.
    int removeUnfetched(const Directory& parent, const std::string& name) {
        failedName_ = name;
        const bool isGone = calls_.removePlaceholder(parent.handle(), name.c_str()) == 0 || errno == ENOENT;
        return isGone ? 0 : EDEADLK;
    }

    /// Closes the outermost folder that is open, never the innermost two: those are worked in.
    bool closeOutermost() {
        if (levels_.size() < closed_ + 3)
            return false;
        Level& level = levels_[closed_];
        level.number = numberOf(level.folder.handle());
        level.folder.close();
        level.pending = {};
        ++closed_;
        return true;
    }

    /// One step on: a folder entered, a piece of a listing worked off, or a folder left.
    int step() {
        Level& level = levels_.back();
        if (!level.pending.empty()) {
            const std::string name = std::move(level.pending.back());
            level.pending.pop_back();
            return removeFolder(level.folder, name);
        }
        const int piece = calls_.read(reader_, level.folder.handle());
        if (piece > 0)
            return removeListed(level);
        if (piece < 0 && errno == EDEADLK)
            return leaveUnfetched();
        // A folder that somebody else has removed cannot be listed, and need not be.
        if (piece < 0 && errno != ENOENT)
            return failAt(levels_.size() - 1, errno);
        return leave();
    }

    int removeFolder(const Directory& parent, const std::string& name) {
        int failure = enter(parent, name);
        // It was a folder when it was listed. Whatever took its place is in the item now, and goes with it.
        if (failure == ENOTDIR || failure == ELOOP)
            failure = unlink(parent, name.c_str(), 0);
        // Removed or changed again: the next listing tells.
        return failure == ENOENT || failure == EISDIR ? 0 : failure;
    }

    /// The entries of one piece of a listing: folders are kept for later, all else is removed.
    int removeListed(Level& level) {
        while (const posix::NameReader::Entry* entry = reader_.next()) {
            const char* name = entry->name;
            if (entry->isFolder) {
                level.pending.emplace_back(name);
                continue;
            }
            const int failure = unlink(level.folder, name, 0);
            if (failure == 0 || failure == ENOENT)
                continue;
            if (!isFolder(failure, level.folder, name))
                return failure;
            level.pending.emplace_back(name);
        }
        return 0;
    }

    /// The innermost folder is empty as far as its listing says: removes it and goes on in the one around it.
    int leave() {
        if (const int failure = reopenAround())
            return failure;
        Level& level = levels_.back();
        const int failure = unlink(aroundInnermost(), level.name.c_str(), AT_REMOVEDIR);
        if ((failure == ENOTEMPTY || failure == EEXIST) && level.listings < mostListings) {
            ++level.listings;
            return ::lseek(level.folder.handle(), 0, SEEK_SET) < 0 ? failAt(levels_.size() - 1, errno) : 0;
        }
        // Nobody lists what is around the item itself: whatever took its place is there to stay.
        if (failure == ENOTDIR && levels_.size() == 1)
            return failAt(0, ESTALE);
        // Gone already, or something else has taken its place, which the next listing finds.
        if (failure != 0 && failure != ENOENT && failure != ENOTDIR)
            return failAt(levels_.size() - 1, failure);
        levels_.pop_back();
        return 0;
    }

    /// The contents of the innermost folder, or what is left of them, live elsewhere.
    int leaveUnfetched() {
        if (const int failure = reopenAround())
            return failure;
        const std::size_t innermost = levels_.size() - 1;
        if (const int failure = removeUnfetched(aroundInnermost(), levels_[innermost].name))
            return failAt(innermost, failure);
        levels_.pop_back();
        return 0;
    }

    [[nodiscard]] const Directory& aroundInnermost() const {
        return levels_.size() == 1 ? parent_ : levels_[levels_.size() - 2].folder;
    }

    /// Opens the folder around the innermost one again, if it was closed. ".." is no link, but leads
    /// elsewhere when the folder was moved: then nothing more is touched.
    int reopenAround() {
        if (levels_.size() < 2 || levels_[levels_.size() - 2].folder.isOpen())
            return 0;
        Level& around = levels_[levels_.size() - 2];
        auto folder = levels_.back().folder.openParent();
        if (!folder)
            return failAt(levels_.size() - 1, folder.error().value());
        if (!around.number || numberOf(folder->handle()) != around.number)
            return failAt(levels_.size() - 1, ESTALE);
        around.folder = std::move(*folder);
        --closed_;
        return 0;
    }

    /// The failure concerns the folder of a level itself.
    int failAt(std::size_t level, int failure) {
        failedName_ = levels_[level].name;
        levels_.resize(level);
        return failure;
    }

    [[nodiscard]] std::string pathOf(const std::string& name) const {
        std::string path;
        for (const Level& level : levels_)
            path.append(level.name).append("/");
        return path.append(name);
    }

    const Directory& parent_;
    const posix::RemovalCalls& calls_;
    posix::NameReader reader_;
    std::size_t mostOpen_;
    std::vector<Level> levels_;  ///< from the item inwards; the first `closed_` of them are closed
    std::size_t closed_ = 0;
    std::string failedName_;  ///< of the entry in the innermost level that was tried last
};

}  // namespace

std::expected<void, FileError> removeEntry(const Directory& parent, const std::string& name) {
    return posix::removeEntry(parent, name, {});
}

std::expected<void, FileError> removeEntry(const Directory& parent, const std::string& name,
                                           const ItemIdentity& item, const std::set<FileNumber>& kept) {
    (void)kept;
    const auto there = entryIdentity(parent, name);
    if (there != item)
        return std::unexpected(FileError{.code = systemError(there ? ESTALE : ENOENT), .path = name});
    return removeEntry(parent, name);
}

std::expected<void, FileError> posix::removeEntry(const Directory& parent, const std::string& name,
                                                  const RemovalCalls& calls) {
    return Removal(parent, calls).run(name);
}

std::optional<ItemIdentity> entryIdentity(const Directory& parent, const std::string& name) {
    const QuietAccess quiet;
    return posix::identityAt(parent.handle(), name.c_str());
}

std::optional<FileNumber> entryNumber(const Directory& parent, const std::string& name) {
    const QuietAccess quiet;
    struct stat info{};
    if (::fstatat(parent.handle(), name.c_str(), &info, AT_SYMLINK_NOFOLLOW) != 0)
        return std::nullopt;
    return numberOf(info);
}

bool removeEmptyFolder(const Directory& parent, const std::string& name) {
    return unlink(parent, name.c_str(), AT_REMOVEDIR) == 0;
}

std::expected<std::vector<std::string>, std::error_code> entryNames(const Directory& folder) {
    // A listing of its own: that of `folder` has a position which others may rely on.
    const int handle = posix::openFolder(folder.handle(), ".");
    if (handle < 0)
        return std::unexpected(systemError(errno));
    std::vector<std::string> names;
    posix::NameReader reader;
    int piece = 0;
    while ((piece = reader.read(handle)) > 0) {
        while (const posix::NameReader::Entry* entry = reader.next())
            names.emplace_back(entry->name);
    }
    const int failure = errno;
    ::close(handle);
    if (piece < 0)
        return std::unexpected(systemError(failure));
    std::ranges::sort(names);
    return names;
}

}  // namespace ulvak::platform
