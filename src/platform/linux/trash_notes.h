#pragma once

#include <ctime>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/trash_folder.h"
#include "platform/linux/trash_note.h"
#include "platform/trash.h"

namespace ulvak::platform {

/// A name that nothing in the Trash has, nearly that of an item; its note's has at most `longest` bytes.
[[nodiscard]] std::string freeTrashName(const OpenTrash& trash, const std::string& item,
                                        std::size_t longest = longestName);

/// A note that waits for its item.
struct WaitingNote {
    std::shared_ptr<const OpenTrash> trash;
    std::string name;  ///< that the item gets there
    TrashNote note;
};

class TrashNotes::Notes {
public:
    void add(const Directory& parent, const std::string& name, const std::string& path);
    void flush();

    /// The note about a path, once.
    [[nodiscard]] std::optional<WaitingNote> take(const std::string& path);

private:
    void leaveHandles();

    std::shared_ptr<const OpenTrash> home_;
    bool isHomeKnown_ = false;
    bool isFlushed_ = false;
    std::map<std::string, WaitingNote> waiting_;  ///< by the items' paths
};

}  // namespace ulvak::platform
