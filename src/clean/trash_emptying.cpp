#include "clean/cleaner.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <set>
#include <string_view>
#include <thread>
#include <utility>

#include "clean/trash_judging.h"
#include "core/checked_add.h"
#include "core/paths.h"
#include "platform/durable_file.h"
#include "platform/user_folders.h"
#include "scan/disk_walker.h"

namespace ulvak {
namespace {

using platform::Directory;
using platform::FileError;
using platform::ItemIdentity;
using platform::TrashFolder;
using EmptiedTrash = Cleaner::EmptiedTrash;
using HeldItem = Cleaner::HeldItem;
using TrashContents = Cleaner::TrashContents;

/// Measures what is in a Trash. Trashes are the system's, and so is the home folder that they go with.
DiskWalker measuring(ScanProgress& progress) {
    return {.progress = progress, .home = platform::homeDirectory(), .keepThreshold = INT64_MAX};
}

CleanFailure failed(std::string message) {
    return CleanError{CleanError::Failed{std::move(message)}};
}

/// Files that other programs keep in a Trash for their own use; not items.
bool isOwnPart(std::string_view name) {
    const platform::TrashLayout& layout = platform::trashLayout();
    if (layout.items.empty())
        return name == ".DS_Store";
    // The list of sizes may be being rewritten right now, possibly by this program.
    return name == ".DS_Store" || name == layout.items || name == layout.notes ||
           name.starts_with("directorysizes") || platform::isDraftName(name);
}

/// A folder of a Trash that contains items.
struct ItemFolder {
    std::string path;
    Directory folder;
};

struct ItemFolders {
    std::vector<ItemFolder> folders;
    std::optional<FileError> failure;  ///< for the first folder that cannot be opened
};

/// Where a Trash's items are: in its items folder and, if a program was interrupted, also beside it.
ItemFolders itemFolders(const TrashFolder& trash) {
    ItemFolders result;
    const auto note = [&](std::error_code code, const std::string& path) {
        if (!result.failure)
            result.failure = FileError{.code = code, .path = path, .detail = {}};
    };
    if (!trash.folder) {
        note(trash.folder.error(), trash.path);
        return result;
    }
    const platform::TrashLayout& layout = platform::trashLayout();
    const auto add = [&](const std::string& name) {
        auto folder = trash.folder->openBelow(name.c_str());
        // A folder that can be listed but not entered names its items but shows nothing of them.
        if (folder)
            folder = folder->openBelow(".");
        if (folder)
            result.folders.push_back({.path = Paths::join(trash.path, name), .folder = std::move(*folder)});
        else if (folder.error() != std::errc::no_such_file_or_directory)
            note(folder.error(), Paths::join(trash.path, name));
    };
    if (!layout.items.empty()) {
        add(layout.items);
        // Where items wait while the desktop is removing them.
        add("expunged");
    }
    auto itself = trash.folder->openBelow(".");
    if (itself)
        result.folders.push_back({.path = trash.path, .folder = std::move(*itself)});
    else
        note(itself.error(), trash.path);
    return result;
}

/// A directory entry that is an item.
struct Entry {
    std::string path;
    std::string name;
    ItemIdentity identity;
    std::int64_t bytes = 0;
    std::int64_t heldElsewhere = 0;  ///< of these, also held by hard links elsewhere
    bool isFolder = false;
};

/// Looks at Trashes and adds up their contents.
class Look {
public:
    /// Everything in a Trash that emptying removes. Clears `isComplete_` if something cannot be seen.
    std::vector<Entry> entries(const TrashFolder& trash) {
        std::vector<Entry> result;
        const ItemFolders folders = itemFolders(trash);
        isComplete_ = isComplete_ && !folders.failure;
        for (const ItemFolder& folder : folders.folders)
            list(folder, folder.path == trash.path, result);
        measure(result);
        return result;
    }

    [[nodiscard]] bool isComplete() const { return isComplete_; }

private:
    void list(const ItemFolder& folder, bool isTop, std::vector<Entry>& result) {
        platform::EntryReader reader;
        reader.start(folder.folder);
        while (const platform::DirectoryEntry* entry = reader.next()) {
            const std::string name(entry->name);
            if (isTop &&
                (isOwnPart(name) || (name == "expunged" && entry->kind == platform::EntryKind::directory)))
                continue;
            const auto identity = platform::entryIdentity(folder.folder, name);
            isComplete_ = isComplete_ && identity && entry->kind != platform::EntryKind::volume;
            if (identity)
                result.push_back({.path = Paths::join(folder.path, name),
                                  .name = name,
                                  .identity = *identity,
                                  .bytes = entry->allocatedSize,
                                  .heldElsewhere = entry->names > 1 ? entry->allocatedSize : 0,
                                  .isFolder = entry->kind == platform::EntryKind::directory});
        }
        isComplete_ = isComplete_ && !reader.error();
    }

