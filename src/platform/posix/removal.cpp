#include "platform/removal.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <optional>
#include <system_error>
#include <vector>

#include "platform/posix/removal_calls.h"
#include "platform/posix/system.h"
#include "platform/posix/tree_removal.h"
#include "platform/posix/unlinking.h"

namespace ulvak::platform {

std::expected<void, FileError> removeEntry(const Directory& parent, const std::string& name) {
    return posix::removeEntry(parent, name, {});
}

std::expected<void, FileError> removeEntry(const Directory& parent, const std::string& name,
                                           const ItemIdentity& item, const std::set<FileNumber>& kept) {
    return posix::removeTree(parent, name, item, kept, {});
}

std::expected<void, FileError> posix::removeEntry(const Directory& parent, const std::string& name,
                                                  const RemovalCalls& calls) {
    const auto item = identityAt(parent.handle(), name.c_str());
    if (!item)
        return std::unexpected(FileError{.code = lastError(), .path = name});
    return removeTree(parent, name, *item, {}, calls);
}

// Of many items the last may find no handle left: half of them are for the removal.
HeldEntry::HeldEntry(const Directory& parent, const std::string& name)
    : handle_(spareHandles() > 2 * posix::mostOpenFolders ? posix::holdAt(parent.handle(), name.c_str())
                                                          : -1) {}

HeldEntry::~HeldEntry() {
    if (handle_ >= 0)
        ::close(handle_);
}

std::optional<ItemIdentity> entryIdentity(const Directory& parent, const std::string& name) {
    const QuietAccess quiet;
    return posix::identityAt(parent.handle(), name.c_str());
}

std::optional<FileNumber> entryNumber(const Directory& parent, const std::string& name) {
    const QuietAccess quiet;
    struct stat info{};
    if (::fstatat(parent.handle(), name.c_str(), &info, AT_SYMLINK_NOFOLLOW) != 0)
        return std::nullopt;
    return FileNumber{posix::volumeNumber(info), info.st_ino};
}

bool removeEmptyFolder(const Directory& parent, const std::string& name) {
    return posix::unlink(parent, name.c_str(), AT_REMOVEDIR) == 0;
}

std::expected<std::vector<std::string>, std::error_code> entryNames(const Directory& folder) {
    // A listing of its own: that of `folder` has a position which others may rely on.
    const int handle = posix::openFolder(folder.handle(), ".");
    if (handle < 0)
        return std::unexpected(posix::lastError());
    std::vector<std::string> names;
    posix::NameReader reader;
    int piece = 0;
    while ((piece = reader.read(handle)) > 0) {
        while (const posix::NameReader::Entry* entry = reader.next())
            names.emplace_back(entry->name);
    }
    const int failure = errno;
    ::close(handle);
    if (piece < 0)
        return std::unexpected(std::error_code(failure, std::generic_category()));
    std::ranges::sort(names);
    return names;
}

}  // namespace ulvak::platform
