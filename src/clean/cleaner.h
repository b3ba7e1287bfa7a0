#pragma once

#include <chrono>
#include <cstdint>
#include <expected>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <span>
#include <stop_token>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "clean/clean_error.h"
#include "clean/clean_run.h"
#include "clean/guard_rails.h"
#include "core/finding.h"
#include "core/paths.h"
#include "core/shell.h"
#include "platform/directory.h"
#include "platform/removal.h"
#include "platform/trash.h"

namespace ulvak {

/// How files leave the disk. The order of the enumerators is fixed.
enum class CleanMode : std::uint8_t {
    trash,      ///< moved to the user's Trash; can be restored
    permanent,  ///< removed at once, for good
};

/// The only gate through which files leave the disk. Immutable.
///
/// Threads: operations block on the disk; call them on a worker, one at a time. `runningApps` and
/// `runningProcesses` may be called at any time.
class Cleaner {
public:
    /// The operations that act once the decision is made.
    struct Services {
        /// Permanently removes an entry of an open folder, by name.
        std::function<std::expected<void, platform::FileError>(const platform::Directory&,
                                                               const std::string&)>
            removeEntry;
        /// The same, only if it is still this item. Folders with these file numbers are kept wherever they
        /// turn up.
        std::function<std::expected<void, platform::FileError>(const platform::Directory&, const std::string&,
                                                               const platform::ItemIdentity&,
                                                               const std::set<platform::FileNumber>&)>
            removeItem;
        /// Moves an entry of an open folder to the Trash, only if it is still this item. Takes its absolute
        /// path and, optionally, notes written ahead.
        std::function<std::expected<platform::TrashedItem, platform::FileError>(
            const platform::Directory&, const std::string&, const platform::ItemIdentity&, const std::string&,
            platform::TrashNotes*)>
            moveToTrash;
        std::function<std::expected<Shell::Result, std::error_code>(const std::string&,
                                                                    std::span<const std::string>)>
            run;
        /// The same, killed by a stop request.
        std::function<std::expected<Shell::Result, std::error_code>(
            const std::string&, std::span<const std::string>, const std::stop_token&)>
            runUntil;
        /// The command by which the desktop empties the Trash in that folder, if it is the desktop's own.
        std::function<std::optional<platform::Command>(const std::string&)> trashEmptyingCommand;
        std::chrono::milliseconds desktopLimit = std::chrono::minutes(2);  ///< for that command

        /// The real ones.
        [[nodiscard]] static const Services& system();
    };

    /// For the user who owns these folders.
    explicit Cleaner(UserFolders folders, Services services = Services::system());

    /// Whether the item at an absolute path may be removed, judged by the text of the path alone.
    [[nodiscard]] bool isAllowed(std::string_view path) const;

    /// Those of the given names that belong to a running application; case-insensitive, input order and
    /// spelling kept.
    [[nodiscard]] static std::vector<std::string> runningApps(std::span<const std::string> among);
    /// The same, against given names of running applications.
    [[nodiscard]] static std::vector<std::string> runningApps(std::span<const std::string> among,
                                                              std::span<const std::string> running);

    /// Those of the given names of processes, or patterns with "*", that a process of this user has;
    /// case-insensitive, input order and spelling kept.
    [[nodiscard]] static std::vector<std::string> runningProcesses(std::span<const std::string> among);
    /// The same, against given names of running processes.
    [[nodiscard]] static std::vector<std::string> runningProcesses(std::span<const std::string> among,
                                                                   std::span<const std::string> running);

