#pragma once

#include <chrono>
#include <cstdint>
#include <span>
#include <string>

#include "core/finding.h"
#include "core/paths.h"

/// The program without its window: one scan, printed. Reads no remembered verdicts, deletes nothing and
/// writes nothing but standard output.
namespace ulvak::Diagnostics {

/// The counters of a finished scan.
struct Summary {
    std::int64_t files = 0;
    std::int64_t bytes = 0;
    std::int64_t denied = 0;
    std::chrono::nanoseconds elapsed{};
};

/// Scans and prints, with `asksModel` also the model's answers about what is uncertain. Blocks until done.
void run(bool asksModel);

/// The whole listing: the summary, an empty line, and each level's findings in the order given, at most 25
/// a level. Valid UTF-8, one line a finding.
[[nodiscard]] std::string listing(const Summary& summary, std::span<const Finding> findings,
                                  const UserFolders& folders = Paths::folders());

}  // namespace ulvak::Diagnostics
