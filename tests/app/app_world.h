#pragma once

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <utility>
#include <vector>

#include "app/app_model.h"
#include "support/temp_tree.h"

namespace ulvak::test {

/// Runs the event loop until it holds. Fails after far longer than anything here takes.
[[nodiscard]] testing::AssertionResult eventually(const std::function<bool()>& holds);

/// The name of the timer with which that looks.
inline constexpr QLatin1StringView testsTimer("eventually");

/// Holds workers back until the test lets them go. Threads: any.
class Gate {
public:
    /// Returns when the gate is open, at a stop, or after far longer than a test waits for anything.
    void pass(std::stop_token stop = {});
    void open();
    /// How many have come to the gate so far.
    [[nodiscard]] int arrived() const;

private:
    mutable std::mutex mutex_;
    std::condition_variable_any changed_;
    bool isOpen_ = false;  ///< guarded by `mutex_`
    int arrived_ = 0;      ///< guarded by `mutex_`
};

/// A list that workers add to and the test reads.
template <typename Value>
class Record {
public:
    void add(Value value) {
        const std::scoped_lock lock(mutex_);
        values_.push_back(std::move(value));
    }
    [[nodiscard]] std::vector<Value> values() const {
        const std::scoped_lock lock(mutex_);
        return values_;
    }
    [[nodiscard]] std::size_t size() const { return values().size(); }

private:
    mutable std::mutex mutex_;
    std::vector<Value> values_;  ///< guarded by `mutex_`
};

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

    [[nodiscard]] Cleaner::TrashContents contents() const {
        return {.bytes = fromHere + others,
                .items = (fromHere > 0 ? 1 : 0) + (others > 0 ? 1 : 0),
                .bytesFromHere = fromHere,
                .itemsFromHere = fromHere > 0 ? 1 : 0};
    }
    [[nodiscard]] Cleaner::EmptiedTrash empty() {
        return {.bytes = fromHere.exchange(0) + others.exchange(0)};
    }
};

/// The folders of the user of the staged world, with the Trash where this system usually has it.
[[nodiscard]] const UserFolders& ayse();

/// A finding of the Trash action, judged by a rule.
[[nodiscard]] Finding staged(const std::string& id, SafetyLevel level = SafetyLevel::safe,
                             std::int64_t size = 100);
[[nodiscard]] Finding guessed(const std::string& id, SafetyLevel level = SafetyLevel::keep);
[[nodiscard]] Verdict answer(SafetyLevel level = SafetyLevel::regenerable);

/// An application over a staged world: a model that is there and fails, nothing running, removals that work,
/// scans that find what they are told. What is not staged is real.
class AppTest : public testing::Test {
protected:
    AppTest();
    ~AppTest() override;

    /// The next scan; one that was not staged finds nothing.
    void stage(StagedScan scan);
    /// Starts the application anew.
    AppModel& start();
    /// Destroys it.
    void end() { app_.reset(); }
    /// With the result of a scan.
    AppModel& startWith(std::vector<Finding> findings);
    /// Scans until it is done.
    void scanFor(std::vector<Finding> findings);

    [[nodiscard]] std::vector<std::string> ids() const;
    /// The verdicts file as a program started now would read it.
    [[nodiscard]] VerdictEntries remembered() const;
    [[nodiscard]] AppModel& app() { return *app_; }

    /// Runs an operation to its end.
    void analyze(const std::string& id, const std::string& note = "");
    void clean(std::vector<std::string> which, CleanMode mode = CleanMode::trash);
    void emptyTrash();

    TempTree tree;
    std::string verdictsPath = tree.path("veri/verdicts.json");
    AppServices services;
    std::shared_ptr<StagedTrash> trash = std::make_shared<StagedTrash>();
    std::shared_ptr<Record<std::string>> cleaned = std::make_shared<Record<std::string>>();
    std::shared_ptr<Record<std::string>> signalled = std::make_shared<Record<std::string>>();

private:
    struct Stage;
    std::shared_ptr<Stage> stage_;
    std::unique_ptr<AppModel> app_;
};

/// Runs the event loop until a task of the application has ended.
void runToEnd(QCoro::Task<> task);

}  // namespace ulvak::test
