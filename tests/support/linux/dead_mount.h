#pragma once

#include <atomic>
#include <optional>
#include <string>
#include <thread>

namespace ulvak::test {

/// A volume at a folder whose server does not answer: any request to it blocks. Only inside
/// `withPrivateMounts`. So that a failing test still ends, the first request is recorded and the server then
/// disconnects: that request and all others fail.
///
///     if (const auto reason = DeadMount::whyNone())
///         GTEST_SKIP() << *reason;
class DeadMount {
public:
    /// Why none can be made; empty if it can.
    [[nodiscard]] static std::optional<std::string> whyNone();

    explicit DeadMount(const std::string& path);
    ~DeadMount();
    DeadMount(const DeadMount&) = delete;
    DeadMount& operator=(const DeadMount&) = delete;

    [[nodiscard]] bool isMounted() const { return isMounted_; }

    /// Whether it has received any request.
    [[nodiscard]] bool wasAsked() const { return wasAsked_; }

private:
    void serve();

    std::string path_;
    int device_ = -1;
    int quit_ = -1;
    bool isMounted_ = false;
    std::atomic<bool> wasAsked_ = false;
    std::thread server_;
};

}  // namespace ulvak::test
