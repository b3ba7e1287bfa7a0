#pragma once

#include <cstddef>
#include <ctime>
#include <expected>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

#include "platform/directory.h"
#include "platform/file_descriptor.h"
#include "platform/linux/trash_folder.h"
#include "platform/trash.h"

/// What a Trash records about each item: its name there, and where it came from.
namespace ulvak::platform {

/// Bytes of a file name, unless the file system's limit is lower.
inline constexpr std::size_t maxNameLength = 255;

/// An item's name in the Trash: its own, or with a number before the extension if that is taken. Shortened,
/// between characters, so that its note's name has at most `maxLength` bytes.
[[nodiscard]] std::string trashName(std::string_view name, int number, std::size_t maxLength = maxNameLength);

/// The smallest free number from 1 on, or nearly so, in O(log n) queries.
[[nodiscard]] int freeNumber(const std::function<bool(int)>& isTaken);

/// `path` as written in notes and the list of sizes: everything but ASCII letters, digits and "-._~/" becomes
/// "%XX".
[[nodiscard]] std::string percentEncoded(std::string_view path);

[[nodiscard]] std::string noteText(std::string_view path, std::time_t when);

/// A note being written; removed with the object unless `keep` is called.
class TrashNote {
public:
    /// Writes a note that reaches the disk before anything that happens afterwards. EEXIST if the name is
    /// taken.
    [[nodiscard]] static std::expected<TrashNote, std::error_code> write(const Directory& notes,
                                                                         std::string name,
                                                                         std::string_view text);
    /// Writes a note without flushing it. `notes` must outlive it.
    [[nodiscard]] static std::expected<TrashNote, std::error_code> draft(const Directory& notes,
                                                                         std::string name,
                                                                         std::string_view text);
    /// For batches: starts writing it to the disk without waiting.
    void startFlush() const;
    /// Waits until it is on the disk. The folder must be flushed too; some file systems do not support that.
    [[nodiscard]] std::error_code flushFile() const;
    [[nodiscard]] std::error_code flushFolder() const;
    ~TrashNote();
    TrashNote(TrashNote&& other) noexcept;
    TrashNote(const TrashNote&) = delete;
    TrashNote& operator=(const TrashNote&) = delete;
    TrashNote& operator=(TrashNote&&) = delete;

    /// Whether the note is still there. Another program emptying the Trash may have found it without an item.
    [[nodiscard]] bool isThere() const;
    void keep() { name_.clear(); }
    /// Another descriptor of the file; not open if none is available.
    [[nodiscard]] FileDescriptor duplicate() const;

private:
    TrashNote(const Directory& notes, std::string name, FileDescriptor file)
        : notes_(&notes), name_(std::move(name)), file_(std::move(file)) {}
    [[nodiscard]] std::error_code fill(std::string_view text) const;
    [[nodiscard]] std::error_code flush() const;

    const Directory* notes_;
    std::string name_;  ///< empty once kept
    FileDescriptor file_;
};

/// A name unused in the Trash, similar to the item's; its note's name has at most `maxLength` bytes.
[[nodiscard]] std::string freeTrashName(const OpenTrash& trash, const std::string& item,
                                        std::size_t maxLength = maxNameLength);

/// A note waiting for its item.
struct WaitingNote {
    std::shared_ptr<const OpenTrash> trash;
    std::string name;  ///< the item's name there
    TrashNote note;
};

class TrashNotes::Notes {
public:
    void add(const Directory& parent, const std::string& name, const std::string& path);
    void flush();

    /// Removes and returns the note about a path.
    [[nodiscard]] std::optional<WaitingNote> take(const std::string& path);

private:
    void leaveHandles();

    std::shared_ptr<const OpenTrash> home_;
    bool isHomeKnown_ = false;
    bool isFlushed_ = false;
    std::map<std::string, WaitingNote> waiting_;  ///< keyed by the items' paths
};

}  // namespace ulvak::platform
