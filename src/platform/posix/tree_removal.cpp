#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <iterator>
#include <list>
#include <mutex>
#include <new>
#include <optional>
#include <ranges>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "platform/posix/removal_calls.h"
#include "platform/posix/system.h"

namespace ulvak::platform::posix {
namespace {

constexpr std::size_t minOpenFolders = 4;
/// The folder that a worker empties, its parent, and two that it opens or closes meanwhile.
constexpr std::size_t handlesPerWorker = 4;
/// How often a folder is listed again because entries have been added, or because the file system skips
/// entries when others are removed during a listing.
constexpr int maxListings = 64;
/// Folders that must be left to wake an idle worker: otherwise it would be woken for each in trees where
/// every folder holds only one or two.
constexpr std::size_t worthWaking = 4;
/// How often an item that was moved aside is looked for again, 2 ms apart.
constexpr int maxTriesAside = 500;

std::optional<FileNumber> numberOf(int handle) {
    struct stat info{};
    if (::fstat(handle, &info) != 0)
        return std::nullopt;
    return FileNumber{volumeNumber(info), info.st_ino};
}

/// A sub-folder as it was when listed.
struct Listed {
    std::string name;
    FileNumber number;
};

/// A folder being emptied. Its listing belongs to one worker, which is then alone in it: the next piece is
/// read only when everything listed so far has been removed. Listed folders may be taken by any worker.
struct Level {
    Level* around = nullptr;  ///< null for the item itself
    std::size_t depth = 0;
    std::size_t order = 0;  ///< among the folders taken from the parent
    std::string name;
    FileNumber number;
    int listings = 1;
    std::list<Level>::iterator self;

    // The following fields are guarded by the removal's mutex.
    Directory folder;  ///< closed when too many are open, but never while it has users
    /// Folders listed but not yet taken, next one last. Cleared when the folder is closed: then the listing
    /// starts over.
    std::vector<Listed> pending;
    std::size_t taken = 0;
    /// How many may be taken in total (less after a failure), and whether the failure is in this folder.
    std::size_t limit = SIZE_MAX;
    bool holdsFailure = false;
    std::size_t inside = 0;  ///< taken but not removed yet
    std::size_t users = 0;   ///< workers in it or in a direct sub-folder
    bool isPermitted = false;
};

/// A position in the order in which a single worker would get there.
using Position = std::vector<std::size_t>;

/// The position of the folder taken from `around` as number `next`.
Position positionOf(const Level& around, std::size_t next) {
    Position position{next};
    for (const Level* level = &around; level != nullptr; level = level->around)
        position.push_back(level->order);
    std::ranges::reverse(position);
    return position;
}

std::string pathOf(const Level* around, const std::string& name) {
    std::vector<const std::string*> names{&name};
    for (; around != nullptr; around = around->around)
        names.push_back(&around->name);
    std::string path;
    for (const std::string* component : names | std::views::reverse)
        path.append(path.empty() ? "" : "/").append(*component);
    return path;
}

/// One removal by several workers. Each descends its own branch, and ascends again as long as nobody else is
/// working below; then it joins the outermost level with folders left. The last worker to leave a level
/// removes its folder. So nobody waits while there is work to take.
class TreeRemoval {
public:
    TreeRemoval(const Directory& parent, const ItemIdentity& item, const std::set<FileNumber>& kept,
                const RemovalCalls& calls)
        : parent_(parent),
          item_(item),
          kept_(kept),
          calls_(calls),
          maxOpen_(std::clamp(spareHandles() / 2, minOpenFolders, maxOpenFolders)),
          maxWorkers_(std::min(calls.workers, maxOpen_ / handlesPerWorker)) {}

    std::expected<void, FileError> run(const std::string& name) {
        Worker worker;
        const auto there = identityAt(parent_.handle(), name.c_str());
        int failure = there == item_ ? refusal(name) : (there ? ESTALE : errno);
        if (failure == 0)
            failure = enter(worker, nullptr, {.name = name, .number = item_.number}, 0);
        if (failure == ENOTDIR || failure == ELOOP)
            failure = unlinkItem(parent_, name, item_, 0);
        if (failure != 0)
            return std::unexpected(FileError{.code = systemError(failure), .path = name});
        {
            std::vector<std::jthread> helpers;
            work(worker, &helpers);
        }
        if (isOutOfMemory_)
            throw std::bad_alloc();
        if (failure_)
            return std::unexpected(std::move(failure_->error));
        return {};
    }

private:
    struct Worker {
        EntryReader reader{Attributes::listed};
        Level* level = nullptr;
        // The entry tried last.
        const Level* failedIn = nullptr;
        std::string failedName;
    };

