#include "scan/tree_walk.h"

#include <algorithm>
#include <chrono>
#include <deque>
#include <iterator>
#include <mutex>
#include <new>
#include <optional>
#include <ranges>
#include <system_error>
#include <thread>
#include <utility>

#include "core/checked_add.h"
#include "core/largest_first.h"
#include "core/paths.h"
#include "platform/directory.h"
#include "platform/files.h"

namespace ulvak {
namespace {

/// The current path is published for the top three levels only, so that it changes at a readable pace.
constexpr int maxPublishedDepth = 2;
/// Handles a worker needs for the folder it lists and on the way to it.
constexpr std::size_t handlesPerWorker = 3;
/// Reserved for the rest of the program.
constexpr std::size_t handlesForOthers = 8;
/// Buffers that a huge folder grew beyond this are freed instead of reused.
constexpr std::size_t maxKeptBytes = 64 * 1024;

/// A missing date counts as the distant past.
constexpr FileTime distantPast = FileTime::min();

std::optional<FileTime> knownDate(FileTime date) {
    return date == distantPast ? std::nullopt : std::optional(date);
}

/// At most a quarter of the handles goes to workers: keeping folders open saves more than extra workers do.
std::size_t affordableWorkers(std::size_t wanted, std::size_t spareHandles) {
    return std::min(wanted, std::max<std::size_t>(1, spareHandles / (4 * handlesPerWorker)));
}

template <typename T>
void clearAndTrim(T& buffer) {
    buffer.clear();
    if (buffer.capacity() * sizeof(typename T::value_type) > maxKeptBytes)
        buffer.shrink_to_fit();
}

void raise(std::atomic<FileTime::rep>& newest, FileTime::rep date) {
    FileTime::rep known = newest.load(std::memory_order_relaxed);
    while (known < date && !newest.compare_exchange_weak(known, date, std::memory_order_relaxed)) {
    }
}

/// A sub-folder waiting to be entered.
struct SubFolder {
    std::size_t nameOffset = 0;
    FileTime modified = distantPast;
};

}  // namespace

struct TreeWalk::Totals {
    std::int64_t size = 0;
    std::int64_t fileCount = 0;
    FileTime newest = distantPast;
};

/// The result of listing one folder, or those pieces of it that one worker took. One per worker, reused.
struct TreeWalk::Listing {
    /// Where a piece begins in the vectors; recorded from the second piece on.
    struct Piece {
        std::size_t number = 0;
        std::size_t subFolder = 0;
        std::size_t keptFile = 0;
    };

    Totals files;
    LinkedFiles linked;
    std::int64_t countedBytes = 0;      ///< those that cannot turn out to have been counted already
    std::vector<DirNode> keptFiles;     ///< in listing order
    std::vector<SubFolder> subFolders;  ///< in listing order
    std::string names;                  ///< of the sub-folders, each NUL-terminated
    NotedNames::Set noted;
    std::vector<Piece> pieces;
    bool isWhole = true;  ///< false: the listing could not be read to its end

