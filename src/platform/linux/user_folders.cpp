#include "platform/user_folders.h"

#include <pwd.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <vector>

#include "platform/posix/user_folders.h"
#include "platform/volume.h"

namespace ulvak::platform {
namespace {

using posix::absoluteFromEnvironment;

bool leadsToRoot(const std::string& path) {
    const std::string home = homeDirectory();
    const Reach::Target place = Reach({&home, 1}, Reach::Others::prompt).follow(path);
    return place.path == "/" || std::filesystem::path(path).lexically_normal() == "/";
}

}  // namespace

std::optional<std::string> posix::systemHome() {
    std::vector<char> buffer(16384);
    passwd entry{};
    passwd* found = nullptr;
    int failure = 0;
    while ((failure = getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &found)) == ERANGE)
        buffer.resize(buffer.size() * 2);
    if (failure != 0 || found == nullptr)
        return std::nullopt;
    if (found->pw_dir == nullptr || found->pw_dir[0] != '/')
        return std::nullopt;
    return found->pw_dir;
}

std::string posix::desktopsTrash(const std::string& home) {
    return home + "/.local/share/Trash";
}

std::string homeDirectory() {
    if (auto home = absoluteFromEnvironment("HOME"))
        return *home;
    // A user unknown to the system has no home: a nonexistent path is better than somebody else's.
    return posix::systemHome().value_or("/nonexistent");
}

std::string temporaryDirectory() {
    auto temp = absoluteFromEnvironment("TMPDIR");
    // "/" is never a temporary folder, however it is spelled: the contents of a temporary folder are
    // classified as safe to delete.
    if (!temp || leadsToRoot(*temp))
        return "/tmp";
    return *temp;
}

std::optional<std::string> cacheDirectory() {
    return std::nullopt;
}

std::string applicationSupportDirectory(const std::string& home) {
    return absoluteFromEnvironment("XDG_DATA_HOME").value_or(home + "/.local/share");
}

std::string trashDirectory(const std::string& home) {
    return applicationSupportDirectory(home) + "/Trash";
}

}  // namespace ulvak::platform
