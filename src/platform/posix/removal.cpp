#include "platform/removal.h"

#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <optional>
#include <string_view>
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

/// 128 bits that nobody can guess, as text.
std::string unguessable() {
    std::array<unsigned char, 16> bits{};
    if (::getentropy(bits.data(), bits.size()) != 0)
        return {};
    std::string text;
    for (const unsigned char byte : bits) {
        constexpr std::string_view digits = "0123456789abcdef";
        text += digits[byte >> 4U];
        text += digits[byte & 15U];
    }
    return text;
}

/// 0, or the number of the error.
int unlink(const Directory& parent, const char* name, int flags) {
    while (::unlinkat(parent.handle(), name, flags) != 0) {
        if (errno != EINTR)
            return errno;
    }
    return 0;
}

/// Where a name in a folder cannot be moved aside before it is removed: not every file system can move
/// without replacing, some copy what they move, and one that is full has no room for a second name.
bool cannotMoveAside(int failure) {
    constexpr std::array<int, 7> failures = {EINVAL, ENOSYS, ENOTSUP, EOPNOTSUPP, EXDEV, ENOSPC, EDQUOT};
    return std::ranges::find(failures, failure) != failures.end();
}

/// Gives something that was moved aside its name back. Where that is taken meanwhile, it becomes visible
/// beside it.
void putBack(int parent, const std::string& aside, const std::string& name) {
    if (posix::moveToFreeName(parent, aside.c_str(), name.c_str()) == 0)
        return;
    constexpr int mostNumbers = 1000;
    for (int number = 2; number < mostNumbers && errno == EEXIST; ++number) {
        const std::string beside = name + " (" + std::to_string(number) + ")";
        if (posix::moveToFreeName(parent, aside.c_str(), beside.c_str()) == 0)
            return;
    }
    // Too long with a number. Dropped by design: what cannot be renamed at all keeps the name that it has.
    (void)posix::moveToFreeName(parent, aside.c_str(), ("Ulvak " + unguessable()).c_str());
}

/// Unlinks the entry `name`, by these flags of `unlinkat`, only if it is `item`; 0, or the number of the
/// error. Nothing can be unlinked by anything but its name, which others can give to something else at any
/// moment. Under a name that nobody knows it stays what it was seen to be.
int unlinkItem(const Directory& parent, const std::string& name, const ItemIdentity& item, int flags) {
    const int folder = parent.handle();
    const auto there = posix::identityAt(folder, name.c_str());
    if (there != item)
        return there ? ESTALE : errno;
    const std::string secret = unguessable();
    const std::string aside = ".ulvak-" + secret;
    if (secret.empty() || posix::movingCopies(folder))
        return unlink(parent, name.c_str(), flags);
    if (posix::moveToFreeName(folder, name.c_str(), aside.c_str()) != 0)
        return cannotMoveAside(errno) ? unlink(parent, name.c_str(), flags) : errno;
    bool isIt = posix::identityAt(folder, aside.c_str()) == item;
    // Another was taken aside, and the item has its name back meanwhile: each becomes what it was.
    if (!isIt && posix::identityAt(folder, name.c_str()) == item &&
        posix::exchange(folder, aside.c_str(), name.c_str()) == 0)
        isIt = posix::identityAt(folder, aside.c_str()) == item;
    const int failure = isIt ? unlink(parent, aside.c_str(), flags) : ESTALE;
    if (failure != 0)
        putBack(folder, aside, name);
    return failure;
}

/// A folder in a folder, as it was when it was listed.
struct Listed {
    std::string name;
    FileNumber number;
};

/// A folder that is being emptied.
struct Level {
    std::string name;
    Directory folder;  ///< closed when too many are open
    FileNumber number;
    /// Folders in it that were listed and not removed yet, the next one last. Forgotten when it is closed:
    /// the listing then starts anew.
    std::vector<Listed> pending;
    int listings = 1;
};

class Removal {
public:
    Removal(const Directory& parent, const ItemIdentity& item, const std::set<FileNumber>& kept,
            const posix::RemovalCalls& calls)
        : parent_(parent),
          item_(item),
          kept_(kept),
          calls_(calls),
          mostOpen_(std::clamp(spareHandles() / 2, fewestOpen, mostOpen)) {}

