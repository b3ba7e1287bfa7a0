#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ulvak {

/// The parsed command line, of both programs. Arguments must match exactly; their position does not matter.
struct CommandLine {
    bool dump = false;     ///< "--dump": scan, print and exit, without a window
    bool ai = false;       ///< "--ai", with "--dump": ask the language model too
    bool help = false;     ///< "--help" or "-h"
    bool version = false;  ///< "--version"

    // The window's own.
    bool autoscan = false;             ///< "--autoscan": scan at once
    bool selectFirst = false;          ///< "--select-first": the first row of the list after a scan
    bool reducedMotion = false;        ///< "--reduced-motion": transitions take no time
    std::optional<std::string> level;  ///< what the first "--level=…" names, be it a level or not

    std::vector<std::string> unknown;

    /// `arguments` excludes the program's name; `text` makes a readable text of each.
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

/// The full "--help" text, in Turkish, including the final line feed.
[[nodiscard]] std::string_view helpText();
/// The "--version" text, including the line feed.
[[nodiscard]] std::string_view versionText();

}  // namespace ulvak
