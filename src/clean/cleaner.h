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
#include "platform/directory.h"
#include "platform/removal.h"
#include "platform/trash.h"
#include "scan/shell.h"

namespace ulvak {

/// How files leave the disk. The order of the cases is fixed.
enum class CleanMode : std::uint8_t {
    trash,      ///< moved to the user's Trash, from where they can be restored
    permanent,  ///< removed at once
};

/// Everything in Ulvak that destroys: the one gate through which files leave the disk. Immutable.
///
/// Threads: the operations block for as long as the disk takes; call them on a worker, one at a time.
/// `runningApps` may be called at any time.
class Cleaner {
public:
    /// What does the work once it is decided.
    struct Services {
        /// The entry of that name in an open folder, for good.
        std::function<std::expected<void, platform::FileError>(const platform::Directory&,
                                                               const std::string&)>
            removeEntry;
        /// The same, if it is still this item; folders with these numbers stay wherever they turn up.
        std::function<std::expected<void, platform::FileError>(const platform::Directory&, const std::string&,
                                                               const platform::ItemIdentity&,
                                                               const std::set<platform::FileNumber>&)>
            removeItem;
        /// The entry of that name in an open folder, if it is still this item, by its absolute path, with a
        /// note that may have been written ahead.
        std::function<std::expected<platform::TrashedItem, platform::FileError>(
            const platform::Directory&, const std::string&, const platform::ItemIdentity&, const std::string&,
            platform::TrashNotes*)>
            moveToTrash;
        std::function<std::expected<Shell::Result, std::error_code>(const std::string&,
                                                                    std::span<const std::string>)>
            run;
        /// The same, ended at a stop.
        std::function<std::expected<Shell::Result, std::error_code>(
            const std::string&, std::span<const std::string>, const std::stop_token&)>
            runUntil;
        /// How the desktop empties the Trash in that folder, if it is the desktop's.
        std::function<std::optional<platform::Command>(const std::string&)> trashEmptyingCommand;
        std::chrono::milliseconds desktopLimit = std::chrono::minutes(2);  ///< for that

        /// The system's.
        [[nodiscard]] static const Services& system();
    };

    /// For the user whose folders these are.
    explicit Cleaner(UserFolders folders, Services services = Services::system());

    /// Whether the item at an absolute path may be removed, by the text of the path alone.
    [[nodiscard]] bool isAllowed(std::string_view path) const;

    /// Those of the given names, in their order and spelling, that an application goes by which is running
    /// now; letter case makes no difference.
    [[nodiscard]] static std::vector<std::string> runningApps(std::span<const std::string> among);
    /// The same, judged by the names of the running applications.
    [[nodiscard]] static std::vector<std::string> runningApps(std::span<const std::string> among,
                                                              std::span<const std::string> running);

    /// Does what the finding's action says and returns the bytes that this frees: its size as it was scanned,
    /// without what names elsewhere hold on to. The caller has made sure that none of `quitApps` is running.
    ///
    /// All items are judged before the first is touched, and each is removed only as what it was then:
    /// whatever has taken its name since stays. They are removed in order up to the first that cannot be:
    /// what came before it is gone, what comes after it is untouched. An item that turns out to be, or to
    /// hold, a place that must stay, or that lies behind a link, is left alone whatever its path reads.
    /// Nothing on a volume that does not hold the item is touched. Asked to stop, it ends before the next
    /// item and fails, saying how many are done.
    [[nodiscard]] std::expected<std::int64_t, CleanFailure> clean(const Finding& finding, CleanMode mode,
                                                                  CleanRun& run) const;
    /// The same for whoever needs no more than the result.
    [[nodiscard]] std::expected<std::int64_t, CleanFailure> clean(const Finding& finding,
                                                                  CleanMode mode) const;

    /// For `CleanRun::ahead` of several findings that are cleaned within a moment, one after the other: the
    /// looks at the places that must stay, and in the Trash's case notes about the first items. Null when
    /// there is nothing to gain.
    [[nodiscard]] std::shared_ptr<CleanAhead> prepare(
        std::span<const std::shared_ptr<const Finding>> findings, CleanMode mode) const;

    /// An entry of a Trash as it was looked at.
    struct HeldItem {
        platform::ItemIdentity identity;
        /// Held on disk by it and what lies in it, and free when it goes: nothing of a file that has a name
        /// elsewhere.
        std::int64_t bytes = 0;
    };

    /// What this user's Trashes hold: the home folder's and those of mounted volumes that emptying reaches.
    struct TrashContents {
        std::int64_t bytes = 0;  ///< held on disk by all of it
        std::int64_t items = 0;
        std::int64_t bytesFromHere = 0;  ///< of that, by the given items that are still there
        std::int64_t itemsFromHere = 0;
        bool isComplete = true;      ///< false when something could not be looked at
        bool isAll = true;           ///< false when the desktop may know of Trashes that were not looked for
        std::vector<HeldItem> held;  ///< each of the items; by their numbers

        /// Emptying takes nothing but what was put there from here.
        [[nodiscard]] bool isAllFromHere() const { return isComplete && items == itemsFromHere; }
    };

    /// `fromHere` are known again by their identity: what was restored, removed or replaced is none of them.
    [[nodiscard]] static TrashContents trashContents(std::span<const platform::TrashedItem> fromHere);

    /// What emptying came to.
    struct EmptiedTrash {
        std::int64_t bytes = 0;               ///< that went
        std::int64_t itemsLeft = 0;           ///< of what was to go
        std::int64_t itemsNew = 0;            ///< have come since it was looked at, and were not touched
        std::optional<CleanFailure> failure;  ///< why the first of those that are left is
        bool mayAskDesktop = false;           ///< which would take nothing that was not to go

        /// Whether nothing is left that was to go.
        [[nodiscard]] bool isDone() const { return itemsLeft == 0 && !failure; }
    };

    /// Removes what `asked` holds, one by one, so that an item that cannot be removed keeps no other. What is
    /// written about it goes after it: whatever stays behind can still be restored. Asked to stop, it ends
    /// before the next item.
    [[nodiscard]] EmptiedTrash emptyTrash(const TrashContents& asked, const std::stop_token& stop = {}) const;

    /// Has the desktop empty the Trash, for what is left of `asked`. May take long: it is given up at a stop,
    /// and after `Services::desktopLimit`.
    [[nodiscard]] EmptiedTrash emptyTrashByDesktop(const TrashContents& asked,
                                                   const std::stop_token& stop) const;

    /// All that is there now: directly, or where something stays behind, through the desktop. Bytes that
    /// went.
    [[nodiscard]] std::expected<std::int64_t, CleanFailure> emptyTrash() const;

    /// Tells file managers how much the folders among these hold. For whole batches: reads all that lies in
    /// them.
    static void recordTrashedFolders(std::span<const platform::TrashedItem> items);

private:
    /// Whether there is a cache is asked anew each time: until then its place may have become somebody's.
    [[nodiscard]] GuardRails rails() const;

    UserFolders folders_;
    Services services_;
};

}  // namespace ulvak
