#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ulvak {

/// What the user asks for on the command line, of the program with the window and of that without. Arguments
/// are exact, and count wherever they stand.
struct CommandLine {
    bool dump = false;     ///< "--dump": scan, print and end, without a window
    bool ai = false;       ///< "--ai", with "--dump": ask the language model too
    bool help = false;     ///< "--help" or "-h"
    bool version = false;  ///< "--version"

    // The window's own.
    bool autoscan = false;             ///< "--autoscan": scan at once
    bool selectFirst = false;          ///< "--select-first": the first row of the list after a scan
    bool reducedMotion = false;        ///< "--reduced-motion": transitions take no time
    std::optional<std::string> level;  ///< what the first "--level=…" names, be it a level or not

    std::vector<std::string> unknown;

    /// `arguments` without the program's name; `text` makes what can be read of each.
    template <typename Arguments, typename Text = std::identity>
    [[nodiscard]] static CommandLine parse(const Arguments& arguments, Text text = {}) {
        CommandLine line;
        for (const auto& argument : arguments)
            line.add(std::invoke(text, argument));
        return line;
    }

private:
    void add(std::string_view argument);
};

/// The whole answer to "--help", in Turkish, with its last line feed.
[[nodiscard]] std::string_view helpText();
/// The answer to "--version", with its line feed.
[[nodiscard]] std::string_view versionText();

}  // namespace ulvak
