#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

#include "core/finding.h"
#include "core/format.h"
#include "core/paths.h"
#include "platform/desktop.h"

/// What a language model is told about a finding: a short English text of facts, one per line, from the
/// finding itself and a few quick disk reads. Facts that cannot be read get no line.
///
/// Names and excerpts come from the disk and are not trusted. They stay on their own line, without control
/// characters (and, in names, without double quotation marks); none can begin a line or imitate the user's
/// note.
///
/// Disk reads: a sample of 4000 regular files, the beginnings of two small text files, and listings of single
/// folders, within the bounds in `Circumstances`. Writes nothing, follows no links, enters no packages, and
/// opens no file but those two. Where the system allows it, no read updates the access date that the text
/// reports.
///
/// Threads: blocks the caller; never call it on the UI thread.
namespace ulvak::FolderContext {

/// Maximum text length in Unicode characters, whatever the folder contains; the user's note is not counted.
inline constexpr std::size_t maxTextLength = 16'384;

enum class Extent : std::uint8_t {
    full,
    minimal,  ///< path, size, dates and file types; no user's note, no names from inside
};

/// The applications of this machine, read once for a question or for several asked in quick succession.
struct Applications {
    std::vector<std::string> running;  ///< names; empty if `installed` says what runs
    /// Null where applications are the contents of `Circumstances::applications`.
    std::shared_ptr<const platform::InstalledApplications> installed;

    /// For a home laid out as on the system where applications are folders, also elsewhere: as there.
    [[nodiscard]] static Applications ofThisMachine(const UserFolders& folders);
};

/// Where and when the facts are gathered.
struct Circumstances {
    UserFolders folders;
    std::string applications = "/Applications";
    std::shared_ptr<const platform::InstalledApplications> installed;  ///< see `Applications`
    Format::Clock::time_point now = Format::Clock::now();
    std::stop_token stop;               ///< ends the sample, and so the text, early
    std::size_t maxNames = 50'000;      ///< maximum names read from one listing
    std::size_t maxOwnNames = 200;      ///< maximum names read to find an owner by what is inside
    std::size_t maxCandidates = 4'000;  ///< maximum text files whose length is queried
};

/// The facts, joined by single line feeds, none at the end. `runningApps` names the applications running now;
/// it is not looked at if `around` has those that are installed. `userNote` may be empty; it is the user's
/// and is included verbatim. A finding without urls is a programming error and aborts.
[[nodiscard]] std::string build(const Finding& finding, std::string_view userNote,
                                std::span<const std::string> runningApps, Extent extent,
                                const Circumstances& around);

/// The application that owns a folder, judged by its path alone, in a home with a library folder.
[[nodiscard]] std::optional<std::string> ownerName(std::string_view path, const UserFolders& folders);

}  // namespace ulvak::FolderContext
