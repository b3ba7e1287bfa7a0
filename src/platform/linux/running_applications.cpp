#include <fcntl.h>
#include <glib.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdlib>
#include <iterator>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string_view>
#include <utility>

#include "platform/desktop.h"
#include "platform/durable_file.h"
#include "platform/file_descriptor.h"
#include "platform/files.h"
#include "platform/linux/application_match.h"
#include "platform/user_folders.h"
#include "platform/volume.h"

namespace ulvak::platform {
namespace {

/// Long enough to find the program that an interpreter runs.
constexpr std::size_t maxCommandLineLength = 4096;

using CString = std::unique_ptr<char, void (*)(void*)>;

/// The beginning of a /proc file; empty if it may not be read.
std::string beginning(const std::string& path) {
    std::array<char, maxCommandLineLength> buffer{};
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    const ssize_t count = file.isOpen() ? ::read(file.get(), buffer.data(), buffer.size()) : 0;
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
    std::string path = linkTarget(process + "/exe").value_or("");
    // An application that was updated while running.
    constexpr std::string_view deleted = " (deleted)";
    if (path.ends_with(deleted))
        path.resize(path.size() - deleted.size());
    return path;
}

/// Whether a process belongs to this user. Judged by its status: the owner of its files in /proc is root if
/// it is non-dumpable, as password managers are.
bool isOwn(const std::string& process) {
    const std::string status = beginning(process + "/status");
    constexpr std::string_view label = "\nUid:\t";
    const std::size_t at = status.find(label);
    return at != std::string::npos &&
           std::strtoul(status.c_str() + at + label.size(), nullptr, 10) == ::getuid();
}

/// This user's processes, except this one.
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
        // A non-dumpable process hides its executable too; its first argument has to do.
        if (facts.executable.empty() && !facts.words.empty())
            facts.executable = facts.words.front();
        processes.push_back(std::move(facts));
    }
    return processes;
}

struct Application {
    ApplicationEntry entry;
    std::vector<std::string> names;  ///< in the user's language, and the untranslated one if it differs
};

std::vector<std::string> commandWords(const std::string& line) {
    int count = 0;
    char** words = nullptr;
    if (g_shell_parse_argv(line.c_str(), &count, &words, nullptr) == FALSE)
        return {};
    std::vector<std::string> result(words, words + count);
    g_strfreev(words);
    return result;
}

std::vector<std::string> searchedFolders() {
    const char* searched = std::getenv("PATH");  // NOLINT(concurrency-mt-unsafe): nobody sets it
    return split(searched != nullptr ? searched : "", ':');
}

/// The program file that a word of a command line names, links resolved; empty if there is none.
std::string programOf(const std::string& word, const Reach& reach) {
    std::vector<std::string> places = {word};
    if (!word.contains('/')) {
        places = searchedFolders();
        for (std::string& place : places)
            place.append("/").append(word);
    }
    for (const std::string& place : places) {
        Reach::Target found = reach.follow(place);
        if (found.isThere && ::access(found.path.c_str(), X_OK) == 0)
            return std::move(found.path);
    }
    return {};
}

std::string valueOf(GKeyFile* file, const char* key) {
    const CString value(g_key_file_get_string(file, G_KEY_FILE_DESKTOP_GROUP, key, nullptr), &g_free);
    return value ? value.get() : "";
}

/// Parses a desktop entry; nullopt unless it is an application's.
std::optional<Application> applicationOf(std::string id, const std::string& text, const Reach& reach) {
    const std::unique_ptr<GKeyFile, void (*)(GKeyFile*)> file(g_key_file_new(), &g_key_file_free);
    if (g_key_file_load_from_data(file.get(), text.data(), text.size(), G_KEY_FILE_NONE, nullptr) == FALSE ||
        valueOf(file.get(), G_KEY_FILE_DESKTOP_KEY_TYPE) != G_KEY_FILE_DESKTOP_TYPE_APPLICATION ||
        g_key_file_get_boolean(file.get(), G_KEY_FILE_DESKTOP_GROUP, G_KEY_FILE_DESKTOP_KEY_HIDDEN,
                               nullptr) != FALSE)
        return std::nullopt;
    Application application{.entry = {.id = std::move(id),
                                      .words = commandWords(valueOf(file.get(), G_KEY_FILE_DESKTOP_KEY_EXEC)),
                                      .program = {}},
                            .names = {}};
    const std::vector<std::string> words = withoutEnvironment(application.entry.words);
    if (!words.empty())
        application.entry.program = programOf(words.front(), reach);
    const CString name(g_key_file_get_locale_string(file.get(), G_KEY_FILE_DESKTOP_GROUP,
                                                    G_KEY_FILE_DESKTOP_KEY_NAME, nullptr, nullptr),
                       &g_free);
    if (name)
        application.names.emplace_back(name.get());
    const std::string plain = valueOf(file.get(), G_KEY_FILE_DESKTOP_KEY_NAME);
    if (!plain.empty() && (application.names.empty() || application.names.front() != plain))
        application.names.push_back(plain);
    return application;
}

