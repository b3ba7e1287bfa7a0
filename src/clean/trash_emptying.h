#pragma once

#include <cstdint>
#include <expected>
#include <optional>
#include <span>
#include <stop_token>
#include <string>
#include <vector>

#include "clean/clean_error.h"
#include "clean/cleaner.h"
#include "platform/removal.h"
#include "platform/trash.h"

/// Emptying the Trash, which takes nothing but what was looked at before.
/// Threads: as the rest of `Cleaner`.
namespace ulvak::Cleaner {

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
[[nodiscard]] TrashContents trashContents(std::span<const platform::TrashedItem> fromHere);

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
/// written about it goes after it: whatever stays behind can still be restored. Asked to stop, it ends before
/// the next item.
[[nodiscard]] EmptiedTrash emptyTrash(const TrashContents& asked, const std::stop_token& stop = {},
                                      const Services& services = Services::system());

/// Has the desktop empty the Trash, for what is left of `asked`. May take long: it is given up at a stop, and
/// after `Services::desktopLimit`.
[[nodiscard]] EmptiedTrash emptyTrashByDesktop(const TrashContents& asked, const std::stop_token& stop,
                                               const Services& services = Services::system());

/// All that is there now: directly, or where something stays behind, through the desktop. Bytes that went.
[[nodiscard]] std::expected<std::int64_t, CleanFailure> emptyTrash(
    const Services& services = Services::system());

/// Tells file managers how much the folders among these hold. For whole batches: reads all that lies in them.
void recordTrashedFolders(std::span<const platform::TrashedItem> items);

}  // namespace ulvak::Cleaner
