#include "platform/removal.h"

#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <string_view>

#include "platform/posix/removal_calls.h"
#include "platform/posix/system.h"

namespace ulvak::platform::posix {
namespace {

/// 128 random bits as text.
std::string unguessable() {
    std::array<unsigned char, 16> bits{};
    if (::getentropy(bits.data(), bits.size()) != 0)
        return {};
    std::string text;
    for (const unsigned char byte : bits) {
        constexpr std::string_view digits = "0123456789abcdef";
        text += digits[byte >> 4U];
        text += digits[byte & 15U];
    }
    return text;
}

/// Whether the failure means that an entry cannot be moved aside before removal: not every file system has a
/// no-replace rename, some copy what they move, and a full one has no room for a second name.
bool cannotMoveAside(int failure) {
    constexpr std::array<int, 7> failures = {EINVAL, ENOSYS, ENOTSUP, EOPNOTSUPP, EXDEV, ENOSPC, EDQUOT};
    return std::ranges::find(failures, failure) != failures.end();
}

/// Restores the name of an entry that was moved aside. If that is taken meanwhile, makes it visible beside
/// it.
void putBack(int parent, const std::string& aside, const std::string& name) {
    if (moveToFreeName(parent, aside.c_str(), name.c_str()) == 0)
        return;
    constexpr int maxNumbers = 1000;
    for (int number = 2; number < maxNumbers && errno == EEXIST; ++number) {
        const std::string beside = name + " (" + std::to_string(number) + ")";
        if (moveToFreeName(parent, aside.c_str(), beside.c_str()) == 0)
            return;
    }
    // Too long with a number. Dropped by design: if it cannot be renamed at all, it keeps its current name.
    (void)moveToFreeName(parent, aside.c_str(), ("Ulvak " + unguessable()).c_str());
}

}  // namespace

int unlink(const Directory& parent, const char* name, int flags) {
    while (::unlinkat(parent.handle(), name, flags) != 0) {
        if (errno != EINTR)
            return errno;
    }
    return 0;
}

int unlinkItem(const Directory& parent, const std::string& name, const ItemIdentity& item, int flags) {
    const int folder = parent.handle();
    const auto there = identityAt(folder, name.c_str());
    if (there != item)
        return there ? ESTALE : errno;
    const std::string secret = unguessable();
    const std::string aside = ".ulvak-" + secret;
    if (secret.empty() || movingCopies(folder))
        return unlink(parent, name.c_str(), flags);
    if (moveToFreeName(folder, name.c_str(), aside.c_str()) != 0)
        return cannotMoveAside(errno) ? unlink(parent, name.c_str(), flags) : errno;
    bool isIt = identityAt(folder, aside.c_str()) == item;
    // Something else was moved aside, and the item has its name back meanwhile: swap them back.
    if (!isIt && identityAt(folder, name.c_str()) == item &&
        exchange(folder, aside.c_str(), name.c_str()) == 0)
        isIt = identityAt(folder, aside.c_str()) == item;
    const int failure = isIt ? unlink(parent, aside.c_str(), flags) : ESTALE;
    if (failure != 0)
        putBack(folder, aside, name);
    return failure;
}

}  // namespace ulvak::platform::posix

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

// Half of the handles are reserved for the removal; with many items, later ones may not be held.
HeldEntry::HeldEntry(const Directory& parent, const std::string& name) {
    if (spareHandles() > 2 * posix::maxOpenFolders)
        descriptor_ = posix::holdAt(parent.handle(), name.c_str());
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

}  // namespace ulvak::platform
