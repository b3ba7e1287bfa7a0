#pragma once

#include <atomic>
#include <optional>
#include <string>
#include <thread>

namespace ulvak::test {

/// A volume whose server does not answer, at a folder: whoever asks it for anything waits. Only inside
/// `withPrivateMounts`. So that a test that fails ends all the same, the first who asks is noted and the
/// server then gone: that one and all others get an error.
///
///     if (const auto reason = DeadMount::whyNone())
///         GTEST_SKIP() << *reason;
class DeadMount {
public:
    /// Why there can be none; nothing where there can.
    [[nodiscard]] static std::optional<std::string> whyNone();

    explicit DeadMount(const std::string& path);
    ~DeadMount();
    DeadMount(const DeadMount&) = delete;
    DeadMount& operator=(const DeadMount&) = delete;

    [[nodiscard]] bool isMounted() const { return isMounted_; }

    /// Whether somebody has asked it for anything.
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