    void clear() {
        files = {};
        linked.clear();
        countedBytes = 0;
        keptFiles.clear();
        noted.reset();
        pieces.clear();
        isWhole = true;
        clearAndTrim(subFolders);
        clearAndTrim(names);
    }
    void addFolder(std::string_view name, FileTime modified);
    void add(const platform::DirectoryEntry& file, std::int64_t keepThreshold);
    /// Merges what other workers found in the same folder, in piece order.
    void absorb(std::vector<Listing>& others);

private:
    void putInOrder(std::vector<Listing>& parts);
};

void TreeWalk::Listing::addFolder(std::string_view name, FileTime modified) {
    subFolders.push_back({.nameOffset = names.size(), .modified = modified});
    names.append(name).push_back('\0');
}

void TreeWalk::Listing::add(const platform::DirectoryEntry& file, std::int64_t keepThreshold) {
    ++files.fileCount;
    files.newest = std::max(files.newest, file.modified.value_or(distantPast));
    addChecked(files.size, file.allocatedSize);
    std::optional<LinkedFile> link;
    if (file.names < 2) {
        addChecked(countedBytes, file.allocatedSize);
    } else {
        constexpr std::uint32_t maxNames = LinkedFile::maxNames;
        link = {.number = file.number,
                .size = file.allocatedSize,
                .volume = file.volume,
                .names = static_cast<std::uint16_t>(std::min(file.names, maxNames)),
                .seen = 1};
        const LinkedFiles::Effect effect = linked.add(*link);
        addChecked(files.size, -effect.repeated);
        addChecked(countedBytes, effect.completed);
    }
    if (file.allocatedSize >= keepThreshold)
        keptFiles.push_back({.url = std::string(file.name),
                             .size = file.allocatedSize,
                             .fileCount = 1,
                             .heldElsewhere = link ? file.allocatedSize : 0,
                             .modified = file.modified,
                             .linked = link});
}

void TreeWalk::Listing::absorb(std::vector<Listing>& others) {
    if (others.empty())
        return;
    for (Listing& other : others) {
        addChecked(files.size, other.files.size);
        addChecked(files.fileCount, other.files.fileCount);
        files.newest = std::max(files.newest, other.files.newest);
        addChecked(countedBytes, other.countedBytes);
        const LinkedFiles::Effect effect = linked.absorb(other.linked);
        addChecked(files.size, -effect.repeated);
        addChecked(countedBytes, effect.completed);
        noted |= other.noted;
        isWhole = isWhole && other.isWhole;
    }
    Listing& own = others.emplace_back();
    std::swap(own.keptFiles, keptFiles);
    std::swap(own.subFolders, subFolders);
    std::swap(own.names, names);
    std::swap(own.pieces, pieces);
    own.pieces.insert(own.pieces.begin(), Piece());
    putInOrder(others);
}

void TreeWalk::Listing::putInOrder(std::vector<Listing>& parts) {
    struct Found {
        Piece piece;
        Piece next;
        Listing* part = nullptr;
    };
    std::vector<Found> found;
    for (Listing& part : parts) {
        part.pieces.push_back({.subFolder = part.subFolders.size(), .keptFile = part.keptFiles.size()});
        for (std::size_t i = 0; i + 1 < part.pieces.size(); ++i)
            found.push_back({.piece = part.pieces[i], .next = part.pieces[i + 1], .part = &part});
    }
    std::ranges::sort(found, {}, [](const Found& one) { return one.piece.number; });
    for (const auto& [piece, next, part] : found) {
        for (std::size_t i = piece.subFolder; i < next.subFolder; ++i)
            addFolder(part->names.data() + part->subFolders[i].nameOffset, part->subFolders[i].modified);
        for (std::size_t i = piece.keptFile; i < next.keptFile; ++i)
            keptFiles.push_back(std::move(part->keptFiles[i]));
    }
}

/// A listed folder whose sub-folders are being walked, by one worker or several.
struct TreeWalk::Frame {
    Frame* parent = nullptr;  ///< null for `top_`
    std::size_t index = 0;    ///< its position among the parent's sub-folders
    int depth = -1;           ///< 0 for a root
    const SkipTree* skips = nullptr;
    bool keepsHandle = true;        ///< false: only the worker that made the frame may use it
    platform::Directory directory;  ///< open until the last sub-folder has been entered
    std::optional<platform::ItemIdentity> identity;  ///< set when the folder is not kept open

    std::vector<SubFolder> subFolders;
    std::string names;
    NotedNames::Set noted;
    std::vector<DirNode> keptFiles;

    std::atomic<std::size_t> nextSubFolder = 0;
    std::atomic<std::size_t> unopened = 0;
    /// Sub-folders not yet folded in, plus workers that have this frame on their stacks.
    std::atomic<std::size_t> unfinished = 0;

    std::atomic<std::int64_t> size = 0;
    std::atomic<std::int64_t> fileCount = 0;
    std::atomic<FileTime::rep> newest = distantPast.time_since_epoch().count();
    struct KeptFolder {
        std::size_t index = 0;
        DirNode node;
    };
    std::mutex keptMutex;
    std::vector<KeptFolder> keptFolders;  ///< guarded by `keptMutex`
    LinkedFiles linked;                   ///< guarded by `keptMutex`
    Frame* nextUnused = nullptr;

