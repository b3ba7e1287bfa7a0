#include "platform/posix/unlinking.h"

#include <sys/random.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <string_view>

#include "platform/posix/system.h"

namespace ulvak::platform::posix {
namespace {

/// 128 bits that nobody can guess, as text.
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

/// Where a name in a folder cannot be moved aside before it is removed: not every file system can move
/// without replacing, some copy what they move, and one that is full has no room for a second name.
bool cannotMoveAside(int failure) {
    constexpr std::array<int, 7> failures = {EINVAL, ENOSYS, ENOTSUP, EOPNOTSUPP, EXDEV, ENOSPC, EDQUOT};
    return std::ranges::find(failures, failure) != failures.end();
}

/// Gives something that was moved aside its name back. Where that is taken meanwhile, it becomes visible
/// beside it.
void putBack(int parent, const std::string& aside, const std::string& name) {
    if (moveToFreeName(parent, aside.c_str(), name.c_str()) == 0)
        return;
    constexpr int mostNumbers = 1000;
    for (int number = 2; number < mostNumbers && errno == EEXIST; ++number) {
        const std::string beside = name + " (" + std::to_string(number) + ")";
        if (moveToFreeName(parent, aside.c_str(), beside.c_str()) == 0)
            return;
    }
    // Too long with a number. Dropped by design: what cannot be renamed at all keeps the name that it has.
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
    // Another was taken aside, and the item has its name back meanwhile: each becomes what it was.
    if (!isIt && identityAt(folder, name.c_str()) == item &&
        exchange(folder, aside.c_str(), name.c_str()) == 0)
        isIt = identityAt(folder, aside.c_str()) == item;
    const int failure = isIt ? unlink(parent, aside.c_str(), flags) : ESTALE;
    if (failure != 0)
        putBack(folder, aside, name);
    return failure;
}

}  // namespace ulvak::platform::posix