    /// A folder to remove from a level or, without one, the next piece of the level's listing.
    struct Task {
        Level& level;
        std::optional<Listed> folder;
        std::size_t order = 0;
    };

    struct Failure {
        Position position;
        FileError error;
    };

    static std::error_code systemError(int number) { return {number, std::generic_category()}; }

    void work(Worker& worker, std::vector<std::jthread>* helpers) noexcept {
        try {
            while (auto task = next(worker)) {
                worker.failedIn = &task->level;
                if (const int failure = step(worker, *task))
                    fail(worker, *task, failure);
                if (helpers != nullptr && isWorthSharing())
                    startHelpers(*helpers);
            }
        } catch (const std::bad_alloc&) {
            const std::scoped_lock lock(mutex_);
            isOutOfMemory_ = true;
            condition_.notify_all();
        }
    }

    /// True once: a thread costs more than removing a few folders.
    bool isWorthSharing() {
        if (isShared_ || maxWorkers_ < 2)
            return false;
        const std::scoped_lock lock(mutex_);
        isShared_ = entered_ >= calls_.foldersAlone && outermostToShare() != nullptr;
        return isShared_;
    }

    void startHelpers(std::vector<std::jthread>& helpers) {
        try {
            for (std::size_t number = 1; number < maxWorkers_; ++number)
                helpers.emplace_back([this] { help(); });
        } catch (const std::system_error&) {
            return;  // Dropped by design: with fewer threads the removal only takes longer.
        } catch (const std::bad_alloc&) {
            return;  // Likewise; if there is no memory at all, the removal itself will fail.
        }
    }

    void help() noexcept {
        try {
            Worker worker;
            work(worker, nullptr);
        } catch (const std::bad_alloc&) {
            return;  // As if the thread had not been started.
        }
    }

    /// A worker's next task; nullopt when all is done, or nothing more may be.
    std::optional<Task> next(Worker& worker) {
        std::unique_lock lock(mutex_);
        while (!isOutOfMemory_) {
            if (Level* level = worker.level; level != nullptr) {
                if (mayGoOn(*level) && !level->pending.empty())
                    return take(*level);
                // Of several workers that find nothing left, the last one continues.
                if (mayGoOn(*level) && level->inside == 0 && level->users == 1)
                    return Task{.level = *level, .folder = {}};
                use(*level, -1);
                worker.level = nullptr;
                --active_;
            }
            if (Level* level = outermostToShare(); level != nullptr) {
                use(*level, 1);
                worker.level = level;
                ++active_;
                continue;
            }
            if (active_ == 0) {
                condition_.notify_all();
                break;
            }
            ++waiting_;
            condition_.wait(lock);
            --waiting_;
        }
        return std::nullopt;
    }

    Task take(Level& level) {
        Task task{.level = level, .folder = std::move(level.pending.back()), .order = level.taken++};
        level.pending.pop_back();
        ++level.inside;
        if (--pending_ >= worthWaking && waiting_ > 0)
            condition_.notify_one();
        return task;
    }

    static void use(Level& level, int workers) {
        for (Level* used : {&level, level.around}) {
            if (used != nullptr)
                used->users += static_cast<std::size_t>(workers);
        }
    }

    /// After a failure, only what a single worker would have reached before it is still removed. So the
    /// reported failure is deterministic, as long as no folder has to be listed again.
    [[nodiscard]] static bool mayGoOn(const Level& level) { return level.taken < level.limit; }

    /// Sets a level's limit after a failure at `failed`. The parent's must be set already.
    static void limit(Level& level, const Position& failed) {
        level.holdsFailure = false;
        if (level.around != nullptr && !level.around->holdsFailure) {
            level.limit = level.around->limit;
            return;
        }
        const std::size_t there = failed[level.depth];
        const std::size_t inside = level.depth + 1;
        level.holdsFailure = level.order == there && inside < failed.size();
        if (level.holdsFailure)
            level.limit = failed[inside] + (inside + 1 < failed.size() ? 1 : 0);
        else
            level.limit = level.order < there ? SIZE_MAX : 0;
    }

