#pragma once

#include <cstdint>

/// Memory that runs out. Not part of the support library: a test that lists the source has its `operator new`
/// replaced by one that can be told to fail.
namespace ulvak::test {

/// While it lives, and until `stop`, allocations fail: the one with this number, counted from 0, and with
/// `andAllAfter` every later one too, on any thread. One at a time.
class FailingAllocation {
public:
    enum class Which : std::uint8_t { one, andAllAfter };

    FailingAllocation(std::int64_t number, Which which);
    ~FailingAllocation() { stop(); }
    FailingAllocation(const FailingAllocation&) = delete;
    FailingAllocation& operator=(const FailingAllocation&) = delete;

    void stop();
    /// Whether so many were asked for that one has failed.
    [[nodiscard]] bool hasFailed() const;
};

}  // namespace ulvak::test