    void measure(std::vector<Entry>& entries) {
        std::vector<std::string> paths;
        for (const Entry& entry : entries) {
            if (entry.isFolder)
                paths.push_back(entry.path);
        }
        ScanProgress progress;
        const auto nodes = measuring(progress).nodes(paths);
        std::size_t at = 0;
        for (Entry& entry : entries) {
            if (!entry.isFolder)
                continue;
            const auto& node = nodes[at++];
            entry.bytes = node ? node->size : 0;
            entry.heldElsewhere = node ? node->heldElsewhere : 0;
            isComplete_ = isComplete_ && node;
        }
        isComplete_ = isComplete_ && progress.denied() == 0;
    }

    bool isComplete_ = true;
};

bool hasSmallerNumber(const HeldItem& one, const HeldItem& other) {
    return one.identity.number < other.identity.number;
}

const HeldItem* find(const std::vector<HeldItem>& held, const ItemIdentity& identity) {
    const HeldItem wanted{.identity = identity};
    for (auto at = std::ranges::lower_bound(held, wanted, hasSmallerNumber);
         at != held.end() && at->identity.number == identity.number; ++at) {
        if (at->identity == identity)
            return &*at;
    }
    return nullptr;
}

/// Empties Trashes one after the other.
class Emptying {
public:
    Emptying(const TrashContents& asked, const std::stop_token& stop, const GuardRails& rails,
             const Cleaner::Services& services)
        : asked_(asked), stop_(stop), rails_(rails), services_(services) {}

    EmptiedTrash run() {
        result_.mayAskDesktop = true;
        for (const TrashFolder& trash : platform::trashFolders().folders)
            empty(trash);
        // The desktop would also take what was not to go.
        result_.mayAskDesktop =
            result_.mayAskDesktop && result_.itemsNew == 0 && (asked_.isAll || !asked_.isComplete);
        return std::move(result_);
    }

private:
    void note(CleanFailure failure) {
        if (!result_.failure)
            result_.failure = std::move(failure);
    }

    void empty(const TrashFolder& trash) {
        auto kept = judgedTrash(trash.path, rails_);
        if (!kept) {
            note(std::move(kept.error()));
            result_.mayAskDesktop = false;  // it would not spare what must stay either
            return;
        }
        const ItemFolders folders = itemFolders(trash);
        if (folders.failure)
            note(*folders.failure);
        if (!trash.folder)
            return;
        kept_ = std::move(*kept);
        gone_.clear();
        // Before the items: a note that appears later is left alone.
        const std::vector<std::string> notes = noteNames(*trash.folder);
        for (const ItemFolder& folder : folders.folders)
            emptyFolder(folder, folder.path == trash.path);
        removeRest(*trash.folder, notes);
    }

    static std::vector<std::string> noteNames(const Directory& trash) {
        const std::string& name = platform::trashLayout().notes;
        if (name.empty())
            return {};
        const auto notes = trash.openBelow(name.c_str());
        return notes ? platform::entryNames(*notes).value_or(std::vector<std::string>())
                     : std::vector<std::string>();
    }

    void emptyFolder(const ItemFolder& folder, bool isTop) {
        const auto names = platform::entryNames(folder.folder);
        if (!names)
            note(FileError{.code = names.error(), .path = folder.path, .detail = {}});
        for (const std::string& name : names.value_or(std::vector<std::string>())) {
            if (isTop && (isOwnPart(name) || name == "expunged"))
                continue;
            const auto identity = platform::entryIdentity(folder.folder, name);
            const HeldItem* item = identity ? find(asked_.held, *identity) : nullptr;
            if (item != nullptr && stop_.stop_requested())
                leaveItem();
            else if (item != nullptr)
                removeItem(folder, name, *item);
            else if (identity)
                ++result_.itemsNew;
        }
    }

    void leaveItem() {
        ++result_.itemsLeft;
        result_.mayAskDesktop = false;
        note(failed("Çöp kutusunu boşaltma durduruldu."));
    }