    [[nodiscard]] Level* outermostToShare() const {
        Level* outermost = nullptr;
        for (Level* level : open_) {
            if (!level->pending.empty() && (outermost == nullptr || level->depth < outermost->depth) &&
                mayGoOn(*level))
                outermost = level;
        }
        return outermost;
    }

    void fail(Worker& worker, const Task& task, int failure) {
        FileError error{.code = systemError(failure), .path = pathOf(worker.failedIn, worker.failedName)};
        const std::scoped_lock lock(mutex_);
        Position position = positionOf(task.level, task.folder ? task.order : task.level.taken);
        if (failure_ && failure_->position <= position)
            return;
        for (Level& level : levels_)  // parents come first
            limit(level, position);
        failure_ = {.position = std::move(position), .error = std::move(error)};
    }

    /// Blames a level's own folder for the failure.
    static int failAt(Worker& worker, const Level& level, int failure) {
        worker.failedIn = level.around;
        worker.failedName = level.name;
        return failure;
    }

    /// Why the item certainly cannot be removed; then its contents are not touched. 0 if unknown.
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

    /// Whether unlinking failed because the entry is a folder. Some file systems report EPERM, which can mean
    /// much else.
    static bool isFolder(Worker& worker, int failure, const Directory& parent, const std::string& name) {
        worker.failedName = name;
        if (failure != EPERM)
            return failure == EISDIR;
        struct stat info{};
        return ::fstatat(parent.handle(), name.c_str(), &info, AT_SYMLINK_NOFOLLOW) == 0 &&
               S_ISDIR(info.st_mode);
    }

    [[nodiscard]] const Directory& folderOf(const Level* level) const {
        return level != nullptr ? level->folder : parent_;
    }

    /// Retries while handles have run out: other threads are about to release some.
    template <typename Open>
    std::expected<Directory, std::error_code> openPatiently(Open open) {
        constexpr int maxTries = 200;
        auto folder = open();
        for (int tries = 1; !folder && isOutOfHandles(folder.error()) && tries < maxTries; ++tries) {
            if (!closeOutermost()) {
                if (isAlone())
                    break;
                std::this_thread::sleep_for(std::chrono::milliseconds(5));
            }
            folder = open();
        }
        return folder;
    }

    bool isAlone() {
        const std::scoped_lock lock(mutex_);
        return active_ < 2;
    }

    /// Opens a folder for listing, granting this user permission first if it is the user's own.
    std::expected<Directory, std::error_code> open(Level* around, const Listed& listed) {
        const Directory& parent = folderOf(around);
        const char* name = listed.name.c_str();
        auto folder = openPatiently([&] { return parent.openBelow(name); });
        const auto isRefused = [&] { return !folder && folder.error() == std::errc::permission_denied; };
        if (isRefused() && permitLevel(around))
            folder = parent.openBelow(name);
        if (isRefused() && permitBelow(parent.handle(), name, listed.number))
            folder = parent.openBelow(name);
        return folder;
    }

    /// Makes the folder `listed` of `around` this worker's level, or removes it if it need not be entered.
    int enter(Worker& worker, Level* around, const Listed& listed, std::size_t order) {
        worker.failedName = listed.name;
        if (kept_.contains(listed.number))
            return ESTALE;
        auto folder = open(around, listed);
        if (!folder) {
            // A folder that may not be listed may still be empty.
            if (folder.error() == std::errc::permission_denied && removeEmpty(around, listed) == 0)
                return 0;
            if (isDataless(folder.error()))
                return removeUnfetched(around, listed.name);
            // A mount point: busy, as the kernel says of them.
            return folder.error() == std::errc::cross_device_link ? EBUSY : folder.error().value();
        }
        // Something else has taken its place, and nobody asked to remove that.
        if (numberOf(folder->handle()) != listed.number)
            return ESTALE;
        push(worker, around, listed, order, std::move(*folder));
        return 0;
    }

    void push(Worker& worker, Level* around, const Listed& listed, std::size_t order, Directory folder) {
        const std::scoped_lock lock(mutex_);
        Level& level = levels_.emplace_back();
        level.around = around;
        level.depth = around != nullptr ? around->depth + 1 : 0;
        level.order = order;
        level.name = listed.name;
        level.number = listed.number;
        level.folder = std::move(folder);
        level.self = std::prev(levels_.end());
        if (failure_)
            limit(level, failure_->position);
        open_.push_back(&level);
        ++entered_;
        use(level, 1);
        if (around != nullptr)
            use(*around, -1);
        else
            ++active_;
        worker.level = &level;
        if (open_.size() > maxOpen_)
            closeOutermostLocked();
    }

