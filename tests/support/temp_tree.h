#pragma once

#include <sys/types.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/file_time.h"

namespace ulvak::test {

/// One entry of a declared tree, with what lies below it. Made by the functions that follow.
struct TreeEntry {
    enum class Kind : std::uint8_t { folder, file, text, link, hardLink, fifo, socket };

    Kind kind = Kind::file;
    std::string name;
    std::int64_t allocated = 0;  ///< bytes, files only; rounded up to whole blocks
    std::int64_t length = 0;     ///< bytes, files only; a hole from the end of `allocated` on
    std::string text;            ///< what is in a text file, or where a link leads
    std::vector<TreeEntry> children;
    std::optional<mode_t> mode;
    std::optional<FileTime> modified;

    /// Set after the children are made, so that a folder that nobody may enter can still be filled.
    [[nodiscard]] TreeEntry withMode(mode_t newMode) &&;
    [[nodiscard]] TreeEntry modifiedAt(FileTime date) &&;
};

[[nodiscard]] TreeEntry folder(std::string name, std::vector<TreeEntry> children = {});
/// A file that holds that many bytes on disk, without one of them having been written.
[[nodiscard]] TreeEntry file(std::string name, std::int64_t allocated = 0);
/// A file of that length that holds nothing on disk.
[[nodiscard]] TreeEntry sparseFile(std::string name, std::int64_t length);
[[nodiscard]] TreeEntry textFile(std::string name, std::string text);
[[nodiscard]] TreeEntry link(std::string name, std::string target);
/// A second name for an entry that was made before; `existing` is relative to the tree.
[[nodiscard]] TreeEntry hardLink(std::string name, std::string existing);
[[nodiscard]] TreeEntry fifo(std::string name);
[[nodiscard]] TreeEntry socket(std::string name);

/// A real tree in a folder of its own below the folder for temporary files, removed again with everything
/// that has come to lie in it: whatever its names, depth and modes, following no link and entering no
/// mount. Folders and files can be read by everybody unless a mode says otherwise.
///
///     TempTree tree({folder("a", {file("b", 50'000'000), link("c", "..")})});
///
/// Throws `std::system_error` when the tree cannot be made.
class TempTree {
public:
    /// To whom everything in the tree belongs. Whoever is not root is unprivileged.
    enum class Owner : std::uint8_t { thisUser, unprivileged };

    explicit TempTree(const std::vector<TreeEntry>& entries = {}, Owner owner = Owner::thisUser);
    ~TempTree();
    TempTree(const TempTree&) = delete;
    TempTree& operator=(const TempTree&) = delete;

    /// The tree's own folder: absolute, without links, without a "/" at the end.
    [[nodiscard]] const std::string& path() const { return path_; }
    [[nodiscard]] std::string path(std::string_view relative) const;

    /// More entries, in the tree's folder or in one below it.
    void add(const std::vector<TreeEntry>& entries) { add("", entries); }
    void add(std::string_view below, const std::vector<TreeEntry>& entries);

    /// `levels` folders of one name, each in the one before, `bottom` in the last, and `beside` beside each.
    /// Returns the path of the last, relative to the tree; it may be too long for any call.
    std::string addChain(const std::string& name, int levels, const std::vector<TreeEntry>& bottom = {},
                         const std::vector<TreeEntry>& beside = {});

    /// Bytes that one entry holds on disk; a link itself, not where it leads.
    [[nodiscard]] std::int64_t allocated(std::string_view relative) const;

private:
    std::string path_;
    int handle_ = -1;
    Owner owner_;
};

/// What a file holds; nothing where it cannot be read.
[[nodiscard]] std::string textOf(const std::string& path);

/// Whether there is an entry; a link counts wherever it leads.
[[nodiscard]] bool exists(const std::string& path);

/// The permission bits, links followed; 0 if nothing is there.
[[nodiscard]] mode_t modeOf(const std::string& path);

}  // namespace ulvak::test
