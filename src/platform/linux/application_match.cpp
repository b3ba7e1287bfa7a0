#include "platform/linux/application_match.h"

#include <algorithm>
#include <array>

namespace ulvak::platform {
namespace {

constexpr std::string_view entrySuffix = ".desktop";

/// Also matched with a version suffix: "python3.11".
constexpr std::array<std::string_view, 28> launchers = {
    "bash",   "bwrap",      "dash",     "dbus-launch", "dbus-run-session",
    "dotnet", "electron",   "env",      "fish",        "flatpak",
    "gjs",    "gtk-launch", "java",     "ksh",         "mono",
    "node",   "nodejs",     "perl",     "pkexec",      "python",
    "ruby",   "sh",         "snap",     "sudo",        "systemd-run",
    "wine",   "zsh",        "xdg-open",
};

std::string_view lastPart(std::string_view path) {
    return path.substr(path.rfind('/') + 1);
}

std::string_view folderOf(std::string_view path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string_view::npos ? std::string_view() : path.substr(0, slash);
}

bool liesIn(std::string_view path, std::string_view folder) {
    return path.size() > folder.size() && path.starts_with(folder) && path[folder.size()] == '/';
}

bool isAlphanumeric(char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

/// The folder an application has to itself: "/opt/editor" for "/opt/editor/bin/editor". Empty if its program
/// is in a shared folder.
std::string_view ownFolder(std::string_view program, const std::vector<std::string>& sharedFolders) {
    const auto isShared = [&](std::string_view folder) {
        return folder.empty() || std::ranges::find(sharedFolders, folder) != sharedFolders.end();
    };
    std::string_view folder = folderOf(program);
    if (isShared(folder))
        return {};
    if (lastPart(folder) == "bin")
        folder = folderOf(folder);
    return isShared(folder) || folderOf(folder).empty() ? std::string_view() : folder;
}

/// systemd escapes dashes in a name as "\x2d", to tell them from its own.
std::string withPlainDashes(std::string_view unit) {
    constexpr std::string_view escaped = "\\x2d";
    std::string plain;
    while (!unit.empty()) {
        const bool isDash = unit.starts_with(escaped);
        plain += isDash ? '-' : unit.front();
        unit.remove_prefix(isDash ? escaped.size() : 1);
    }
    return plain;
}

/// Whether `id` occurs in `text` between two characters that are not alphanumeric.
bool namesAsWord(std::string_view text, std::string_view id) {
    for (std::size_t at = text.find(id); at != std::string::npos; at = text.find(id, at + 1)) {
        const std::size_t end = at + id.size();
        if (at > 0 && !isAlphanumeric(text[at - 1]) && end < text.size() && !isAlphanumeric(text[end]))
            return true;
    }
    return false;
}

/// Desktops start an application in a control group named after its id: "app-gnome-ID-4711.scope",
/// "app-ID@1.service". Snap ids are "PACKAGE_COMMAND", and their groups "snap.PACKAGE.COMMAND.….scope".
bool unitNames(std::string_view unit, std::string_view id) {
    if (id.ends_with(entrySuffix))
        id.remove_suffix(entrySuffix.size());
    if (id.empty())
        return false;
    if (unit.starts_with("snap.")) {
        std::string dotted(id);
        std::ranges::replace(dotted, '_', '.');
        return namesAsWord(unit, id) || namesAsWord(unit, dotted);
    }
    return unit.starts_with("app-") && namesAsWord(withPlainDashes(unit), id);
}

/// The file a launcher was told to run: its first argument that is an absolute path.
std::string_view launched(const std::vector<std::string>& words) {
    for (std::size_t index = 1; index < words.size(); ++index) {
        if (words[index].starts_with('/'))
            return words[index];
    }
    return {};
}

}  // namespace

std::vector<std::string> withoutEnvironment(const std::vector<std::string>& words) {
    auto first = words.begin();
    if (first != words.end() && lastPart(*first) == "env") {
        // Options, two of which take a separate argument, then variables.
        for (++first; first != words.end(); ++first) {
            if ((*first == "-u" || *first == "-C") && first + 1 != words.end())
                ++first;
            else if (!(first->starts_with('-') || first->contains('=')))
                break;
        }
    }
    return {first, words.end()};
}

bool isLauncher(std::string_view programName) {
    constexpr std::string_view letters = "abcdefghijklmnopqrstuvwxyz";
    programName = programName.substr(0, programName.find_last_of(letters) + 1);
    return std::ranges::find(launchers, programName) != launchers.end();
}

std::vector<std::string> namesOf(const ProcessFacts& process) {
    std::string_view started = process.words.empty() ? std::string_view() : process.words.front();
    // Some programs write their whole command line here, options and paths included.
    started = started.substr(0, started.find(" -"));
    std::vector<std::string> names;
    const auto add = [&](std::string_view name) {
        if (!name.empty() && std::ranges::find(names, name) == names.end())
            names.emplace_back(name);
    };
    add(process.name);
    add(lastPart(process.executable));
    add(lastPart(started));
    if (isLauncher(lastPart(process.executable)))
        add(lastPart(launched(process.words)));
    return names;
}

std::vector<std::string> programNames(const ApplicationEntry& entry) {
    const std::vector<std::string> words = withoutEnvironment(entry.words);
    std::vector<std::string> names;
    const auto add = [&](std::string_view path) {
        const std::string_view name = lastPart(path);
        if (!name.empty() && !isLauncher(name) && std::ranges::find(names, name) == names.end())
            names.emplace_back(name);
    };
    if (words.empty())
        return names;
    add(words.front());
    add(entry.program);
    if (!isLauncher(lastPart(words.front())))
        return names;
    add(launched(words));
    constexpr std::string_view sandboxed = "--command=";
    for (const std::string& word : words) {
        if (word.starts_with(sandboxed))
            add(std::string_view(word).substr(sandboxed.size()));
    }
    return names;
}

bool mayBelong(const ProcessFacts& process, const ApplicationEntry& entry,
               const std::vector<std::string>& sharedFolders) {
    if (unitNames(process.unit, entry.id))
        return true;
    const std::vector<std::string> words = withoutEnvironment(entry.words);
    if (words.empty())
        return false;
    const std::string_view running =
        isLauncher(lastPart(process.executable)) ? launched(process.words) : process.executable;
    const std::string_view expected = isLauncher(lastPart(words.front())) ? launched(words) : words.front();
    if (running.empty() || expected.empty())
        return false;
    // A wrapper has the name of the program it starts, or is in the same folder.
    if (lastPart(running) == lastPart(expected))
        return true;
    if (entry.program.empty() || isLauncher(lastPart(entry.program)))
        return false;
    if (running == entry.program || lastPart(running) == lastPart(entry.program))
        return true;
    const std::string_view own = ownFolder(entry.program, sharedFolders);
    return !own.empty() && (liesIn(running, own) || liesIn(process.executable, own));
}

}  // namespace ulvak::platform
