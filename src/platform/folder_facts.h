#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>

#include "platform/file_time.h"

/// Looks at one folder from the outside, so that somebody can be told what it is. Nothing here writes, waits
/// for what is not a folder or a regular file, or fetches contents that live elsewhere; and where the system
/// lets the user ask for it, nothing here renews an access date. Paths and names are bytes.
namespace ulvak::platform {

/// When the item was last read or listed; a link is followed. Absent when the system does not say.
[[nodiscard]] std::optional<FileTime> lastAccess(const std::string& path);

/// One folder, listed name by name in the system's order for as long as the caller wants: whoever stops
/// early has paid for the beginning only. Without "." and "..". For one thread at a time.
class FolderListing {
public:
    /// A folder that cannot be listed has no names. A link is followed.
    explicit FolderListing(const std::string& path);
    ~FolderListing();
    FolderListing(const FolderListing&) = delete;
    FolderListing& operator=(const FolderListing&) = delete;

    /// Valid until the next call. Nothing at the end and after an error.
    [[nodiscard]] std::optional<std::string_view> next();

    /// How many bytes a regular file of this folder holds. Absent for anything else, links included, and for
    /// a placeholder, whose contents would have to be fetched.
    [[nodiscard]] std::optional<std::int64_t> length(const std::string& name) const;

    /// The first bytes, at most `count`, of what `length` knows; empty when they cannot be read.
    [[nodiscard]] std::string beginning(const std::string& name, std::size_t count) const;

private:
    struct Handle;
    std::unique_ptr<Handle> handle_;
};

/// The regular files below a folder, folders entered where they stand in the system's order. Follows no link
/// below the folder itself, leaves no volume, enters no package, opens no file, and goes at most `mostLevels`
/// folders deep, each of which it holds open. What cannot be listed is passed over. For one thread at a time.
class FileSample {
public:
    struct File {
        std::string_view name;           ///< valid until the next call of `next`
        std::int64_t allocatedSize = 0;  ///< bytes held on disk; 0 when the system does not say
    };

    static constexpr std::size_t mostLevels = 256;

    explicit FileSample(const std::string& path, std::stop_token stop = {});
    ~FileSample();
    FileSample(const FileSample&) = delete;
    FileSample& operator=(const FileSample&) = delete;

    /// Nothing at the end, and soon after a stop was asked for.
    [[nodiscard]] std::optional<File> next();

private:
    struct Walk;
    std::unique_ptr<Walk> walk_;
};

}  // namespace ulvak::platform
