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

/// The program without its window: runs one scan and prints it. Reads no remembered verdicts, deletes
/// nothing, and writes only to the standard streams. Threads: any; blocks the caller.
namespace ulvak::Diagnostics {

/// The counters of a finished scan.
struct Summary {
    std::int64_t files = 0;
    std::int64_t bytes = 0;
    std::int64_t denied = 0;
    std::chrono::nanoseconds elapsed{};
};

/// Scans and prints; with `asksModel`, also the model's answers about uncertain findings. Returns false if
/// the scan could not be finished, after saying so on standard error.
[[nodiscard]] bool run(bool asksModel, const UserFolders& folders);

/// Asks the model about every unknown or guessed finding, one at a time in the given order, and passes each
/// piece of text to `output` as it arrives: first the model's availability, then an answer or error for each
/// finding. Blocks for as long as the model thinks.
void askModel(std::span<const Finding> findings, const platform::LanguageModel& model,
              const std::function<void(std::string_view)>& output, const UserFolders& folders);

/// The whole listing: the summary, an empty line, then each level's findings in the given order, at most 25
/// per level. Valid UTF-8, one line per finding.
[[nodiscard]] std::string listing(const Summary& summary, std::span<const Finding> findings,
                                  const UserFolders& folders);

}  // namespace ulvak::Diagnostics