    [[nodiscard]] const char* subFolderName(std::size_t i) const {
        return names.data() + subFolders[i].nameOffset;
    }
    [[nodiscard]] const char* name() const { return parent->subFolderName(index); }
    [[nodiscard]] bool isTop() const { return parent == nullptr; }
    [[nodiscard]] bool isRoot() const { return depth == 0; }
    [[nodiscard]] bool hasMore() const {
        return nextSubFolder.load(std::memory_order_relaxed) < subFolders.size();
    }
    [[nodiscard]] bool canBeJoined() const { return keepsHandle && hasMore(); }
    [[nodiscard]] Totals totals() const {
        return {.size = size.load(std::memory_order_relaxed),
                .fileCount = fileCount.load(std::memory_order_relaxed),
                .newest = FileTime(FileTime::duration(newest.load(std::memory_order_relaxed)))};
    }
    void fold(const Totals& below) {
        addChecked(size, below.size);
        addChecked(fileCount, below.fileCount);
        raise(newest, below.newest.time_since_epoch().count());
    }

    /// The path of a sub-folder, relative to the root.
    [[nodiscard]] std::string pathBelowRoot(std::size_t subFolder) const;
    /// The full path of a sub-folder.
    [[nodiscard]] std::string path(std::size_t subFolder) const;
    [[nodiscard]] const Frame& rootFrame() const;
    /// The kept children of the whole folder, largest first; equal sizes in listing order, folders before
    /// files.
    [[nodiscard]] std::vector<DirNode> takeChildren();
    void reset();
};

std::string TreeWalk::Frame::pathBelowRoot(std::size_t subFolder) const {
    std::vector<const char*> components{subFolderName(subFolder)};
    for (const Frame* frame = this; !frame->isTop() && !frame->isRoot(); frame = frame->parent)
        components.push_back(frame->name());
    std::string path;
    for (const char* component : components | std::views::reverse) {
        if (!path.empty())
            path += '/';
        path += component;
    }
    return path;
}

std::string TreeWalk::Frame::path(std::size_t subFolder) const {
    return isTop() ? subFolderName(subFolder) : Paths::join(rootFrame().name(), pathBelowRoot(subFolder));
}

const TreeWalk::Frame& TreeWalk::Frame::rootFrame() const {
    const Frame* frame = this;
    while (!frame->isRoot())
        frame = frame->parent;
    return *frame;
}

std::vector<DirNode> TreeWalk::Frame::takeChildren() {
    std::vector<DirNode> children;
    const std::scoped_lock lock(keptMutex);
    children.reserve(keptFolders.size() + keptFiles.size());
    std::ranges::sort(keptFolders, {}, &KeptFolder::index);
    for (KeptFolder& kept : keptFolders)
        children.push_back(std::move(kept.node));
    std::ranges::move(keptFiles, std::back_inserter(children));
    keptFolders.clear();
    keptFiles.clear();
    return children;
}

void TreeWalk::Frame::reset() {
    directory.close();
    keepsHandle = true;
    identity.reset();
    clearAndTrim(subFolders);
    clearAndTrim(names);
    nextSubFolder = 0;
}

/// An open folder that a worker reached on its way; others are opened relative to it.
struct TreeWalk::OpenFolder {
    platform::Directory directory;
    std::optional<platform::ItemIdentity> identity;
    int depth = 0;

