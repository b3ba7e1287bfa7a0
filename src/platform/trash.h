#pragma once

#include <expected>
#include <optional>
#include <string>
#include <vector>

#include "platform/directory.h"
#include "platform/file_error.h"
#include "platform/removal.h"

/// The desktop's Trash. Threads: any. `moveToTrash` blocks for as long as the disk takes, never call it on
/// that of the user interface; the others answer at once.
namespace ulvak::platform {

/// An item that was moved to a Trash, with what is needed to put it back.
struct TrashedItem {
    std::string origin;    ///< absolute path that it had
    std::string location;  ///< absolute path that it has now
    ItemIdentity identity;

    friend bool operator==(const TrashedItem&, const TrashedItem&) = default;
};

/// Moves the entry `name` of the open folder `parent`, a link itself and not where it leads, to the Trash, if
/// it is still `item`; `path` is its absolute path, for the note about it. Nothing is ever copied or removed
/// for good instead: on a file system without a Trash, and where the service's Trash would be another home
/// folder's, it fails with an error, and the item stays where it is.
[[nodiscard]] std::expected<TrashedItem, FileError> moveToTrash(const Directory& parent,
                                                                const std::string& name,
                                                                const ItemIdentity& item,
                                                                const std::string& path);

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
