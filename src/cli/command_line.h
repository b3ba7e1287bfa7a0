#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace ulvak {

/// The parsed command line. Arguments must match exactly; their position does not matter.
struct CommandLine {
    bool dump = false;     ///< "--dump": scan, print and exit, without a window
    bool ai = false;       ///< "--ai", with "--dump": ask the language model too
    bool help = false;     ///< "--help" or "-h"
    bool version = false;  ///< "--version"
    // "--autoscan", "--level=…", "--select-first" and "--reduced-motion" are handled by the window.
    std::vector<std::string> unknown;

    /// `arguments` excludes the program's name.
    [[nodiscard]] static CommandLine parse(std::span<const char* const> arguments);
};

/// The full "--help" text, in Turkish, including the final line feed.
[[nodiscard]] std::string_view helpText();
/// The "--version" text, including the line feed.
[[nodiscard]] std::string_view versionText();

}  // namespace ulvak
