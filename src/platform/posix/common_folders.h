#pragma once

#include <string>

#include "platform/guarded_folders.h"

namespace ulvak::platform::posix {

/// What programs from either system keep in a home by the same names.
[[nodiscard]] inline GuardedFolders commonFolders(const std::string& home) {
    return {
        .themselves = {home + "/.local", home + "/.local/share", home + "/.local/state", home + "/.config"},
        .withContents = {home + "/.gnupg", home + "/.ssh", home + "/.pki", home + "/.password-store"},
        .unread = {},
    };
}

}  // namespace ulvak::platform::posix
