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

/// The desktop's Trash. Threads: any. Everything here blocks for as long as the disk takes, never call it on
/// the UI thread; `trashLayout` and `trashEmptyingCommand` answer at once.
namespace ulvak::platform {

/// An item that was moved to a Trash, with what is needed to put it back.
struct TrashedItem {
    std::string origin;    ///< absolute path that it had
    std::string location;  ///< absolute path that it has now
    ItemIdentity identity;

    friend bool operator==(const TrashedItem&, const TrashedItem&) = default;
};

/// Notes about items that are moved to the Trash next, written together: the disk is awaited once for all of
/// them instead of once for each. Those that no item has followed go with the object, or when the Trash is
/// emptied. Where a Trash keeps no such notes, and for what is not in the home's, there are none.
class TrashNotes {
public:
    /// More wait for longer than they are worth to one who would stop.
    static constexpr std::size_t maxNotes = 64;

    TrashNotes();
    ~TrashNotes();
    TrashNotes(const TrashNotes&) = delete;
    TrashNotes& operator=(const TrashNotes&) = delete;

    /// About an entry as `moveToTrash` takes it. Failures show there.
    void add(const Directory& parent, const std::string& name, const std::string& path);
    /// After the last: from here on they count, those that are on the disk.
    void flush();

    class Notes;
    [[nodiscard]] Notes* notes() const { return notes_.get(); }  ///< for the platform; may be null

private:
    std::unique_ptr<Notes> notes_;
};

/// Moves the entry `name` of the open folder `parent`, a link itself and not where it leads, to the Trash, if
/// it is still `item`; `path` is its absolute path, for the note about it, from which every file manager
/// restores it.
///
/// The item is taken from `parent`, wherever that is, and only while `path` leads there. What takes its name
/// at the last moment is put back where it was, or, where something has taken that place in turn, beside it
/// under a name that shows it (ESTALE). Nothing is ever copied, overwritten or removed for good instead:
/// where there is no Trash that outlives a reboot (ENOTSUP), or no room for the note, the item stays where it
/// is. The error's detail is the Trash that failed, if it was not the item.
///
/// A note that was written `ahead` about the path is used; where there is none, or it does not fit any more,
/// another is written.
[[nodiscard]] std::expected<TrashedItem, FileError> moveToTrash(const Directory& parent,
                                                                const std::string& name,
                                                                const ItemIdentity& item,
                                                                const std::string& path,
                                                                TrashNotes* ahead = nullptr);

/// A folder in a Trash, and the bytes that it holds on disk.
struct TrashedFolder {
    std::string location;  ///< as in `TrashedItem`
    std::int64_t bytes = 0;
};

/// Tells file managers the sizes of folders that have come into a Trash, where they keep a list of them.
/// Rewrites each list once, so that this is for whole batches. Nothing depends on the list: a failure leaves
/// it as it was.
void recordTrashedFolders(std::span<const TrashedFolder> folders);

/// A Trash of this user.
struct TrashFolder {
    std::string path;  ///< absolute
    /// Open, or why it cannot be looked into. No link was followed on the way from its volume's top.
    std::expected<Directory, std::error_code> folder;
};

struct TrashFolders {
    std::vector<TrashFolder> folders;  ///< those that are there; the home's comes first
    /// Whether they are all that the desktop may know of. Volumes that could keep the caller waiting (of a
    /// server, of another program) are not looked at.
    bool isAll = true;
};

[[nodiscard]] TrashFolders trashFolders();

/// Two folders in the user's Trash. Both names are empty on a system where the items lie in the Trash itself.
struct TrashLayout {
    std::string items;       ///< here the items are
    std::string notes;       ///< and here it says of each of them where it belongs
    std::string noteSuffix;  ///< of a note's name, after the item's
};

[[nodiscard]] const TrashLayout& trashLayout();

/// A program with its arguments.
struct Command {
    std::string program;  ///< absolute path
    std::vector<std::string> arguments;
};

/// How the desktop is asked to empty the Trash in the folder `trash`, for what cannot be removed directly.
/// Nothing where the desktop's own Trash is another folder: it would empty that one.
[[nodiscard]] std::optional<Command> trashEmptyingCommand(const std::string& trash);

}  // namespace ulvak::platform
