#include "platform/running_applications.h"

#include <fcntl.h>
#include <gio/gdesktopappinfo.h>
#include <gio/gio.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdlib>
#include <iterator>
#include <memory>
#include <string_view>
#include <utility>

#include "platform/files.h"
#include "platform/linux/application_match.h"

namespace ulvak::platform {
namespace {

/// Enough of a command line to find the program that an interpreter runs.
constexpr std::size_t longestCommandLine = 4096;

using CString = std::unique_ptr<char, void (*)(void*)>;

/// The beginning of a file that the kernel makes up; empty when it may not be read.
std::string beginning(const std::string& path) {
    std::array<char, longestCommandLine> buffer{};
    const int handle = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (handle < 0)
        return {};
    const ssize_t count = ::read(handle, buffer.data(), buffer.size());
    ::close(handle);
    return {buffer.data(), count > 0 ? static_cast<std::size_t>(count) : 0};
}

std::vector<std::string> split(std::string_view text, char separator) {
    std::vector<std::string> parts;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(separator), text.size());
        parts.emplace_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return parts;
}

std::string executableOf(const std::string& process) {
    std::array<char, 4096> buffer{};
    const ssize_t length = ::readlink((process + "/exe").c_str(), buffer.data(), buffer.size());
    std::string path(buffer.data(), length > 0 ? static_cast<std::size_t>(length) : 0);
    // An application that was updated while it runs.
    constexpr std::string_view deleted = " (deleted)";
    if (path.ends_with(deleted))
        path.resize(path.size() - deleted.size());
    return path;
}

/// Whether a process is this user's. Its files in "/proc" are root's when it keeps its memory from others, as
/// password managers do; its status tells all the same.
bool isOwn(const std::string& process) {
    const std::string status = beginning(process + "/status");
    constexpr std::string_view label = "\nUid:\t";
    const std::size_t at = status.find(label);
    return at != std::string::npos &&
           std::strtoul(status.c_str() + at + label.size(), nullptr, 10) == ::getuid();
}

/// The processes of this user, apart from this one.
std::vector<ProcessFacts> ownProcesses() {
    std::vector<ProcessFacts> processes;
    const std::string self = std::to_string(::getpid());
    for (const std::string& name : listNames("/proc")) {
        const std::string process = "/proc/" + name;
        if (name == self || std::isdigit(static_cast<unsigned char>(name.front())) == 0 || !isOwn(process))
            continue;
        std::string group = beginning(process + "/cgroup");
        group.resize(std::min(group.find('\n'), group.size()));
        ProcessFacts facts{.executable = executableOf(process),
                           .words = split(beginning(process + "/cmdline"), '\0'),
                           .unit = group.substr(group.rfind('/') + 1)};
        // One that keeps its memory from others hides its program too; what it was started as has to do.
        if (facts.executable.empty() && !facts.words.empty())
            facts.executable = facts.words.front();
        processes.push_back(std::move(facts));
    }
    return processes;
}

std::vector<std::string> commandWords(GAppInfo* application) {
    const char* line = g_app_info_get_commandline(application);
    int count = 0;
    char** words = nullptr;
    if (line == nullptr || g_shell_parse_argv(line, &count, &words, nullptr) == FALSE)
        return {};
    std::vector<std::string> result(words, words + count);
    g_strfreev(words);
    return result;
}

ApplicationEntry entryOf(GAppInfo* application) {
    const char* id = g_app_info_get_id(application);
    ApplicationEntry entry{.id = id != nullptr ? id : "", .words = commandWords(application)};
    const std::vector<std::string> words = withoutEnvironment(entry.words);
    if (!words.empty()) {
        const CString found(g_find_program_in_path(words.front().c_str()), &g_free);
        if (found)
            entry.program = resolvedPath(found.get()).value_or(found.get());
    }
    return entry;
}

/// The name in the user's language, and the one that the application gave itself when that differs.
std::vector<std::string> namesOf(GAppInfo* application) {
    std::vector<std::string> names;
    if (const char* name = g_app_info_get_name(application))
        names.emplace_back(name);
    const CString plain(g_desktop_app_info_get_string(G_DESKTOP_APP_INFO(application), "Name"), &g_free);
    if (plain && (names.empty() || names.front() != plain.get()))
        names.emplace_back(plain.get());
    return names;
}

/// Where the programs of many applications lie side by side.
std::vector<std::string> sharedFolders() {
    std::vector<std::string> folders = {"/bin",       "/sbin", "/usr/bin",   "/usr/sbin", "/usr/local/bin",
                                        "/usr/games", "/usr",  "/usr/local", "/usr/lib",  "/usr/libexec",
                                        "/opt",       "/snap", "/usr/share"};
    const char* searched = std::getenv("PATH");  // NOLINT(concurrency-mt-unsafe): nobody sets it
    for (const std::string& folder : split(searched != nullptr ? searched : "", ':')) {
        folders.push_back(folder);
        folders.push_back(resolvedPath(folder).value_or(folder));
    }
    return folders;
}

}  // namespace

std::vector<std::string> runningApplications() {
    const std::vector<ProcessFacts> processes = ownProcesses();
    const std::vector<std::string> shared = sharedFolders();
    std::vector<std::string> running;
    GList* applications = g_app_info_get_all();
    for (const GList* item = applications; item != nullptr; item = item->next) {
        auto* application = static_cast<GAppInfo*>(item->data);
        const ApplicationEntry entry = entryOf(application);
        if (std::ranges::any_of(
                processes, [&](const ProcessFacts& process) { return mayBelong(process, entry, shared); }))
            std::ranges::move(namesOf(application), std::back_inserter(running));
    }
    g_list_free_full(applications, &g_object_unref);
    return running;
}

}  // namespace ulvak::platform
