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

/// The text format of the file of remembered verdicts, independent of the disk. Pure; the input is not
/// trusted.
///
/// One JSON object without white space. Each member is named by a finding's id and holds
///
///     {"verdict":{…},"size":4096,"date":786000000.25}
namespace ulvak {

/// A point in time as stored in the file: seconds since 2001-01-01 00:00:00 UTC. Values read are kept bit for
/// bit, so that writing them back changes no digit.
struct StoredDate {
    double secondsSince2001 = 0;

    [[nodiscard]] static StoredDate from(FileTime time);

    friend bool operator==(const StoredDate&, const StoredDate&) = default;
};

/// One remembered verdict.
struct VerdictEntry {
    Verdict verdict;
    std::int64_t size = 0;  ///< bytes of the finding when the verdict was stored
    StoredDate date;        ///< when the verdict was stored

    friend bool operator==(const VerdictEntry&, const VerdictEntry&) = default;
};

/// Keyed and ordered by finding id, which is a path and so any bytes.
using VerdictEntries = std::map<std::string, VerdictEntry, std::less<>>;

/// No file of ours is longer: a lifetime of labels is a few megabytes. Anything longer is something else, and
/// must not fill memory or delay start-up.
inline constexpr std::size_t maxVerdictFileBytes = std::size_t{256} * 1024 * 1024;

/// Maximum nesting, inside unknown members: no decoder that reads this file accepts more.
inline constexpr int maxVerdictNesting = 512;

/// All entries, or an error if any of them is invalid: something is missing or has the wrong type, a size or
/// confidence is not an integer or does not fit, a level or source is unknown. A number such as 5.0 is an
/// integer. Unknown members are ignored. Of duplicate members the last wins; so does the last of two entries
/// for one id, but both must be valid.
[[nodiscard]] std::expected<VerdictEntries, DataCorrupted> decodeEntries(std::string_view text);

/// The inverse of `decodeEntries`. Returns nullopt if there is no such text: a date is not a finite number,
/// or there are too many entries.
///
/// An id that is valid UTF-8 is written as is. JSON cannot represent any other, yet the label must survive
/// until the next run. So its member is named by the id with U+FFFD for invalid sequences, with a number if
/// that name is taken, and its entry has an additional member "idBytes" with the id in hexadecimal. To a
/// reader that does not know that member, it is an entry for a path that does not exist. A verdict's texts
/// are for people: in them, invalid UTF-8 becomes U+FFFD for good.
[[nodiscard]] std::optional<std::string> encodeEntries(const VerdictEntries& entries);

}  // namespace ulvak
