#pragma once

#include <cstddef>
#include <cstdint>
#include <expected>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <system_error>
#include <vector>

#include "platform/directory.h"
#include "platform/files.h"
#include "platform/removal.h"

/// The desktop's Trash. Threads: any, but not the UI thread, since everything blocks on the disk; except for
/// `trashLayout` and `trashEmptyingCommand`, which return at once.
namespace ulvak::platform {

/// An item moved to a Trash, with what is needed to restore it.
struct TrashedItem {
    std::string origin;    ///< its absolute path before
    std::string location;  ///< its absolute path now
    ItemIdentity identity;

    friend bool operator==(const TrashedItem&, const TrashedItem&) = default;
};

/// Notes about items about to be moved to the Trash, written together, so that the disk is waited for once
/// instead of once per item. Unused notes are removed with the object, or when the Trash is emptied. There
/// are none for Trashes without notes, and for items not bound for the home folder's Trash.
class TrashNotes {
public:
    /// With more notes at once, a stop request would take too long.
    static constexpr std::size_t maxNotes = 64;

    TrashNotes();
    ~TrashNotes();
    TrashNotes(const TrashNotes&) = delete;
    TrashNotes& operator=(const TrashNotes&) = delete;

    /// Adds a note about an entry, arguments as for `moveToTrash`. Failures are reported there.
    void add(const Directory& parent, const std::string& name, const std::string& path);
    /// Call after the last `add`. From then on, the notes that are on the disk can be used.
    void flush();

    class Notes;
    [[nodiscard]] Notes* notes() const { return notes_.get(); }  ///< for the platform; may be null

private:
    std::unique_ptr<Notes> notes_;
};

/// Moves the entry `name` of the open folder `parent` (a link itself, not its target) to the Trash, if it is
/// still `item`. `path` is its absolute path, for the note from which file managers restore it.
///
/// The item is taken from `parent`, and only while `path` leads there. If something else takes its name at
/// the last moment, that is put back or, if the name is taken again, placed beside it under a recognisable
/// name (ESTALE). Nothing is ever copied, overwritten or permanently removed instead: without a Trash that
/// survives a reboot (ENOTSUP), or without room for the note, the item stays where it is. The error's detail
/// is the path of the Trash that failed, unless the item itself did.
///
/// Uses a note in `ahead` about the path; writes a new one if there is none or it no longer fits.
[[nodiscard]] std::expected<TrashedItem, FileError> moveToTrash(const Directory& parent,
                                                                const std::string& name,
                                                                const ItemIdentity& item,
                                                                const std::string& path,
                                                                TrashNotes* ahead = nullptr);

/// A folder in a Trash, and the bytes it has allocated on disk.
struct TrashedFolder {
    std::string location;  ///< as in `TrashedItem`
    std::int64_t bytes = 0;
};

/// Records the sizes of folders newly in a Trash, for file managers that keep a list of them. Rewrites each
/// list once, so call it for whole batches. Best effort: a failure leaves the list as it was.
void recordTrashedFolders(std::span<const TrashedFolder> folders);

/// One of this user's Trashes.
struct TrashFolder {
    std::string path;  ///< absolute
    /// The open folder, or why it cannot be read. Reached without following links below its volume's top.
    std::expected<Directory, std::error_code> folder;
};

struct TrashFolders {
    std::vector<TrashFolder> folders;  ///< the existing ones; the home folder's comes first
    /// Whether these are all that the desktop may know of. Volumes that may block (network, user space) are
    /// not looked at.
    bool isAll = true;
};

[[nodiscard]] TrashFolders trashFolders();

/// Two folders of the user's Trash. Both names are empty on systems where the items lie in the Trash itself.
struct TrashLayout {
    std::string items;       ///< contains the items
    std::string notes;       ///< contains a note for each item, with its original path
    std::string noteSuffix;  ///< appended to the item's name to form the note's
};

[[nodiscard]] const TrashLayout& trashLayout();

/// A program with its arguments.
struct Command {
    std::string program;  ///< absolute path
    std::vector<std::string> arguments;
};

/// How to ask the desktop to empty the Trash in the folder `trash`, for items that cannot be removed
/// directly. nullopt if the desktop's own Trash is another folder: it would empty that one.
[[nodiscard]] std::optional<Command> trashEmptyingCommand(const std::string& trash);

}  // namespace ulvak::platform
