#pragma once

#include <atomic>
#include <cstdint>
#include <memory>

namespace ulvak::test {

/// A private session bus for this process, with nothing on it. Only one at a time.
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

/// A portal that reports a desktop's light or dark setting on its bus: 0 for none, 1 for dark, 2 for light.
/// An old one has only the method that wraps its answer twice.
class StandInPortal {
public:
    enum class Age : std::uint8_t { old, current };

    StandInPortal(const SessionBus& bus, Age age, std::uint32_t wish);
    ~StandInPortal();
    StandInPortal(const StandInPortal&) = delete;
    StandInPortal& operator=(const StandInPortal&) = delete;

    void change(std::uint32_t wish);
    /// Signals a change to another setting in the same group.
    void changeContrast(std::uint32_t to);
    /// Number of requests so far.
    [[nodiscard]] int requests() const { return requests_; }

private:
    struct Service;
    std::atomic<std::uint32_t> wish_;
    std::atomic<int> requests_ = 0;
    std::unique_ptr<Service> service_;  ///< last: it uses the others, from its own thread
};

}  // namespace ulvak::test
