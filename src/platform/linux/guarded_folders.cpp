#include "platform/guarded_folders.h"

#include <glib.h>

#include <vector>

namespace ulvak::platform {

GuardedFolders guardedFolders(const std::string& home) {
    const std::string data = g_get_user_data_dir();
    GuardedFolders folders{
        .themselves = {home + "/.local", home + "/.local/share", home + "/.local/state", home + "/.config",
                       data, g_get_user_state_dir(), g_get_user_config_dir()},
        .withContents = {data + "/keyrings", home + "/.local/share/keyrings", home + "/.gnupg",
                         home + "/.ssh", home + "/.pki", home + "/.password-store"},
    };
    // Documents, pictures and their like under the names that the user's language gives them.
    for (int kind = 0; kind < G_USER_N_DIRECTORIES; ++kind) {
        if (const char* folder = g_get_user_special_dir(static_cast<GUserDirectory>(kind)))
            folders.themselves.emplace_back(folder);
    }
    // Relative to wherever the program was started they are nobody's.
    for (auto* paths : {&folders.themselves, &folders.withContents})
        std::erase_if(*paths, [](const std::string& path) { return !path.starts_with('/'); });
    return folders;
}

}  // namespace ulvak::platform
