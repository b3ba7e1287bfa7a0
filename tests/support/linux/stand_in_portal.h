#pragma once

#include <atomic>
#include <cstdint>
#include <memory>

namespace ulvak::test {

/// A bus for this process's session, with nothing on it. One at a time.
class SessionBus {
public:
    SessionBus();
    ~SessionBus();
    SessionBus(const SessionBus&) = delete;
    SessionBus& operator=(const SessionBus&) = delete;

    [[nodiscard]] const char* address() const;

private:
    struct Daemon;
    std::unique_ptr<Daemon> daemon_;
};

/// What tells a desktop's settings on its bus, as far as light and dark go: 0 for no wish, 1 for dark, 2 for
/// light. An old one knows only the method that wraps its answer twice.
class StandInPortal {
public:
    enum class Age : std::uint8_t { old, current };

    StandInPortal(const SessionBus& bus, Age age, std::uint32_t wish);
    ~StandInPortal();
    StandInPortal(const StandInPortal&) = delete;
    StandInPortal& operator=(const StandInPortal&) = delete;

    void change(std::uint32_t wish);
    /// Another setting of the same group that changes.
    void changeContrast(std::uint32_t to);
    /// How often it has been asked.
    [[nodiscard]] int requests() const { return requests_; }

private:
    struct Service;
    std::atomic<std::uint32_t> wish_;
    std::atomic<int> requests_ = 0;
    std::unique_ptr<Service> service_;  ///< last: it uses the others, from its own thread
};

}  // namespace ulvak::test
