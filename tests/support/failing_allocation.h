#pragma once

#include <cstdint>

/// Simulates running out of memory. Not part of the support library: a test that lists this source file has
/// its `operator new` replaced by one that can be made to fail.
namespace ulvak::test {

/// Until `stop` or destruction, the allocation with this number (from 0) fails, and with `andAllAfter` every
/// later one too, on any thread. Only one instance at a time.
class FailingAllocation {
public:
    enum class Which : std::uint8_t { one, andAllAfter };

    FailingAllocation(std::int64_t number, Which which);
    ~FailingAllocation() { stop(); }
    FailingAllocation(const FailingAllocation&) = delete;
    FailingAllocation& operator=(const FailingAllocation&) = delete;

    void stop();
    /// Whether the failing allocation was reached.
    [[nodiscard]] bool hasFailed() const;
};

}  // namespace ulvak::test
