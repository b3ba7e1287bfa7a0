#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Which application a process belongs to. Nothing in the system records it, so that several signs are
/// looked at; each of them is enough. Pure.
namespace ulvak::platform {

/// What a desktop entry says of its application.
struct ApplicationEntry {
    std::string id;                  ///< "org.gnome.gedit.desktop"
    std::vector<std::string> words;  ///< the command line, split
    std::string
        program;  ///< the file that the first `withoutEnvironment` names, links resolved; may be empty
};

/// What the system says of a process.
struct ProcessFacts {
    std::string executable;          ///< absolute path, links resolved; may be empty
    std::vector<std::string> words;  ///< the first of its arguments, the program's own name included
    std::string unit;                ///< the innermost control group: "app-gnome-firefox-4711.scope"
};

/// The words of a command line from the program proper on: "env NAME=value program" starts the third.
[[nodiscard]] std::vector<std::string> withoutEnvironment(const std::vector<std::string>& words);

/// Whether a process may be one of an application. `sharedFolders` hold the programs of many: "/usr/bin".
[[nodiscard]] bool mayBelong(const ProcessFacts& process, const ApplicationEntry& entry,
                             const std::vector<std::string>& sharedFolders);

/// Whether a program only runs others, so that its name says nothing: shells, interpreters, sandboxes.
[[nodiscard]] bool isLauncher(std::string_view programName);

}  // namespace ulvak::platform
