#pragma once

#include <sys/types.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/file_time.h"

namespace ulvak::test {

/// One declared tree entry with its descendants. Use the functions below to make one.
struct TreeEntry {
    enum class Kind : std::uint8_t { folder, file, text, link, hardLink, fifo, socket };

    Kind kind = Kind::file;
    std::string name;
    std::int64_t allocated = 0;  ///< bytes on disk, files only; rounded up to whole blocks
    std::int64_t length = 0;     ///< bytes, files only; beyond `allocated`, a hole
    std::string text;            ///< a text file's content or a link's target
    std::vector<TreeEntry> children;
    std::optional<mode_t> mode;
    std::optional<FileTime> modified;

    /// Applied after the children are created, so that even an inaccessible folder can be filled.
    [[nodiscard]] TreeEntry withMode(mode_t newMode) &&;
    [[nodiscard]] TreeEntry modifiedAt(FileTime date) &&;
};

[[nodiscard]] TreeEntry folder(std::string name, std::vector<TreeEntry> children = {});
/// A file that occupies this many bytes on disk, without writing any.
[[nodiscard]] TreeEntry file(std::string name, std::int64_t allocated = 0);
/// A file of this length that occupies nothing on disk.
[[nodiscard]] TreeEntry sparseFile(std::string name, std::int64_t length);
[[nodiscard]] TreeEntry textFile(std::string name, std::string text);
[[nodiscard]] TreeEntry link(std::string name, std::string target);
/// Another name for an entry created earlier; `existing` is relative to the tree.
[[nodiscard]] TreeEntry hardLink(std::string name, std::string existing);
[[nodiscard]] TreeEntry fifo(std::string name);
[[nodiscard]] TreeEntry socket(std::string name);

/// A real tree in its own folder below the temporary folder. Removed at the end with everything that was
/// added to it, whatever the names, depth and modes, without following links or entering mounts. Everyone can
/// read its folders and files unless a mode says otherwise.
///
///     TempTree tree({folder("a", {file("b", 50'000'000), link("c", "..")})});
///
/// Throws `std::system_error` if the tree cannot be created.
class TempTree {
public:
    /// Who owns everything in the tree. Any user but root counts as unprivileged.
    enum class Owner : std::uint8_t { thisUser, unprivileged };

    explicit TempTree(const std::vector<TreeEntry>& entries = {}, Owner owner = Owner::thisUser);
    ~TempTree();
    TempTree(const TempTree&) = delete;
    TempTree& operator=(const TempTree&) = delete;

    /// The tree's root: absolute, no links, no trailing "/".
    [[nodiscard]] const std::string& path() const { return path_; }
    [[nodiscard]] std::string path(std::string_view relative) const;

    /// Adds entries to the root or to a folder in it.
    void add(const std::vector<TreeEntry>& entries) { add("", entries); }
    void add(std::string_view below, const std::vector<TreeEntry>& entries);

    /// Adds `levels` nested folders of the same name, with `bottom` in the innermost and `beside` next to
    /// each. Returns the innermost's path relative to the tree; it may be too long for any system call.
    std::string addChain(const std::string& name, int levels, const std::vector<TreeEntry>& bottom = {},
                         const std::vector<TreeEntry>& beside = {});

    /// Bytes an entry occupies on disk; does not follow links.
    [[nodiscard]] std::int64_t allocated(std::string_view relative) const;

private:
    std::string path_;
    int handle_ = -1;
    Owner owner_;
};

/// A file's content; empty if it cannot be read.
[[nodiscard]] std::string textOf(const std::string& path);

/// Whether there is an entry; a link counts wherever it leads.
[[nodiscard]] bool exists(const std::string& path);

/// The permission bits, links followed; 0 if nothing is there.
[[nodiscard]] mode_t modeOf(const std::string& path);

}  // namespace ulvak::test
