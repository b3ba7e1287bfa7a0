#include "platform/guarded_folders.h"

namespace ulvak::platform {

GuardedFolders guardedFolders(const std::string& home) {
    return {
        .themselves = {home + "/.local", home + "/.local/share", home + "/.local/state", home + "/.config",
                       home + "/Library/CloudStorage", home + "/Library/Mobile Documents"},
        .withContents = {home + "/Library/Keychains", home + "/.gnupg", home + "/.ssh", home + "/.pki",
                         home + "/.password-store"},
    };
}

}  // namespace ulvak::platform
