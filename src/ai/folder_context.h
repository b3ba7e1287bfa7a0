#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <stop_token>
#include <string>
#include <string_view>

#include "core/finding.h"
#include "core/format.h"
#include "core/paths.h"

/// What a language model is told about one finding: a short English text of facts, one a line, from the
/// finding itself and from a few quick looks at the disk. Whatever cannot be read has no line.
///
/// Names and excerpts come from the disk and are not trusted. They stand on the line they belong to, without
/// control characters and, names, without double quotation marks; none can begin a line or take on the form
/// of the user's note.
///
/// Looks: a sample of 4000 regular files, the beginnings of two small text files, and listings of single
/// folders, of which no more is read than the bounds in `Circumstances` allow.
/// Nothing is written, no link or package is entered, nothing but those two files is opened, and no look
/// renews the access date that the text reports, where the system lets its user ask for that.
/// Threads: blocks the caller; never call it on the UI thread.
namespace ulvak::FolderContext {

/// The longest text in Unicode characters, whatever the folder holds; the user's note comes on top.
inline constexpr std::size_t maxTextLength = 16'384;

enum class Extent : std::uint8_t {
    full,
    minimal,  ///< path, size, dates and file types; neither the user's note nor a name from inside
};

/// Where and when the facts are gathered.
struct Circumstances {
    UserFolders folders;
    std::string applications = "/Applications";
    Format::Clock::time_point now = Format::Clock::now();
    std::stop_token stop;               ///< ends the sample early, and with it the text
    std::size_t maxNames = 50'000;      ///< read of one listing
    std::size_t maxCandidates = 4'000;  ///< text files asked for their length
};

/// The facts, lines joined by a single line feed, none at the end. `runningApps` are names of applications
/// that run now. The note may be empty; it is the user's and stands in the text as it is. A finding without
/// any url is a programming error and ends the program.
[[nodiscard]] std::string build(const Finding& finding, std::string_view userNote,
                                std::span<const std::string> runningApps, Extent extent,
                                const Circumstances& around);

/// The application that owns a folder, judged from its path alone.
[[nodiscard]] std::optional<std::string> ownerName(std::string_view path, const UserFolders& folders);

}  // namespace ulvak::FolderContext
