#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "core/safety_level.h"

namespace ulvak {

/// What kind of area a folder lies in.
enum class ScanContext : std::uint8_t {
    normal,       ///< unknown folders are guessed from their names
    personal,     ///< the user's own files: keep unless a rule says otherwise
    system,       ///< keep
    application,  ///< an application's settings and data: kept as the container says, but for what a rule
                  ///< knows
};

/// One row of the rule book: a place or a kind of folder that the program knows. A plain value.
struct Rule {
    /// An absolute path pattern, case-insensitive. May begin with "~", "$T" or "$C", a ranked one also with
    /// "$cache", "$config", "$data" or "$state"; after that, "*" does not cross a "/". Matches files and
    /// folders in every context.
    struct Path {
        std::string pattern;
        friend bool operator==(const Path&, const Path&) = default;
    };
    /// A case-insensitive pattern for the last component of a folder's path; a ranked one may have several
    /// components.
    struct Name {
        std::string pattern;
        /// If not empty, one of these must exist beside the folder: a file name, or a pattern if it contains
        /// "*" (case-sensitive).
        std::vector<std::string> siblings;
        /// If not empty, one of these must exist inside the folder; written as siblings are. A "CACHEDIR.TAG"
        /// must begin with its signature.
        std::vector<std::string> holds;
        /// Path prefixes under which the rule does not apply; tokens as in `Path`.
        std::vector<std::string> outside;
        friend bool operator==(const Name&, const Name&) = default;
    };
    using Match = std::variant<Path, Name>;

    /// Something to look into. `normal` keeps the current context; the others switch it.
    struct Container {
        ScanContext context = ScanContext::normal;
        friend bool operator==(const Container&, const Container&) = default;
    };
    /// Something to report as one finding.
    struct Unit {
        friend bool operator==(const Unit&, const Unit&) = default;
    };
    using Kind = std::variant<Container, Unit>;

    /// What replaces "{name}" in the title; for simulators, the source of the whole verdict.
    enum class Resolver : std::uint8_t {
        none,           ///< the last path component
        simulator,      ///< a folder named by a device's udid
        derivedData,    ///< a project's build data: the project
        avd,            ///< an emulator: its name without ".avd", "_" shown as a space
        app,            ///< an application bundle: the application
        deviceSupport,  ///< the symbols of one OS version: the version
        application,    ///< a folder named by an application's id: the name in its desktop entry
    };

    Match match;
    Kind kind;
    SafetyLevel level = SafetyLevel::unknown;
    std::string title;                     ///< Turkish; may contain "{name}" and "{parent}"
    std::string explanation;               ///< Turkish; empty for containers
    std::optional<std::string> group{};    ///< findings of one group in the same folder are merged
    std::vector<std::string> quitApps{};   ///< applications to quit before cleaning
    std::vector<std::string> processes{};  ///< process names, or patterns for them, that mean the same
    std::string command{};                 ///< what the user can run to shrink this; never run by the program
    Resolver resolver = Resolver::none;
    bool actionable = true;  ///< false: the program never cleans this itself
    bool inPersonal = true;  ///< false: a name rule does not apply among personal files
    /// The most specific of the ranked rules wins, paths before names; the others are asked in their order.
    bool isRanked = false;

    friend bool operator==(const Rule&, const Rule&) = default;
};

}  // namespace ulvak