    void removeItem(const ItemFolder& folder, const std::string& name, const HeldItem& item) {
        auto removed = services_.removeItem(folder.folder, name, item.identity, kept_);
        if (removed) {
            gone_.insert(name);
            addChecked(result_.bytes, item.bytes);
            return;
        }
        if (platform::entryIdentity(folder.folder, name) != item.identity)
            return;  // somebody else has restored or removed it
        // It may be partly gone.
        ScanProgress progress;
        const auto left = measuring(progress).node(Paths::join(folder.path, name));
        if (left && progress.denied() == 0)
            addChecked(result_.bytes, std::max<std::int64_t>(item.bytes - left->size, 0));
        ++result_.itemsLeft;
        FileError error = std::move(removed.error());
        error.path = Paths::join(folder.path, error.path);
        note(std::move(error));
    }

    /// A note is written before its item is moved, so recent notes may still be waiting for their items.
    static std::set<std::string> freshNotes(const Directory& notes) {
        constexpr std::chrono::minutes maxMove{1};
        const auto since = std::chrono::system_clock::now() - maxMove;
        std::set<std::string> names;
        platform::EntryReader reader;
        reader.start(notes);
        while (const platform::DirectoryEntry* note = reader.next()) {
            if (note->kind == platform::EntryKind::file && note->modified && *note->modified > since)
                names.emplace(note->name);
        }
        return names;
    }

    /// Removes the notes of items that are gone, and empty folders.
    void removeRest(const Directory& trash, const std::vector<std::string>& noteNames) const {
        const platform::TrashLayout& layout = platform::trashLayout();
        if (layout.items.empty())
            return;
        const auto items = trash.openBelow(layout.items.c_str());
        if (!items && items.error() != std::errc::no_such_file_or_directory)
            return;
        if (items && !items->openBelow("."))
            return;  // nobody can tell what is still in it
        if (const auto notes = trash.openBelow(layout.notes.c_str())) {
            const std::set<std::string> fresh = freshNotes(*notes);
            for (const std::string& note : noteNames) {
                const bool isNote = note.ends_with(layout.noteSuffix);
                const std::string name = isNote ? note.substr(0, note.size() - layout.noteSuffix.size()) : "";
                if (isNote && items && platform::entryIdentity(*items, name))
                    continue;
                // Dropped by design: a leftover note harms nobody.
                if (!isNote || gone_.contains(name) || !fresh.contains(note))
                    (void)services_.removeEntry(*notes, note);
            }
        }
        if (platform::removeEmptyFolder(trash, layout.items) || !items)
            (void)services_.removeEntry(trash, "directorysizes");  // as above
        for (const std::string& part : {layout.notes, std::string("expunged")})
            (void)platform::removeEmptyFolder(trash, part);
    }

    const TrashContents& asked_;
    const std::stop_token& stop_;
    const GuardRails& rails_;
    const Cleaner::Services& services_;
    std::set<platform::FileNumber> kept_;
    std::set<std::string> gone_;  ///< names of the items removed from the current Trash
    EmptiedTrash result_;
};

/// Stops when the time is up or a stop is requested on `stop`.
class Limit {
public:
    Limit(std::chrono::milliseconds time, const std::stop_token& stop)
        : forward_(stop, [this] { source_.request_stop(); }),
          thread_([this, time](const std::stop_token& done) {
              std::unique_lock lock(mutex_);
              if (!changed_.wait_for(lock, done, time, [] { return false; }) && !done.stop_requested())
                  source_.request_stop();
          }) {}