    [[nodiscard]] bool isAt(const Frame& frame) const {
        return directory.isOpen() && identity && identity == frame.identity;
    }
    /// Moves to the folder of a frame that is not kept open, if it is still where it was.
    [[nodiscard]] std::error_code goTo(const Frame& frame);

private:
    [[nodiscard]] std::error_code goUp(const Frame& frame);
};

/// The folders on the way up may have moved, which does not matter: the last one is used only if it is the
/// one that was listed.
std::error_code TreeWalk::OpenFolder::goUp(const Frame& frame) {
    identity.reset();
    while (depth > frame.depth) {
        auto above = directory.openParent();
        if (!above)
            return above.error();
        directory = std::move(*above);
        --depth;
    }
    identity = directory.identity();
    return {};
}

std::error_code TreeWalk::OpenFolder::goTo(const Frame& frame) {
    if (isAt(frame))
        return {};
    if (directory.isOpen() && depth > frame.depth && depth - frame.depth <= frame.depth) {
        const std::error_code error = goUp(frame);
        if (platform::isOutOfHandles(error))
            return error;
        if (!error && isAt(frame))
            return {};
    }
    directory.close();
    auto found = frame.rootFrame().directory.openBelow(frame.parent->pathBelowRoot(frame.index).c_str());
    if (!found)
        return found.error();
    const auto foundIdentity = found->identity();
    if (foundIdentity != frame.identity)
        return std::make_error_code(std::errc::no_such_file_or_directory);
    directory = std::move(*found);
    identity = foundIdentity;
    depth = frame.depth;
    return {};
}

/// A thread of the walk. Only its own thread changes `stack`, holding the mutex; other threads read it under
/// the mutex.
struct TreeWalk::Worker {
    std::mutex mutex;
    std::vector<Frame*> stack;  ///< guarded by `mutex`; outermost first
    platform::EntryReader reader;
    Listing listing;
    bool isListingShared = false;  ///< guarded by `mutex`; whether others may join `reader`
    std::vector<Listing> found;    ///< guarded by `mutex`; results of the workers that joined
    std::atomic<unsigned> joined =
        0;  ///< workers still joined; while there are any, `reader` and its folder must not change
    OpenFolder place;
    std::deque<Frame>
        frames;  ///< all frames it made; kept until the walk ends, since other workers may still use them
    Frame* unused =
        nullptr;  ///< free list of finished frames, for their buffers; may have been made by any worker
};

/// While this lives, others may join a worker's reader. The destructor waits until all of them have left.
class TreeWalk::SharedListing {
public:
    explicit SharedListing(Worker& first) : first_(first) { setShared(true); }
    ~SharedListing() {
        setShared(false);
        for (unsigned left = first_.joined.load(); left > 0; left = first_.joined.load())
            first_.joined.wait(left);
    }
    SharedListing(const SharedListing&) = delete;
    SharedListing& operator=(const SharedListing&) = delete;

private:
    void setShared(bool isShared) {
        const std::scoped_lock lock(first_.mutex);
        first_.isListingShared = isShared;
    }

