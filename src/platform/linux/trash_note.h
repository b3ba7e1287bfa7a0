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

/// What a Trash keeps about each of its items: under which name, and where it came from.
namespace ulvak::platform {

/// Bytes of a file's name where a file system does not say less.
inline constexpr std::size_t maxNameLength = 255;

/// The name that an item gets in the Trash: its own, or from the second of that name on one with a number
/// before the extension. So short that the name of its note has at most `maxLength` bytes; cut between
/// characters.
[[nodiscard]] std::string trashName(std::string_view name, int number, std::size_t maxLength = maxNameLength);

/// The smallest number, or nearly so, from 1 on that is not taken, in few questions however many are.
[[nodiscard]] int freeNumber(const std::function<bool(int)>& isTaken);

/// `path` as it stands in a note and in the list of sizes: all but plain letters, digits and "-._~/" as
/// "%XX".
[[nodiscard]] std::string percentEncoded(std::string_view path);

[[nodiscard]] std::string noteText(std::string_view path, std::time_t when);

/// A note on its way: removed with the object unless it is kept.
class TrashNote {
public:
    /// Complete and on its way to the disk before anything that happens after it; EEXIST where the name is
    /// taken.
    [[nodiscard]] static std::expected<TrashNote, std::error_code> write(const Directory& notes,
                                                                         std::string name,
                                                                         std::string_view text);
    /// Complete, but not on its way to the disk yet. `notes` outlives it.
    [[nodiscard]] static std::expected<TrashNote, std::error_code> draft(const Directory& notes,
                                                                         std::string name,
                                                                         std::string_view text);
    /// For many at once: begins to write it to the disk and does not wait.
    void startFlush() const;
    /// Until it is there. Its folder has to be as well; some file systems do not know the call for folders.
    [[nodiscard]] std::error_code flushFile() const;
    [[nodiscard]] std::error_code flushFolder() const;
    ~TrashNote();
    TrashNote(TrashNote&& other) noexcept;
    TrashNote(const TrashNote&) = delete;
    TrashNote& operator=(const TrashNote&) = delete;
    TrashNote& operator=(TrashNote&&) = delete;

    /// Under its name. Whoever empties the Trash meanwhile may have found it without an item.
    [[nodiscard]] bool isThere() const;
    void keep() { name_.clear(); }
    /// Another descriptor of the file; not open where there is none to be had.
    [[nodiscard]] FileDescriptor duplicate() const;

private:
    TrashNote(const Directory& notes, std::string name, FileDescriptor file)
        : notes_(&notes), name_(std::move(name)), file_(std::move(file)) {}
    [[nodiscard]] std::error_code fill(std::string_view text) const;
    [[nodiscard]] std::error_code flush() const;

    const Directory* notes_;
    std::string name_;  ///< empty once it is kept
    FileDescriptor file_;
};

/// A name that nothing in the Trash has, nearly that of an item; its note's has at most `maxLength` bytes.
[[nodiscard]] std::string freeTrashName(const OpenTrash& trash, const std::string& item,
                                        std::size_t maxLength = maxNameLength);

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
