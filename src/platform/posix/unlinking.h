#pragma once

#include <string>

#include "platform/removal.h"

/// Taking entries out of folders, for the code of this folder. Safe from any thread.
namespace ulvak::platform::posix {

/// By these flags of unlinkat(2); 0, or the number of the error.
[[nodiscard]] int unlink(const Directory& parent, const char* name, int flags);

/// Unlinks the entry `name`, by these flags of unlinkat(2), only if it is `item`; 0, or the number of the
/// error. Nothing can be unlinked by anything but its name, which others can give to something else at any
/// moment. Under a name that nobody knows it stays what it was seen to be.
[[nodiscard]] int unlinkItem(const Directory& parent, const std::string& name, const ItemIdentity& item,
                             int flags);

}  // namespace ulvak::platform::posix