    /// Removes a folder of `around`, if it is empty.
    int removeEmpty(const Level* around, const Listed& listed) {
        if (around == nullptr)
            return unlinkItem(parent_, listed.name, item_, AT_REMOVEDIR);
        const auto there = identityAt(around->folder.handle(), listed.name.c_str());
        if (!there)
            return errno;
        return there->number == listed.number ? unlink(around->folder, listed.name.c_str(), AT_REMOVEDIR)
                                              : ESTALE;
    }

    /// Whether a worker has just granted itself write permission on the user's own folder. Its contents were
    /// protected for a reason and may change only if the folder goes too.
    bool permitLevel(Level* level) {
        if (level == nullptr)
            return false;
        const std::scoped_lock lock(mutex_);
        level->isPermitted = permit(level->folder.handle()) || level->isPermitted;
        return level->isPermitted;
    }

    /// Removes a dataless folder as it is, without fetching its contents.
    int removeUnfetched(const Level* around, const std::string& name) {
        const int handle = folderOf(around).handle();
        const bool isGone = calls_.removePlaceholder(handle, name.c_str()) == 0 || errno == ENOENT;
        return isGone ? 0 : EDEADLK;
    }

    bool closeOutermost() {
        const std::scoped_lock lock(mutex_);
        return closeOutermostLocked();
    }

    /// Closes the outermost folder that is not in use and has no direct sub-folder in use.
    bool closeOutermostLocked() {
        Level* outermost = nullptr;
        for (Level* level : open_) {
            if (level->users == 0 && (outermost == nullptr || level->depth < outermost->depth))
                outermost = level;
        }
        if (outermost == nullptr)
            return false;
        outermost->folder.close();
        pending_ -= outermost->pending.size();
        outermost->pending = {};
        std::erase(open_, outermost);
        return true;
    }

    /// Enters a folder, processes one piece of a listing, or leaves a folder.
    int step(Worker& worker, Task& task) {
        Level& level = task.level;
        if (task.folder)
            return removeFolder(worker, level, *task.folder, task.order);
        const auto isThere = calls_.read(worker.reader, level.folder);
        if (isThere.value_or(false))
            return removeListed(worker, level);
        if (!isThere && isDataless(isThere.error()))
            return leaveUnfetched(worker, level);
        // A folder that somebody else has removed cannot be listed, and need not be.
        if (!isThere && isThere.error() != std::errc::no_such_file_or_directory)
            return failAt(worker, level, isThere.error().value());
        return leave(worker, level);
    }

    int removeFolder(Worker& worker, Level& around, const Listed& listed, std::size_t order) {
        const int failure = enter(worker, &around, listed, order);
        if (worker.level != &around)
            return 0;
        // It was a folder when listed; something else has taken its place.
        if (failure == ENOTDIR || failure == ELOOP)
            return ESTALE;
        // Removed by others: that is fine too.
        if (failure != 0 && failure != ENOENT)
            return failure;
        const std::scoped_lock lock(mutex_);
        --around.inside;
        return 0;
    }

    /// Processes one piece of a listing: keeps folders for later, removes everything else.
    int removeListed(Worker& worker, Level& level) {
        std::vector<Listed> folders;
        while (const DirectoryEntry* entry = worker.reader.nextOfPiece()) {
            const char* name = entry->terminatedName();
            if (entry->kind != EntryKind::directory) {
                int failure = unlink(level.folder, name, 0);
                if (failure == EACCES && permitLevel(&level))
                    failure = unlink(level.folder, name, 0);
                if (failure == 0 || failure == ENOENT)
                    continue;
                if (!isFolder(worker, failure, level.folder, name))
                    return failure;
            }
            auto there = identityAt(level.folder.handle(), name);
            if (!there && errno == EACCES && permitLevel(&level))
                there = identityAt(level.folder.handle(), name);
            if (there)  // otherwise it is gone, or the next listing shows it again
                folders.push_back({.name = name, .number = there->number});
        }
        const std::scoped_lock lock(mutex_);
        level.pending = std::move(folders);
        pending_ += level.pending.size();
        return 0;
    }