    std::expected<void, FileError> run(const std::string& name) {
        failedName_ = name;
        const auto there = posix::identityAt(parent_.handle(), name.c_str());
        int failure = there == item_ ? refusal(name) : (there ? ESTALE : errno);
        if (failure == 0)
            failure = enter(parent_, {.name = name, .number = item_.number});
        if (failure == ENOTDIR || failure == ELOOP)
            failure = unlinkItem(parent_, name, item_, 0);
        while (failure == 0 && !levels_.empty())
            failure = step();
        if (failure == 0)
            return {};
        return std::unexpected(FileError{.code = systemError(failure), .path = pathOf(failedName_)});
    }

private:
    /// Why the item will not go, if that is certain: then a folder need not be emptied first.
    [[nodiscard]] int refusal(const std::string& name) const {
        if (::faccessat(parent_.handle(), ".", W_OK | X_OK, AT_EACCESS) != 0)
            return errno;
        struct stat around{};
        struct stat item{};
        const bool isSticky = ::fstat(parent_.handle(), &around) == 0 && (around.st_mode & S_ISVTX) != 0 &&
                              ::fstatat(parent_.handle(), name.c_str(), &item, AT_SYMLINK_NOFOLLOW) == 0;
        const uid_t user = ::geteuid();
        return isSticky && user != 0 && around.st_uid != user && item.st_uid != user ? EPERM : 0;
    }

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

    /// Opens a folder for being listed. One of this user's that may not be becomes one that may.
    std::expected<Directory, std::error_code> open(const Directory& parent, const Listed& listed) {
        const char* name = listed.name.c_str();
        auto folder = parent.openBelow(name);
        if (!folder && isOutOfHandles(folder.error()) && closeOutermost())
            folder = parent.openBelow(name);
        const auto isRefused = [&] { return !folder && folder.error() == std::errc::permission_denied; };
        if (isRefused() && permitInnermost())
            folder = parent.openBelow(name);
        if (isRefused() && posix::permitBelow(parent.handle(), name, listed.number))
            folder = parent.openBelow(name);
        return folder;
    }

    /// Makes the folder `listed` of `parent` the innermost level.
    int enter(const Directory& parent, const Listed& listed) {
        failedName_ = listed.name;
        if (kept_.contains(listed.number))
            return ESTALE;
        auto folder = open(parent, listed);
        if (!folder) {
            // What may not be listed may still be empty.
            if (folder.error() == std::errc::permission_denied && removeEmpty(parent, listed) == 0)
                return 0;
            if (livesElsewhere(folder.error()))
                return removeUnfetched(parent, listed.name);
            // Another volume is mounted here: it is in use, as the kernel says of every mount point.
            return folder.error() == std::errc::cross_device_link ? EBUSY : folder.error().value();
        }
        // Another has taken its place. Nobody has said that it may go.
        if (numberOf(folder->handle()) != listed.number)
            return ESTALE;
        levels_.push_back({.name = listed.name, .folder = std::move(*folder), .number = listed.number});
        if (levels_.size() - closed_ > mostOpen_)
            closeOutermost();
        return 0;
    }

    /// A folder of `parent`, if nothing is in it.
    int removeEmpty(const Directory& parent, const Listed& listed) {
        if (&parent == &parent_)
            return unlinkItem(parent, listed.name, item_, AT_REMOVEDIR);
        const auto there = posix::identityAt(parent.handle(), listed.name.c_str());
        if (!there)
            return errno;
        return there->number == listed.number ? unlink(parent, listed.name.c_str(), AT_REMOVEDIR) : ESTALE;
    }