/// The desktop entries of this user and the system. Read here instead of by GIO, which looks for the program
/// of each, on any volume.
class DesktopEntries {
public:
    explicit DesktopEntries(const Reach& reach) : reach_(reach) {
        addFrom(std::string(g_get_user_data_dir()) + "/applications", "", 0);
        for (const char* const* folder = g_get_system_data_dirs(); *folder != nullptr; ++folder)
            addFrom(std::string(*folder) + "/applications", "", 0);
    }

    /// Entries outside the folders that the environment names: a program started from a terminal or by a
    /// service may not know where sandboxed applications are.
    void addSandboxed(const std::string& home) {
        for (const std::string& folder : {home + "/.local/share/flatpak/exports/share/applications",
                                          std::string("/var/lib/flatpak/exports/share/applications"),
                                          std::string("/var/lib/snapd/desktop/applications")})
            addFrom(folder, "", 0);
    }

    [[nodiscard]] const std::vector<Application>& applications() const { return applications_; }

private:
    /// An entry is named by its path below the "applications" folder; the first entry with a name wins.
    void addFrom(const std::string& folder, const std::string& prefix, int depth) {
        constexpr int maxLevels = 8;
        const Reach::Target place = reach_.follow(folder);
        if (!place.isThere || depth == maxLevels)
            return;
        for (const std::string& name : listNames(place.path)) {
            const std::string path = place.path + "/" + name;
            if (name.ends_with(".desktop"))
                addEntry(prefix + name, path);
            else if (const auto info = reach_.follow(path); info.isThere && isFolder(info.path))
                addFrom(info.path, prefix + name + "-", depth + 1);
        }
    }

    void addEntry(const std::string& id, const std::string& path) {
        const Reach::Target place = reach_.follow(path);
        if (!place.isThere || !known_.insert(id).second)
            return;
        constexpr std::size_t maxEntryLength = std::size_t{1} << 20U;
        const auto text = readFile(place.path, maxEntryLength);
        if (!text)
            return;
        if (auto application = applicationOf(id, *text, reach_))
            applications_.push_back(std::move(*application));
    }

    static bool isFolder(const std::string& path) {
        const auto info = fileInfo(path);
        return info && info->isDirectory;
    }

    const Reach& reach_;
    std::set<std::string> known_;
    std::vector<Application> applications_;
};

/// Folders that contain the programs of many applications.
std::vector<std::string> sharedFolders(const Reach& reach) {
    std::vector<std::string> folders = {"/bin",       "/sbin", "/usr/bin",   "/usr/sbin", "/usr/local/bin",
                                        "/usr/games", "/usr",  "/usr/local", "/usr/lib",  "/usr/libexec",
                                        "/opt",       "/snap", "/usr/share"};
    for (const std::string& folder : searchedFolders()) {
        folders.push_back(folder);
        folders.push_back(reach.follow(folder).path);
    }
    return folders;
}

}  // namespace

std::vector<std::string> runningApplications() {
    const std::string home = homeDirectory();
    const Reach reach({&home, 1}, Reach::Others::prompt);
    const std::vector<ProcessFacts> processes = ownProcesses();
    const std::vector<std::string> shared = sharedFolders(reach);
    std::vector<std::string> running;
    const DesktopEntries entries(reach);
    for (const Application& application : entries.applications()) {
        if (std::ranges::any_of(processes, [&](const ProcessFacts& process) {
                return mayBelong(process, application.entry, shared);
            }))
            std::ranges::copy(application.names, std::back_inserter(running));
    }
    return running;
}

std::map<std::string, std::string, std::less<>> applicationNames() {
    const std::string home = homeDirectory();
    const Reach reach({&home, 1}, Reach::Others::prompt);
    DesktopEntries entries(reach);
    entries.addSandboxed(home);
    std::map<std::string, std::string, std::less<>> names;
    for (const Application& application : entries.applications()) {
        std::string_view id = application.entry.id;
        id.remove_suffix(std::min(id.size(), std::string_view(".desktop").size()));
        if (!application.names.empty())
            names.emplace(id, application.names.front());
    }
    return names;
}

}  // namespace ulvak::platform
