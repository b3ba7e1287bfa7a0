#include "platform/guarded_folders.h"

#include "platform/posix/common_folders.h"

namespace ulvak::platform {

GuardedFolders guardedFolders(const std::string& home) {
    GuardedFolders folders = posix::commonFolders(home);
    folders.themselves.push_back(home + "/Library/CloudStorage");
    folders.themselves.push_back(home + "/Library/Mobile Documents");
    folders.withContents.push_back(home + "/Library/Keychains");
    return folders;
}

}  // namespace ulvak::platform
