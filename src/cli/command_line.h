#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace ulvak {

/// What the user asks for on the command line. Arguments are exact, and count wherever they stand.
struct CommandLine {
    bool dump = false;     ///< "--dump": scan, print and end, without a window
    bool ai = false;       ///< "--ai", with "--dump": ask the language model too
    bool help = false;     ///< "--help" or "-h"
    bool version = false;  ///< "--version"
    // "--autoscan", "--level=…", "--select-first" and "--reduced-motion" are the window's own.
    std::vector<std::string> unknown;

    /// `arguments` without the program's name.
    [[nodiscard]] static CommandLine parse(std::span<const char* const> arguments);
};

/// The whole answer to "--help", in Turkish, with its last line feed.
[[nodiscard]] std::string_view helpText();
/// The answer to "--version", with its line feed.
[[nodiscard]] std::string_view versionText();

}  // namespace ulvak
