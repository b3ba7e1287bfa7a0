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

/// What one scan reports, and when it may finish.
struct StagedScan {
    std::vector<Finding> findings;
    std::shared_ptr<Gate> gate;  ///< passed after the counters are set, if present
    std::int64_t files = 0;
    std::int64_t bytes = 0;
    std::int64_t denied = 0;
    std::string current;
    bool heedsStop = true;
};

/// The bytes in a Trash. Thread-safe.
struct StagedTrash {
    std::atomic<std::int64_t> fromHere = 0;
    std::atomic<std::int64_t> others = 0;
    // Used while the respective bytes are not 0.
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

/// The staged user's folders, with the Trash where this system usually has it.
[[nodiscard]] const UserFolders& ayse();

/// Stages what the application is told about the world and records what it asks for: scans return what is
/// staged, a model answers, no applications run, removals succeed.
/// Threads: set fields before the services are used or while nothing is running; calls can be read any time.
/// Must outlive whatever uses its services.
class StagedWorld {
public:
    StagedWorld();
    StagedWorld(const StagedWorld&) = delete;
    StagedWorld& operator=(const StagedWorld&) = delete;

    /// Backed by the fields below. A test replaces those it stages differently.
    AppServices services;

    /// Queues a scan. With an empty queue, a scan returns the fields below.
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

    // Initially open; stops do not open them.
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