    /// Whether the folder that is being emptied is this user's and has only now been opened to changes: for
    /// good reason nothing in it may be changed as long as it is to stay.
    bool permitInnermost() { return !levels_.empty() && posix::permit(levels_.back().folder.handle()); }

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
        level.folder.close();
        level.pending = {};
        ++closed_;
        return true;
    }

    /// One step on: a folder entered, a piece of a listing worked off, or a folder left.
    int step() {
        Level& level = levels_.back();
        if (!level.pending.empty()) {
            const Listed folder = std::move(level.pending.back());
            level.pending.pop_back();
            return removeFolder(level.folder, folder);
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

    int removeFolder(const Directory& parent, const Listed& listed) {
        const int failure = enter(parent, listed);
        // It was a folder when it was listed, and another thing has taken its place.
        if (failure == ENOTDIR || failure == ELOOP)
            return ESTALE;
        // Removed meanwhile: as well.
        return failure == ENOENT ? 0 : failure;
    }

    /// The entries of one piece of a listing: folders are kept for later, all else is removed.
    int removeListed(Level& level) {
        while (const posix::NameReader::Entry* entry = reader_.next()) {
            const char* name = entry->name;
            if (entry->isFolder) {
                keepForLater(level, name);
                continue;
            }
            int failure = unlink(level.folder, name, 0);
            if (failure == EACCES && permitInnermost())
                failure = unlink(level.folder, name, 0);
            if (failure == 0 || failure == ENOENT)
                continue;
            if (!isFolder(failure, level.folder, name))
                return failure;
            keepForLater(level, name);
        }
        return 0;
    }

    void keepForLater(Level& level, const char* name) {
        auto there = posix::identityAt(level.folder.handle(), name);
        if (!there && errno == EACCES && permitInnermost())
            there = posix::identityAt(level.folder.handle(), name);
        if (there)  // otherwise it is gone, or the next listing shows it again
            level.pending.push_back({.name = name, .number = there->number});
    }

    /// The innermost folder is empty as far as its listing says: removes it and goes on in the one around it.
    int leave() {
        if (const int failure = reopenAround())
            return failure;
        Level& level = levels_.back();
        const int failure = removeInnermost();
        if ((failure == ENOTEMPTY || failure == EEXIST) && level.listings < mostListings) {
            ++level.listings;
            return ::lseek(level.folder.handle(), 0, SEEK_SET) < 0 ? failAt(levels_.size() - 1, errno) : 0;
        }
        const bool isElsewhere = failure == ENOENT && levels_.size() == 1 && hasNameElsewhere(level.folder);
        if (isElsewhere || failure == ENOTDIR)
            return failAt(levels_.size() - 1, ESTALE);
        if (failure != 0 && failure != ENOENT)
            return failAt(levels_.size() - 1, failure);
        levels_.pop_back();
        return 0;
    }

    /// Whether a folder that is not where it was is anywhere else.
    static bool hasNameElsewhere(const Directory& folder) {
        struct stat info{};
        return ::fstat(folder.handle(), &info) == 0 && info.st_nlink > 0;
    }

    int removeInnermost() {
        const Level& level = levels_.back();
        const Listed listed{.name = level.name, .number = level.number};
        const int failure = removeEmpty(aroundInnermost(), listed);
        if (failure != EACCES || levels_.size() < 2 ||
            !posix::permit(levels_[levels_.size() - 2].folder.handle()))
            return failure;
        return removeEmpty(aroundInnermost(), listed);
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
        if (!folder && folder.error() == std::errc::permission_denied && permitInnermost())
            folder = levels_.back().folder.openParent();
        if (!folder)
            return failAt(levels_.size() - 1, folder.error().value());
        if (numberOf(folder->handle()) != around.number)
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
    const ItemIdentity& item_;
    const std::set<FileNumber>& kept_;
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
    return Removal(parent, item, kept, {}).run(name);
}

std::expected<void, FileError> posix::removeEntry(const Directory& parent, const std::string& name,
                                                  const RemovalCalls& calls) {
    const auto item = identityAt(parent.handle(), name.c_str());
    if (!item)
        return std::unexpected(FileError{.code = lastError(), .path = name});
    return Removal(parent, *item, {}, calls).run(name);
}

// Of many items the last may find no handle left: half of them are for the removal.
HeldEntry::HeldEntry(const Directory& parent, const std::string& name)
    : handle_(spareHandles() > 2 * mostOpen ? posix::holdAt(parent.handle(), name.c_str()) : -1) {}

HeldEntry::~HeldEntry() {
    if (handle_ >= 0)
        ::close(handle_);
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
