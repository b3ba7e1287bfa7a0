#pragma once

#include <gtest/gtest.h>

#include <expected>
#include <string>

#include "platform/linux/trash_calls.h"
#include "platform/trash.h"
#include "support/environment.h"
#include "support/temp_tree.h"

/// Shared by the tests of the Trash.
namespace ulvak::platform {

/// The environment of a user whose home is in a tree.
class HomeIn {
public:
    explicit HomeIn(const std::string& home)
        : environment_({{"HOME", home}, {"XDG_DATA_HOME", std::nullopt}}) {}

private:
    test::ScopedEnvironment environment_;
};

inline std::string parentOf(const std::string& path) {
    return path.substr(0, path.rfind('/'));
}

inline std::string nameOf(const std::string& path) {
    return path.substr(path.rfind('/') + 1);
}

using Trashed = std::expected<TrashedItem, FileError>;

/// Trashes what is at `path` now.
inline Trashed trash(const std::string& path, const posix::TrashCalls& calls = {}) {
    const auto folder = Directory::open(parentOf(path));
    if (!folder)
        return std::unexpected(FileError{.code = folder.error(), .path = path, .detail = {}});
    const auto identity = entryIdentity(*folder, nameOf(path));
    return posix::moveToTrash(*folder, nameOf(path), identity.value_or(ItemIdentity()), path, calls);
}

/// The path in a trashed item's note; empty if the note is missing or incomplete.
[[nodiscard]] std::string notedPath(const std::string& location);

}  // namespace ulvak::platform
