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

/// Everything in Ulvak that destroys: the one gate through which files leave the disk. Stateless; the guard
/// rails are built once, on first use, from the user's folders and never change.
///
/// Threads: the operations block for as long as the disk takes; call them on a worker, one at a time.
/// `runningApps` may be called at any time.
namespace Cleaner {

/// What does the work once it is decided.
struct Services {
    /// The entry of that name in an open folder, for good.
    std::function<std::expected<void, platform::FileError>(const platform::Directory&, const std::string&)>
        removeEntry;
    /// The same, if it is still this item; folders with these numbers stay wherever they turn up.
    std::function<std::expected<void, platform::FileError>(const platform::Directory&, const std::string&,
                                                           const platform::ItemIdentity&,
                                                           const std::set<platform::FileNumber>&)>
        removeItem;
    /// The entry of that name in an open folder, if it is still this item, by its absolute path, with a note
    /// that may have been written ahead.
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

/// Whether the item at an absolute path may be removed, by the text of the path alone.
[[nodiscard]] bool isAllowed(std::string_view path);

/// Those of the given names, in their order and spelling, that an application goes by which is running now;
/// letter case makes no difference.
[[nodiscard]] std::vector<std::string> runningApps(std::span<const std::string> among);
/// The same, judged by the names of the running applications.
[[nodiscard]] std::vector<std::string> runningApps(std::span<const std::string> among,
                                                   std::span<const std::string> running);

/// Does what the finding's action says and returns the bytes that this frees: its size as it was scanned,
/// without what names elsewhere hold on to. The caller has made sure that none of `quitApps` is running.
///
/// All items are judged before the first is touched, and each is removed only as what it was then: whatever
/// has taken its name since stays. They are removed in order up to the first that cannot be: what came before
/// it is gone, what comes after it is untouched. An item that turns out to be, or to hold, a place that must
/// stay, or that lies behind a link, is left alone whatever its path reads. Nothing on a volume that does not
/// hold the item is touched. Asked to stop, it ends before the next item and fails, saying how many are done.
[[nodiscard]] std::expected<std::int64_t, CleanFailure> clean(const Finding& finding, CleanMode mode,
                                                              CleanRun& run,
                                                              const Services& services = Services::system());
/// The same for whoever needs no more than the result.
[[nodiscard]] std::expected<std::int64_t, CleanFailure> clean(const Finding& finding, CleanMode mode,
                                                              const Services& services = Services::system());

/// For `CleanRun::ahead` of several findings that are cleaned within a moment, one after the other: the looks
/// at the places that must stay, and in the Trash's case notes about the first items. Null when there is
/// nothing to gain.
[[nodiscard]] std::shared_ptr<CleanAhead> prepare(std::span<const std::shared_ptr<const Finding>> findings,
                                                  CleanMode mode);

}  // namespace Cleaner
}  // namespace ulvak
