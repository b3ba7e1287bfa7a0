#include "support/failing_allocation.h"

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <new>

namespace ulvak::test {
namespace {

std::atomic<bool> isOn = false;
std::atomic<std::int64_t> left = 0;
std::atomic<bool> failsOn = false;
std::atomic<bool> failed = false;

bool fails() {
    if (!isOn.load(std::memory_order_relaxed))
        return false;
    const std::int64_t before = left.fetch_sub(1);
    const bool result = before == 0 || (before < 0 && failsOn);
    if (result)
        failed = true;
    return result;
}

}  // namespace

FailingAllocation::FailingAllocation(std::int64_t number, Which which) {
    left = number;
    failsOn = which == Which::andAllAfter;
    failed = false;
    isOn = true;
}

void FailingAllocation::stop() {
    isOn = false;
}

bool FailingAllocation::hasFailed() const {
    return failed;
}

}  // namespace ulvak::test

// The standard library's other forms call these. The address sanitizer replaces each form separately, so
// every form whose memory is freed the same way must be defined here.

void* operator new(std::size_t size, const std::nothrow_t& /*none*/) noexcept {
    return ulvak::test::fails() ? nullptr : std::malloc(size == 0 ? 1 : size);
}

void* operator new(std::size_t size) {
    void* memory = operator new(size, std::nothrow);
    if (memory == nullptr)
        throw std::bad_alloc();
    return memory;
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, const std::nothrow_t& /*none*/) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t /*size*/) noexcept {
    std::free(memory);
}
