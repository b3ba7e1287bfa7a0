#pragma once

#include <atomic>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

#include "app/app_services.h"
#include "support/gate.h"
#include "support/record.h"

namespace ulvak::test {

/// What one scan does, and until when.
struct StagedScan {
    std::vector<Finding> findings;
    std::shared_ptr<Gate> gate;  ///< passed after counting, if there is one
    std::int64_t files = 0;
    std::int64_t bytes = 0;
    std::int64_t denied = 0;
    std::string current;
    bool heedsStop = true;
};

/// Bytes in a Trash. Threads: any.
struct StagedTrash {
    std::atomic<std::int64_t> fromHere = 0;
    std::atomic<std::int64_t> others = 0;
    // While they have any bytes.
    std::atomic<std::int64_t> itemsFromHere = 1;
    std::atomic<std::int64_t> otherItems = 1;

    [[nodiscard]] Cleaner::TrashContents contents() const {
        const std::int64_t items = fromHere > 0 ? itemsFromHere.load() : 0;
        return {.bytes = fromHere + others,
                .items = items + (others > 0 ? otherItems.load() : 0),
                .bytesFromHere = fromHere,
                .itemsFromHere = items};
    }
    [[nodiscard]] Cleaner::EmptiedTrash empty() {
        return {.bytes = fromHere.exchange(0) + others.exchange(0)};
    }
};

/// The folders of the user of the staged world, with the Trash where this system usually has it.
[[nodiscard]] const UserFolders& ayse();

/// What the application is told about the world, and what it asked of it: scans find what they are told, a
/// model answers, nothing runs, removals work.
/// Threads: fields are set before the services are used or while nothing runs; calls can be read any time.
/// It outlives what uses its services.
class StagedWorld {
public:
    StagedWorld();
    StagedWorld(const StagedWorld&) = delete;
    StagedWorld& operator=(const StagedWorld&) = delete;

    /// Over all that follows. A test replaces what it stages in another way.
    AppServices services;

    /// The next scan. When there is none, it is as the fields say.
    void stage(StagedScan scan);
    std::vector<Finding> result;
    std::int64_t files = 0;
    std::int64_t bytes = 0;
    std::int64_t denied = 0;
    std::string current = "/home/biri/klasör";

    AIStatus status;  ///< available
    std::atomic<int> statusRequests = 0;
    AIClassifier::Result reply = Verdict{.level = SafetyLevel::safe,
                                         .title = "Yorum",
                                         .explanation = "Modelin açıklaması.",
                                         .source = VerdictSource::ai,
                                         .confidence = 85};
    std::vector<std::string> running;
    std::optional<DiskInfo> disk = DiskInfo{.total = 500'000'000'000, .available = 100'000'000'000};
    std::shared_ptr<StagedTrash> trash = std::make_shared<StagedTrash>();
    std::shared_ptr<Record<std::string>> cleaned = std::make_shared<Record<std::string>>();  ///< ids

    // Open at first, and in the way whatever is stopped.
    Gate scanGate;
    Gate classifyGate;
    Gate cleanGate;
    Gate emptyGate;
    void openGates();

    /// "scan", "clean trash ID", "clean permanent ID", "classify ID NOTE", "reveal PATH", "empty", "open
    /// URL".
    [[nodiscard]] std::vector<std::string> calls() const { return calls_.values(); }
    [[nodiscard]] int count(std::string_view beginning) const;

private:
    void serveScans();
    void serveModel();
    void serveRemovals();
    void serveDesktop();
    [[nodiscard]] StagedScan nextScan();

    Record<std::string> calls_;
    std::mutex mutex_;
    std::deque<StagedScan> scans_;  ///< guarded by `mutex_`
};

}  // namespace ulvak::test