    /// Carries out the finding's action. Returns the bytes freed: the scanned size, less what is held by hard
    /// links elsewhere. The caller must have made sure that none of `quitApps` and
    /// `processes` is running.
    ///
    /// All items are judged before the first is touched, and each is removed only if it is still the item
    /// that was judged; anything that has taken its name since is kept. Items are removed in order up to the
    /// first failure: those before it are gone, those after it untouched. An item that turns out to be, to
    /// contain, or to be reached through a link to a protected place is left alone, whatever its path says.
    /// Nothing on a volume other than the item's is touched. A stop request takes effect before the next
    /// item: the call fails and says how many are done.
    [[nodiscard]] std::expected<std::int64_t, CleanFailure> clean(const Finding& finding, CleanMode mode,
                                                                  CleanRun& run) const;
    /// The same, for callers that need only the result.
    [[nodiscard]] std::expected<std::int64_t, CleanFailure> clean(const Finding& finding,
                                                                  CleanMode mode) const;

    /// For `CleanRun::ahead`, when several findings are cleaned in quick succession: looks up the protected
    /// places once and, for the Trash, writes notes about the first items. Null when there is nothing to
    /// gain.
    [[nodiscard]] std::shared_ptr<CleanAhead> prepare(
        std::span<const std::shared_ptr<const Finding>> findings, CleanMode mode) const;

    /// An entry of a Trash, as last looked at.
    struct HeldItem {
        platform::ItemIdentity identity;
        /// Allocated by it and its contents, and freed when it goes; excludes files with hard links
        /// elsewhere.
        std::int64_t bytes = 0;
    };

    /// The contents of this user's Trashes: the home folder's, and those of mounted volumes that emptying
    /// reaches.
    struct TrashContents {
        std::int64_t bytes = 0;  ///< allocated on disk in total
        std::int64_t items = 0;
        std::int64_t bytesFromHere = 0;  ///< of those bytes, held by the given items that are still there
        std::int64_t itemsFromHere = 0;
        bool isComplete = true;      ///< false if something could not be read
        bool isAll = true;           ///< false if the desktop may know of Trashes that were not looked for
        std::vector<HeldItem> held;  ///< every item, sorted by file number

        /// Whether emptying would remove only what Ulvak put there.
        [[nodiscard]] bool isAllFromHere() const { return isComplete && items == itemsFromHere; }
    };

    /// Recognises `fromHere` by identity: items that were restored, removed or replaced do not count.
    [[nodiscard]] static TrashContents trashContents(std::span<const platform::TrashedItem> fromHere);

    /// The result of emptying.
    struct EmptiedTrash {
        std::int64_t bytes = 0;               ///< freed
        std::int64_t itemsLeft = 0;           ///< of those that were to go
        std::int64_t itemsNew = 0;            ///< arrived since the Trash was looked at; not touched
        std::optional<CleanFailure> failure;  ///< why the first of the remaining items is still there
        bool mayAskDesktop = false;           ///< whether the desktop would take only what was to go

        /// Whether everything that was to go is gone.
        [[nodiscard]] bool isDone() const { return itemsLeft == 0 && !failure; }
    };

    /// Removes the items in `asked` one by one, so that one failure does not keep the others. An item's note
    /// is removed after it, so that whatever stays can still be restored. A stop request takes effect before
    /// the next item.
    [[nodiscard]] EmptiedTrash emptyTrash(const TrashContents& asked, const std::stop_token& stop = {}) const;

    /// Has the desktop empty the Trash, for what is left of `asked`. May take long; gives up on a stop
    /// request, and after `Services::desktopLimit`.
    [[nodiscard]] EmptiedTrash emptyTrashByDesktop(const TrashContents& asked,
                                                   const std::stop_token& stop) const;

    /// Empties everything there is now: directly, or through the desktop if something stays behind. Returns
    /// the bytes freed.
    [[nodiscard]] std::expected<std::int64_t, CleanFailure> emptyTrash() const;

    /// Records the sizes of trashed folders for file managers. Meant for whole batches: reads everything in
    /// them.
    static void recordTrashedFolders(std::span<const platform::TrashedItem> items);

private:
    /// Asks anew each time whether there is a cache: its path may have become somebody else's meanwhile.
    [[nodiscard]] GuardRails rails() const;

    UserFolders folders_;
    Services services_;
};

}  // namespace ulvak
