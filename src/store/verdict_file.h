#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <expected>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "core/verdict.h"
#include "platform/file_time.h"

/// The file of remembered verdicts as text, apart from the disk. Pure; nothing of a file is trusted.
///
/// One JSON object without white space, its members the findings' ids, each with
///
///     {"verdict":{…},"size":4096,"date":786000000.25}
namespace ulvak {

/// Points in time as the file has them: seconds since 2001-01-01 00:00:00 UTC. What was read is kept to the
/// last bit, so that writing it again changes no digit.
struct StoredDate {
    double secondsSince2001 = 0;

    [[nodiscard]] static StoredDate from(FileTime time);

    friend bool operator==(const StoredDate&, const StoredDate&) = default;
};

/// One remembered verdict.
struct VerdictEntry {
    Verdict verdict;
    std::int64_t size = 0;  ///< bytes of the finding when the verdict was stored
    StoredDate date;        ///< when that was

    friend bool operator==(const VerdictEntry&, const VerdictEntry&) = default;
};

/// By the findings' ids, which are paths and so any bytes; in the order of these.
using VerdictEntries = std::map<std::string, VerdictEntry, std::less<>>;

/// No file of ours is longer. A user's labels of a lifetime are some megabytes; what is longer than this is
/// something else, and neither fills the memory nor holds up the start.
inline constexpr std::size_t maxVerdictFileBytes = std::size_t{256} * 1024 * 1024;

/// Brackets in brackets, in members that nobody knows: no decoder that this file meets takes more.
inline constexpr int deepestVerdictFile = 512;

/// All entries, or none when anything is amiss with one of them: something is missing or has the wrong type,
/// a size or a confidence is no integer or does not fit, a level or source is unknown. A number such as 5.0
/// is an integer. Members that nobody knows are ignored. Of members with one name the last counts; of two
/// entries for one id, too, but both must be sound.
[[nodiscard]] std::expected<VerdictEntries, DataCorrupted> decodeEntries(std::string_view text);

/// What `decodeEntries` reads. Absent when there is no such text: a date that is no finite number, or too
/// many entries.
///
/// An id that is valid UTF-8 is written as it is. JSON has no place for another, and yet a label must be
/// there on the next run: its member is named as people would see the id, with U+FFFD for what is not UTF-8,
/// and in case that name is taken with a number; and its entry has one more member, "idBytes", the id in
/// hexadecimal digits. To a reader that does not know this member it is an entry for a path that does not
/// exist. Texts of a verdict are for people: in them, what is not UTF-8 becomes U+FFFD for good.
[[nodiscard]] std::optional<std::string> encodeEntries(const VerdictEntries& entries);

}  // namespace ulvak