    [[nodiscard]] std::stop_token token() const { return source_.get_token(); }

private:
    std::stop_source source_;
    std::stop_callback<std::function<void()>> forward_;
    std::mutex mutex_;
    std::condition_variable_any changed_;
    std::jthread thread_;
};

std::int64_t bytesFreed(const TrashContents& contents) {
    std::int64_t sum = 0;
    for (const HeldItem& item : contents.held)
        addChecked(sum, item.bytes);
    return sum;
}

/// Why the desktop did not empty the Trash; nullopt if it reports success.
std::optional<CleanFailure> askDesktop(const std::string& trash, const std::stop_token& stop,
                                       const Cleaner::Services& services) {
    const auto command = services.trashEmptyingCommand(trash);
    if (!command)
        return failed(
            "Çöp kutusu boşaltılamadı: masaüstünün çöp kutusu başka bir klasör olabilir, ona dokunulmadı.");
    const Limit limit(services.desktopLimit, stop);
    const auto result = services.runUntil(command->program, command->arguments, limit.token());
    if (!result)
        return StartError{.program = command->program, .code = result.error()};
    if (limit.token().stop_requested())
        return failed("Çöp kutusu boşaltılamadı: masaüstü zamanında yanıt vermedi.");
    if (result->status != 0)
        return failed("Çöp kutusu boşaltılamadı: " + result->error);
    return std::nullopt;
}

}  // namespace

TrashContents Cleaner::trashContents(std::span<const platform::TrashedItem> fromHere) {
    std::vector<HeldItem> ours;
    for (const platform::TrashedItem& item : fromHere)
        ours.push_back({.identity = item.identity});
    std::ranges::sort(ours, hasSmallerNumber);
    TrashContents contents;
    Look look;
    const platform::TrashFolders trashes = platform::trashFolders();
    for (const TrashFolder& trash : trashes.folders) {
        for (const Entry& entry : look.entries(trash)) {
            addChecked(contents.bytes, entry.bytes);
            ++contents.items;
            contents.held.push_back({.identity = entry.identity, .bytes = entry.bytes - entry.heldElsewhere});
            if (find(ours, entry.identity) != nullptr) {
                addChecked(contents.bytesFromHere, entry.bytes);
                ++contents.itemsFromHere;
            }
        }
    }
    std::ranges::sort(contents.held, hasSmallerNumber);
    contents.isComplete = look.isComplete();
    contents.isAll = trashes.isAll;
    return contents;
}

EmptiedTrash Cleaner::emptyTrash(const TrashContents& asked, const std::stop_token& stop) const {
    return Emptying(asked, stop, rails(), services_).run();
}

EmptiedTrash Cleaner::emptyTrashByDesktop(const TrashContents& asked, const std::stop_token& stop) const {
    const auto left = [&](const TrashContents& now) {
        EmptiedTrash result;
        for (const HeldItem& item : now.held)
            ++(find(asked.held, item.identity) != nullptr ? result.itemsLeft : result.itemsNew);
        return result;
    };
    const TrashContents before = trashContents({});
    EmptiedTrash result = left(before);
    if (result.itemsNew > 0)
        return result;
    auto failure = askDesktop(folders_.trash, stop, services_);
    const TrashContents after = trashContents({});
    result = left(after);
    result.bytes =
        result.itemsNew == 0 ? std::max<std::int64_t>(bytesFreed(before) - bytesFreed(after), 0) : 0;
    if (failure)
        result.failure = std::move(failure);
    else if (result.itemsLeft > 0 || !after.isComplete)
        result.failure = failed("Çöp kutusu boşaltılamadı: masaüstü hepsini kaldıramadı.");
    return result;
}

std::expected<std::int64_t, CleanFailure> Cleaner::emptyTrash() const {
    const TrashContents asked = trashContents({});
    EmptiedTrash emptied = emptyTrash(asked, {});
    if (!emptied.failure)
        return emptied.bytes;
    if (!emptied.mayAskDesktop)
        return std::unexpected(std::move(*emptied.failure));
    EmptiedTrash rest = emptyTrashByDesktop(asked, {});
    if (!rest.isDone())
        return std::unexpected(std::move(rest.failure ? *rest.failure : *emptied.failure));
    addChecked(rest.bytes, emptied.bytes);
    return rest.bytes;
}

void Cleaner::recordTrashedFolders(std::span<const platform::TrashedItem> items) {
    std::vector<std::string> paths;
    for (const platform::TrashedItem& item : items) {
        const auto folder = Directory::open(std::string(Paths::parent(item.location)));
        const std::string name(Paths::lastComponent(item.location));
        // Only folders that can be opened and are still the items that were moved.
        if (folder && platform::entryIdentity(*folder, name) == item.identity &&
            folder->openBelow(name.c_str()))
            paths.push_back(item.location);
    }
    ScanProgress progress;
    const auto nodes = measuring(progress).nodes(paths);
    std::vector<platform::TrashedFolder> folders;
    for (std::size_t i = 0; i < paths.size(); ++i) {
        if (const auto& node = nodes[i])
            folders.push_back({.location = std::move(paths[i]), .bytes = node->size});
    }
    platform::recordTrashedFolders(folders);
}

}  // namespace ulvak