    /// The folder is empty according to its listing: removes it and continues in its parent.
    int leave(Worker& worker, Level& level) {
        if (const int failure = reopenAround(worker, level))
            return failure;
        const Listed listed{.name = level.name, .number = level.number};
        int failure = removeEmpty(level.around, listed);
        if (failure == EACCES && permitLevel(level.around))
            failure = removeEmpty(level.around, listed);
        for (int tries = 1; isAside(level, failure) && tries < maxTriesAside; ++tries) {
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
            failure = removeEmpty(level.around, listed);
        }
        if ((failure == ENOTEMPTY || failure == EEXIST) && level.listings < maxListings) {
            ++level.listings;
            return ::lseek(level.folder.handle(), 0, SEEK_SET) < 0 ? failAt(worker, level, errno) : 0;
        }
        if (isAside(level, failure) || failure == ENOTDIR)
            return failAt(worker, level, ESTALE);
        if (failure != 0 && failure != ENOENT)
            return failAt(worker, level, failure);
        pop(worker, level);
        return 0;
    }

    /// Whether the item, no longer at its place, has another name: briefly, if another removal has moved it
    /// aside; otherwise because somebody keeps it.
    static bool isAside(const Level& level, int failure) {
        struct stat info{};
        return failure == ENOENT && level.around == nullptr && ::fstat(level.folder.handle(), &info) == 0 &&
               info.st_nlink > 0;
    }

    /// The (remaining) contents of the folder are remote.
    int leaveUnfetched(Worker& worker, Level& level) {
        if (const int failure = reopenAround(worker, level))
            return failure;
        if (const int failure = removeUnfetched(level.around, level.name))
            return failAt(worker, level, failure);
        pop(worker, level);
        return 0;
    }

    /// Drops a level whose folder is gone. Closing a folder's last handle frees its contents on disk, so the
    /// folder is closed after the lock is released, when nobody has to wait for it.
    void pop(Worker& worker, Level& level) {
        std::list<Level> gone;
        const std::scoped_lock lock(mutex_);
        Level* around = level.around;
        use(level, -1);
        std::erase(open_, &level);
        gone.splice(gone.begin(), levels_, level.self);
        worker.level = around;
        if (around == nullptr) {
            --active_;
            return;
        }
        use(*around, 1);
        --around->inside;
    }

    /// Reopens the parent of a level if it was closed. ".." is not a link, but leads elsewhere if the folder
    /// was moved: then nothing more is touched.
    int reopenAround(Worker& worker, Level& level) {
        if (level.around == nullptr || isOpen(*level.around))
            return 0;
        Level& around = *level.around;
        const auto openParent = [&] { return level.folder.openParent(); };
        auto folder = openPatiently(openParent);
        if (!folder && folder.error() == std::errc::permission_denied && permitLevel(&level))
            folder = openPatiently(openParent);
        if (!folder)
            return failAt(worker, level, folder.error().value());
        if (numberOf(folder->handle()) != around.number)
            return failAt(worker, level, ESTALE);
        const std::scoped_lock lock(mutex_);
        if (!around.folder.isOpen()) {  // otherwise another worker has already reopened it
            around.folder = std::move(*folder);
            open_.push_back(&around);
        }
        return 0;
    }

    bool isOpen(const Level& level) {
        const std::scoped_lock lock(mutex_);
        return level.folder.isOpen();
    }

    const Directory& parent_;
    const ItemIdentity& item_;
    const std::set<FileNumber>& kept_;
    const RemovalCalls& calls_;
    const std::size_t maxOpen_;
    const std::size_t maxWorkers_;
    bool isShared_ = false;

    std::mutex mutex_;  ///< guards everything below; taken a few times per folder, never per file
    std::condition_variable condition_;
    std::list<Level> levels_;
    std::vector<Level*> open_;  ///< those whose folder is open
    std::size_t entered_ = 0;
    std::size_t active_ = 0;  ///< workers with a level; at 0, nothing is left to do
    std::size_t waiting_ = 0;
    std::size_t pending_ = 0;         ///< in all levels
    std::optional<Failure> failure_;  ///< the first in the order of a single worker
    bool isOutOfMemory_ = false;
};

}  // namespace

std::expected<void, FileError> removeTree(const Directory& parent, const std::string& name,
                                          const ItemIdentity& item, const std::set<FileNumber>& kept,
                                          const RemovalCalls& calls) {
    return TreeRemoval(parent, item, kept, calls).run(name);
}

}  // namespace ulvak::platform::posix
