#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

/// One window for a user, however often the program is started.
namespace ulvak::platform {

/// What a start of the program brings along.
struct LaunchRequest {
    std::vector<std::string> arguments;  ///< without the program's name; valid UTF-8 or dropped
    std::string activationToken;  ///< with which the desktop lets a window come to the front; empty for none

    friend bool operator==(const LaunchRequest&, const LaunchRequest&) = default;
};

/// The tokens of this start, from the environment.
[[nodiscard]] std::string activationToken();

/// Tells the first of several programs from those that come later, which hand their request to it. Who is
/// first is decided by the desktop: two that start at once cannot both be. Where it has no means for that,
/// everyone is.
///
/// A first one that does not obey within a few seconds is `silent`: it may have been stopped, or hang. Then
/// the user should get a window of their own rather than none, for two windows cannot harm each other's
/// labels.
///
/// Threads: belongs to one; has a thread of its own.
class SingleInstance {
public:
    enum class Role { first, handedOver, silent };

    /// `place` is what must be the same for two to count as one: another home folder has another window.
    /// Blocks until the role is known, some seconds at most.
    SingleInstance(const std::string& place, const LaunchRequest& request);
    ~SingleInstance();
    SingleInstance(const SingleInstance&) = delete;
    SingleInstance& operator=(const SingleInstance&) = delete;

    [[nodiscard]] Role role() const;

    /// Called with each request, those before this call included, on any thread. The other waits for as long
    /// as somebody holds `turn`: until its request has been obeyed.
    using Received = std::function<void(LaunchRequest request, std::shared_ptr<void> turn)>;
    void listen(Received received);

private:
    class Desktop;
    std::unique_ptr<Desktop> desktop_;
};

}  // namespace ulvak::platform
