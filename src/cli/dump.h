#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>

#include "core/finding.h"
#include "core/paths.h"
#include "platform/language_model.h"

/// The program without its window: one scan, printed. Reads no remembered verdicts, deletes nothing and
/// writes nothing but standard output. Threads: any; blocks the caller.
namespace ulvak::Diagnostics {

/// The counters of a finished scan.
struct Summary {
    std::int64_t files = 0;
    std::int64_t bytes = 0;
    std::int64_t denied = 0;
    std::chrono::nanoseconds elapsed{};
};

/// Scans and prints, with `asksModel` also the model's answers about what is uncertain. False when the scan
/// could not be finished, which is told on the standard error.
[[nodiscard]] bool run(bool asksModel, const UserFolders& folders);

/// Asks the model about every finding that is unknown or guessed, one after the other in the order given, and
/// hands each piece of text to `output` as it comes: first the model's availability, then an answer or an
/// error for each finding. Blocks for as long as the model thinks.
void askModel(std::span<const Finding> findings, const platform::LanguageModel& model,
              const std::function<void(std::string_view)>& output, const UserFolders& folders);

/// The whole listing: the summary, an empty line, and each level's findings in the order given, at most 25
/// a level. Valid UTF-8, one line a finding.
[[nodiscard]] std::string listing(const Summary& summary, std::span<const Finding> findings,
                                  const UserFolders& folders);

}  // namespace ulvak::Diagnostics
