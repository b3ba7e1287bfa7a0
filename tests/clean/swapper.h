#pragma once

#include <atomic>
#include <functional>
#include <string>
#include <thread>
#include <utility>

#include "support/system.h"

namespace ulvak::test {

/// Swaps once; returns whether it did.
using Swap = std::function<bool()>;

/// Swaps two entries atomically.
[[nodiscard]] inline Swap exchanging(std::string one, std::string other) {
    return [one = std::move(one), other = std::move(other)] { return exchange(one, other) == 0; };
}

/// Swaps things for each other without pause while it is on.
class Swapper {
public:
    Swapper() : thread_([this] { work(); }) {}
    ~Swapper() {
        quits_ = true;
        isOn_ = true;
        isOn_.notify_one();
        thread_.join();
    }
    Swapper(const Swapper&) = delete;
    Swapper& operator=(const Swapper&) = delete;

    /// Returns after the first swap.
    void start(Swap swap) {
        swap_ = std::move(swap);
        isOn_ = true;
        isOn_.notify_one();
        isAtWork_.wait(false);
    }

    /// Returns once swapping has stopped.
    void stop() {
        isOn_ = false;
        isAtWork_.wait(true);
    }

    [[nodiscard]] long swaps() const { return swaps_; }

private:
    void work() {
        for (;;) {
            isOn_.wait(false);
            if (quits_)
                return;
            swap();  // first, because this thread may get no more time in this round
            setAtWork(true);
            while (isOn_ && !quits_)
                swap();
            setAtWork(false);
        }
    }

    void swap() {
        if (swap_())
            ++swaps_;
    }

    void setAtWork(bool isAtWork) {
        isAtWork_ = isAtWork;
        isAtWork_.notify_one();
    }

    Swap swap_;  // published by `isOn_`
    std::atomic<bool> isOn_ = false;
    std::atomic<bool> isAtWork_ = false;
    std::atomic<bool> quits_ = false;
    std::atomic<long> swaps_ = 0;
    std::thread thread_;
};

}  // namespace ulvak::test
