#include <glib.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <functional>
#include <iterator>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/desktop.h"
#include "platform/durable_file.h"
#include "platform/files.h"
#include "platform/linux/application_match.h"
#include "platform/linux/own_processes.h"
#include "platform/user_folders.h"
#include "platform/volume.h"

namespace ulvak::platform {
namespace {

using CString = std::unique_ptr<char, void (*)(void*)>;

struct Application {
    ApplicationEntry entry;
    std::vector<std::string> names;  ///< in the user's language, and the untranslated one if it differs
    std::string windowClass;
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
    return splitAt(searched != nullptr ? searched : "", ':');
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
                            .names = {},
                            .windowClass = {}};
    application.windowClass = valueOf(file.get(), G_KEY_FILE_DESKTOP_KEY_STARTUP_WM_CLASS);
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

    /// False if there may be entries out of reach.
    [[nodiscard]] bool isComplete() const { return isComplete_; }

private:
    /// An entry is named by its path below the "applications" folder; the first entry with a name wins.
    void addFrom(const std::string& folder, const std::string& prefix, int depth) {
        constexpr int maxLevels = 8;
        const Reach::Target place = reach_.follow(folder);
        isComplete_ = isComplete_ && (place.isThere || reach_.includes(place.path));
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
        isComplete_ = isComplete_ && (place.isThere || reach_.includes(place.path));
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
    bool isComplete_ = true;
};

std::string_view plainId(std::string_view id) {
    id.remove_suffix(id.ends_with(".desktop") ? std::string_view(".desktop").size() : 0);
    return id;
}

/// The name of the snap that an entry "<snap>_<application>" is from; empty if it is not from one.
std::string_view snapOf(std::string_view id) {
    const std::size_t end = id.find('_');
    return end == std::string_view::npos ? std::string_view() : id.substr(0, end);
}

/// Whether an entry's program is gone, as when a program was removed by hand.
bool isLeftBehind(const Application& application, const Reach& reach) {
    const std::vector<std::string> words = withoutEnvironment(application.entry.words);
    return application.entry.program.empty() && !words.empty() && words.front().starts_with('/') &&
           reach.includes(reach.follow(words.front()).path);
}

InstalledApplication described(const Application& application, bool isRunning) {
    const std::string_view id = plainId(application.entry.id);
    InstalledApplication result{.id = std::string(id),
                                .names = application.names,
                                .programs = programNames(application.entry),
                                .isRunning = isRunning};
    for (const std::string_view name : {std::string_view(application.windowClass), snapOf(id)}) {
        if (!name.empty())
            result.programs.emplace_back(name);
    }
    return result;
}

/// Sandboxed programs without an entry: those for the terminal.
void addSandboxes(InstalledApplications& found, const std::string& home, const Reach& reach) {
    std::set<std::string, std::less<>> known;
    for (const InstalledApplication& application : found.all) {
        known.insert(application.id);
        known.emplace(snapOf(application.id));
    }
    for (const std::string& folder : {home + "/.local/share/flatpak/app", std::string("/var/lib/flatpak/app"),
                                      std::string("/snap"), std::string("/var/lib/snapd/snap")}) {
        const Reach::Target place = reach.follow(folder);
        found.isComplete = found.isComplete && (place.isThere || reach.includes(place.path));
        for (const std::string& name : place.isThere ? listNames(place.path) : std::vector<std::string>()) {
            if (name != "bin" && name != "README" && known.insert(name).second)
                found.all.push_back({.id = name, .names = {}, .programs = {}});
        }
    }
}

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

std::optional<InstalledApplications> installedApplications() {
    const std::string home = homeDirectory();
    const Reach reach({&home, 1}, Reach::Others::prompt);
    const std::vector<ProcessFacts> processes = ownProcesses();
    const std::vector<std::string> shared = sharedFolders(reach);
    DesktopEntries entries(reach);
    entries.addSandboxed(home);
    InstalledApplications found{.all = {}, .processes = {}, .isComplete = entries.isComplete()};
    for (const Application& application : entries.applications()) {
        const bool isRunning = std::ranges::any_of(processes, [&](const ProcessFacts& process) {
            return mayBelong(process, application.entry, shared);
        });
        if (isRunning || !isLeftBehind(application, reach))
            found.all.push_back(described(application, isRunning));
    }
    addSandboxes(found, home, reach);
    std::ranges::sort(found.all, {}, &InstalledApplication::id);
    for (const ProcessFacts& process : processes)
        std::ranges::move(namesOf(process), std::back_inserter(found.processes));
    return found;
}

std::map<std::string, std::string, std::less<>> applicationNames() {
    const std::string home = homeDirectory();
    const Reach reach({&home, 1}, Reach::Others::prompt);
    DesktopEntries entries(reach);
    entries.addSandboxed(home);
    std::map<std::string, std::string, std::less<>> names;
    for (const Application& application : entries.applications()) {
        if (!application.names.empty())
            names.emplace(plainId(application.entry.id), application.names.front());
    }
    return names;
}

}  // namespace ulvak::platform
