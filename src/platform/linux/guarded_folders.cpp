#include <glib.h>

#include "platform/posix/user_folders.h"
#include "platform/user_folders.h"
#include "platform/volume.h"

// In a file of its own, so that scanning does not load GLib.

namespace ulvak::platform {

GuardedFolders guardedFolders(const std::string& home) {
    const std::string data = g_get_user_data_dir();
    GuardedFolders folders = posix::commonFolders(home);
    for (const std::string& folder :
         {data, std::string(g_get_user_state_dir()), std::string(g_get_user_config_dir())})
        folders.themselves.push_back(folder);
    folders.withContents.push_back(data + "/keyrings");
    folders.withContents.push_back(home + "/.local/share/keyrings");
    // Documents, pictures and so on, under the localised names the user has for them.
    const std::string setting = std::string(g_get_user_config_dir()) + "/user-dirs.dirs";
    const Reach reach({&home, 1}, Reach::Others::prompt);
    if (const Reach::Target place = reach.follow(setting); !reach.includes(place.path))
        folders.unread = setting;
    for (int kind = 0; folders.unread.empty() && kind < G_USER_N_DIRECTORIES; ++kind) {
        if (const char* folder = g_get_user_special_dir(static_cast<GUserDirectory>(kind)))
            folders.themselves.emplace_back(folder);
    }
    // A path relative to the current directory means nothing.
    for (auto* paths : {&folders.themselves, &folders.withContents})
        std::erase_if(*paths, [](const std::string& path) { return !path.starts_with('/'); });
    return folders;
}

}  // namespace ulvak::platform