    Worker& first_;
};

TreeWalk::TreeWalk(std::vector<Root> roots, Options options, ScanProgress& progress, std::stop_token stop)
    : roots_(std::move(roots)),
      options_(options),
      progress_(progress),
      stop_(std::move(stop)),
      workers_(affordableWorkers(options.workers, platform::spareHandles())),
      top_(std::make_unique<Frame>()) {
    for (const Root& root : roots_) {
        top_->subFolders.push_back({.nameOffset = top_->names.size()});
        top_->names.append(root.path).push_back('\0');
    }
    top_->unopened = roots_.size();
    top_->unfinished = roots_.size();
    const std::size_t reserved = workers_.size() * handlesPerWorker + roots_.size() + handlesForOthers;
    spareHandles_ = static_cast<std::int64_t>(platform::spareHandles()) - static_cast<std::int64_t>(reserved);
}

TreeWalk::~TreeWalk() = default;

std::vector<DirNode> TreeWalk::run() {
    if (roots_.empty())
        return {};
    push(workers_.front(), *top_);
    {
        std::vector<std::jthread> threads;
        threads.reserve(workers_.size());
        for (auto worker = std::next(workers_.begin()); worker != workers_.end(); ++worker) {
            try {
                threads.emplace_back([this, &own = *worker] { work(own); });
            } catch (const std::system_error&) {
                break;  // Dropped by design: with fewer threads the walk only takes longer.
            } catch (const std::bad_alloc&) {
                break;  // Likewise; if there is no memory at all, the walk itself will fail.
            }
        }
        work(workers_.front());
    }
    if (isOutOfMemory_)
        throw std::bad_alloc();
    std::vector<DirNode> nodes;
    std::ranges::sort(top_->keptFolders, {}, &Frame::KeptFolder::index);
    for (Frame::KeptFolder& kept : top_->keptFolders)
        nodes.push_back(std::move(kept.node));
    return nodes;
}

void TreeWalk::work(Worker& worker) noexcept {
    const platform::QuietAccess quiet;
    try {
        walk(worker);
    } catch (const std::bad_alloc&) {
        giveUp();
    }
}

void TreeWalk::walk(Worker& worker) {
    while (Frame* frame = nextFrame(worker)) {
        const std::size_t index = frame->nextSubFolder.fetch_add(1, std::memory_order_relaxed);
        if (index < frame->subFolders.size()) {
            enter(worker, *frame, index);
        } else {
            {
                const std::scoped_lock lock(worker.mutex);
                worker.stack.pop_back();
            }
            release(worker, frame);
        }
    }
}

/// Half-done work is left as is: nobody reads it any more.
void TreeWalk::giveUp() {
    isOutOfMemory_.store(true);
    finished_.store(true);
    wakeUps_.fetch_add(1);
    wakeUps_.notify_all();
}

/// The frame to take the next sub-folder from; null when the whole walk is done.
TreeWalk::Frame* TreeWalk::nextFrame(Worker& worker) {
    if (isOutOfMemory_.load(std::memory_order_relaxed))
        return nullptr;
    if (!worker.stack.empty())
        return worker.stack.back();
    Frame* frame = joinAnother(worker);
    if (frame == nullptr)
        frame = waitForFrame(worker);
    if (frame != nullptr) {
        const std::scoped_lock lock(worker.mutex);
        worker.stack.push_back(frame);
    }
    return frame;
}

/// A frame of another worker that still has sub-folders, with this worker counted in its `unfinished`. Picks
/// the outermost one, whose sub-folders are likely the largest.
TreeWalk::Frame* TreeWalk::joinAnother(const Worker& worker) {
    for (Worker& other : workers_) {
        if (&other == &worker)
            continue;
        const std::scoped_lock lock(other.mutex);
        const auto found = std::ranges::find_if(other.stack, &Frame::canBeJoined);
        if (found != other.stack.end()) {
            (*found)->unfinished.fetch_add(1, std::memory_order_relaxed);
            return *found;
        }
    }
    return nullptr;
}

TreeWalk::Frame* TreeWalk::waitForFrame(Worker& worker) {
    while (!finished_.load(std::memory_order_acquire)) {
        // Work added after `seen` was read finds this worker idle and wakes it; work added before is found by
        // the second look.
        const unsigned seen = wakeUps_.load();
        idle_.fetch_add(1);
        Frame* frame = joinAnother(worker);
        Worker* first = frame == nullptr ? joinListing(worker) : nullptr;
        if (frame == nullptr && first == nullptr && !finished_.load())
            wakeUps_.wait(seen);
        idle_.fetch_sub(1);
        if (first != nullptr)
            helpList(worker, *first);
        if (frame == nullptr)
            continue;
        // Each frame wakes one worker; while more is left than two can take, that one wakes the next.
        if (frame->hasMore())
            wakeIdle();
        return frame;
    }
    return nullptr;
}

/// A worker whose large folder this one helps to list from now on, counted in its `joined`.
TreeWalk::Worker* TreeWalk::joinListing(Worker& worker) {
    for (Worker& other : workers_) {
        const std::scoped_lock lock(other.mutex);
        if (other.isListingShared) {
            other.joined.fetch_add(1);
            worker.reader.join(other.reader);
            return &other;
        }
    }
    return nullptr;
}

void TreeWalk::push(Worker& worker, Frame& frame) {
    frame.unfinished.fetch_add(1, std::memory_order_relaxed);
    {
        const std::scoped_lock lock(worker.mutex);
        worker.stack.push_back(&frame);
    }
    // This worker takes the first sub-folder itself.
    if (frame.keepsHandle && frame.subFolders.size() > 1)
        wakeIdle();
}

void TreeWalk::wakeIdle() {
    // A write, not a plain load: a worker that counts itself idle only after this sees the new frame itself.
    if (idle_.fetch_add(0) == 0)
        return;
    wakeUps_.fetch_add(1);
    wakeUps_.notify_one();
}

/// Enters one sub-folder, up to and including its listing.
void TreeWalk::enter(Worker& worker, Frame& parent, std::size_t index) {
    Totals totals{.newest = parent.subFolders[index].modified};
    const SkipTree* skips = skipsOf(parent, index);
    const bool isExcluded = skips != nullptr && skips->isExcluded();
    platform::Directory directory;
    if (!stop_.stop_requested() && !isExcluded) {
        if (parent.depth + 1 <= maxPublishedDepth)
            progress_.setCurrent(parent.path(index));
        directory = open(worker, parent, index);
    }
    closeWhenAllOpened(parent);

    Listing& listing = worker.listing;
    if (!directory.isOpen() || !list(worker, directory, skips)) {
        listing.clear();
        complete(parent, index, totals, {}, listing.noted, listing.linked);
        release(worker, &parent);
        return;
    }
    progress_.addFiles(listing.files.fileCount);
    progress_.addBytes(listing.countedBytes);
    totals.size = listing.files.size;
    totals.fileCount = listing.files.fileCount;
    totals.newest = std::max(totals.newest, listing.files.newest);
    if (listing.subFolders.empty()) {
        complete(parent, index, totals, std::move(listing.keptFiles), listing.noted, listing.linked);
        release(worker, &parent);
        return;
    }
    Frame& frame = makeFrame(worker, parent, index, totals);
    frame.skips = skips;
    keepOpen(worker, frame, std::move(directory));
    push(worker, frame);
}

const SkipTree* TreeWalk::skipsOf(const Frame& parent, std::size_t index) const {
    if (parent.isTop())
        return roots_[index].skips.isEmpty() ? nullptr : &roots_[index].skips;
    return parent.skips == nullptr ? nullptr : parent.skips->below(parent.subFolderName(index));
}

/// Returns a closed directory when the folder cannot be opened. That counts as denied, unless the folder has
/// become a mount point since it was listed, or is dataless.
platform::Directory TreeWalk::open(Worker& worker, Frame& parent, std::size_t index) {
    constexpr int maxTries = 200;
    auto directory = tryToOpen(worker, parent, index);
    for (int tries = 1; !directory && platform::isOutOfHandles(directory.error()) && tries < maxTries;
         ++tries) {
        if (stop_.stop_requested())
            return {};
        // Our handles are budgeted, so others hold them; the folder must not be counted as denied for that.
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
        directory = tryToOpen(worker, parent, index);
    }
    if (directory)
        return std::move(*directory);
    if (directory.error() != std::errc::cross_device_link && !platform::isDataless(directory.error()))
        progress_.addDenied(1);
    return {};
}

std::expected<platform::Directory, std::error_code> TreeWalk::tryToOpen(Worker& worker, Frame& parent,
                                                                        std::size_t index) {
    const char* name = parent.subFolderName(index);
    if (parent.isTop())
        return platform::Directory::open(name);
    if (parent.keepsHandle)
        return parent.directory.openBelow(name);
    if (const std::error_code error = worker.place.goTo(parent))
        return std::unexpected(error);
    return worker.place.directory.openBelow(name);
}

/// Fills the worker's listing. Returns false, and counts the folder as denied, if it cannot be listed to its
/// end.
bool TreeWalk::list(Worker& worker, const platform::Directory& directory, const SkipTree* skips) {
    worker.listing.clear();
    worker.reader.start(directory, skips == nullptr ? nullptr : &skips->volumes());
    readEntries(worker, workers_.size() > 1);
    worker.listing.absorb(worker.found);
    worker.found.clear();
    if (worker.listing.isWhole)
        return true;
    progress_.addDenied(1);
    return false;
}

/// Reads entries into the worker's listing.
void TreeWalk::readEntries(Worker& worker, bool mayShare) {
    Listing& listing = worker.listing;
    std::optional<SharedListing> shared;
    std::size_t piece = 0;
    while (const platform::DirectoryEntry* entry = worker.reader.next()) {
        if (worker.reader.piece() != piece) {
            piece = worker.reader.piece();
            listing.pieces.push_back({.number = piece,
                                      .subFolder = listing.subFolders.size(),
                                      .keptFile = listing.keptFiles.size()});
            if (mayShare && !shared) {
                shared.emplace(worker);
                wakeIdle();
            }
        }
        if (options_.noted != nullptr)
            options_.noted->note(entry->name, listing.noted);
        if (entry->kind == platform::EntryKind::directory)
            listing.addFolder(entry->name, entry->modified.value_or(distantPast));
        else if (entry->kind == platform::EntryKind::file)
            listing.add(*entry, options_.keepThreshold);
    }
    listing.isWhole = !worker.reader.error();
}

/// Helps to list the folder of `first`, which `joinListing` has joined.
void TreeWalk::helpList(Worker& worker, Worker& first) {
    const struct Leaving {
        std::atomic<unsigned>& joined;
        ~Leaving() {
            joined.fetch_sub(1);
            joined.notify_all();
        }
    } leaving{first.joined};
    // A large folder wakes one worker at a time; there may be enough left for another.
    wakeIdle();
    worker.listing.clear();
    readEntries(worker, false);
    const std::scoped_lock lock(first.mutex);
    first.isListingShared = false;  // nothing is left to take
    first.found.push_back(std::exchange(worker.listing, {}));
}

TreeWalk::Frame& TreeWalk::makeFrame(Worker& worker, Frame& parent, std::size_t index, const Totals& totals) {
    Frame* frame = worker.unused;
    if (frame == nullptr)
        frame = &worker.frames.emplace_back();
    else
        worker.unused = frame->nextUnused;
    frame->parent = &parent;
    frame->index = index;
    frame->depth = parent.depth + 1;
    std::swap(frame->subFolders, worker.listing.subFolders);
    std::swap(frame->names, worker.listing.names);
    frame->noted = worker.listing.noted;
    std::swap(frame->keptFiles, worker.listing.keptFiles);
    std::swap(frame->linked, worker.listing.linked);
    frame->unopened.store(frame->subFolders.size(), std::memory_order_relaxed);
    frame->unfinished.store(frame->subFolders.size(), std::memory_order_relaxed);
    frame->size.store(totals.size, std::memory_order_relaxed);
    frame->fileCount.store(totals.fileCount, std::memory_order_relaxed);
    frame->newest.store(totals.newest.time_since_epoch().count(), std::memory_order_relaxed);
    return *frame;  // recycled in `release`
}

/// Frames beyond the budget do without a handle; a root always keeps its own.
void TreeWalk::keepOpen(Worker& worker, Frame& frame, platform::Directory directory) {
    frame.keepsHandle = frame.isRoot() || spareHandles_.fetch_sub(1, std::memory_order_relaxed) > 0;
    if (frame.keepsHandle) {
        frame.directory = std::move(directory);
        return;
    }
    spareHandles_.fetch_add(1, std::memory_order_relaxed);
    frame.identity = directory.identity();
    worker.place = {.directory = std::move(directory), .identity = frame.identity, .depth = frame.depth};
}

void TreeWalk::closeWhenAllOpened(Frame& frame) {
    if (frame.unopened.fetch_sub(1, std::memory_order_acq_rel) != 1)
        return;
    if (frame.directory.isOpen() && !frame.isRoot()) {
        frame.directory.close();
        spareHandles_.fetch_add(1, std::memory_order_relaxed);
    }
}

/// Folds a walked folder into its parent. Leaves `linked` empty.
void TreeWalk::complete(Frame& parent, std::size_t index, const Totals& totals, std::vector<DirNode> children,
                        const NotedNames::Set& noted, LinkedFiles& linked) const {
    const std::int64_t heldElsewhere = linked.bytes();
    parent.fold(totals);
    if (!linked.isEmpty()) {
        const std::scoped_lock lock(parent.keptMutex);
        const LinkedFiles::Effect effect = parent.linked.absorb(linked);
        addChecked(parent.size, -effect.repeated);
        progress_.addBytes(effect.completed);
    }
    if (!parent.isTop() && totals.size < options_.keepThreshold)
        return;
    const char* name = parent.subFolderName(index);
    DirNode node{.url = name,
                 .isDirectory = true,
                 .isPackage = platform::isPackageName(Paths::lastComponent(name)),
                 .size = totals.size,
                 .fileCount = totals.fileCount,
                 .heldElsewhere = heldElsewhere,
                 .modified = knownDate(totals.newest),
                 .noted = NotedNames::ids(noted)};
    sortLargestFirst(children);
    node.children = DirNodes(std::move(children));
    const std::scoped_lock lock(parent.keptMutex);
    parent.keptFolders.push_back({.index = index, .node = std::move(node)});
}

/// Drops one reference from `unfinished`. The last one completes the folder, and possibly its ancestors.
void TreeWalk::release(Worker& worker, Frame* frame) {
    while (frame->unfinished.fetch_sub(1, std::memory_order_acq_rel) == 1) {
        if (frame->isTop()) {
            progress_.addBytes(frame->linked.bytes());
            finished_.store(true);
            wakeUps_.fetch_add(1);
            wakeUps_.notify_all();
            return;
        }
        Frame* parent = frame->parent;
        complete(*parent, frame->index, frame->totals(), frame->takeChildren(), frame->noted, frame->linked);
        frame->reset();
        frame->nextUnused = std::exchange(worker.unused, frame);
        frame = parent;
    }
}

}  // namespace ulvak
