#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Which application a process belongs to. The system does not record it, so several clues are checked; each
/// is sufficient. Pure.
namespace ulvak::platform {

/// An application, according to its desktop entry.
struct ApplicationEntry {
    std::string id;                  ///< "org.gnome.gedit.desktop"
    std::vector<std::string> words;  ///< the command line, split
    std::string
        program;  ///< the first word of `withoutEnvironment(words)` as a file, links resolved; may be empty
};

/// A process, according to the system.
struct ProcessFacts {
    std::string name;                ///< as the kernel shows it, cut after 15 bytes; programs may change it
    std::string executable;          ///< absolute path, links resolved; may be empty
    std::vector<std::string> words;  ///< its first arguments, including the program's own name
    std::string unit;                ///< the innermost control group: "app-gnome-firefox-4711.scope"
};

/// The words of a command line from the actual program on: for "env NAME=value program", from the third.
[[nodiscard]] std::vector<std::string> withoutEnvironment(const std::vector<std::string>& words);

/// Whether a process may belong to an application. `sharedFolders` contain many applications' programs:
/// "/usr/bin".
[[nodiscard]] bool mayBelong(const ProcessFacts& process, const ApplicationEntry& entry,
                             const std::vector<std::string>& sharedFolders);

/// The names a process may be known by, without duplicates: the kernel's, its executable's, the one it was
/// started under, and that of the script it runs.
[[nodiscard]] std::vector<std::string> namesOf(const ProcessFacts& process);

/// The file names of the programs that an application's command line starts, without launchers and
/// duplicates.
[[nodiscard]] std::vector<std::string> programNames(const ApplicationEntry& entry);

/// Whether a program only runs others, so that its name means nothing: shells, interpreters, sandboxes.
[[nodiscard]] bool isLauncher(std::string_view programName);

}  // namespace ulvak::platform
