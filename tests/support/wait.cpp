#include "support/wait.h"

#include <chrono>
#include <thread>

namespace ulvak::test {

using namespace std::chrono_literals;

void (*betweenLooks)() = [] { std::this_thread::sleep_for(1ms); };

testing::AssertionResult waitUntil(const std::function<bool()>& holds) {
    const auto deadline = std::chrono::steady_clock::now() + 60s;
    while (!holds()) {
        if (std::chrono::steady_clock::now() > deadline)
            return testing::AssertionFailure() << "it has not come about in time";
        betweenLooks();
    }
    return testing::AssertionSuccess();
}

}  // namespace ulvak::test
