#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// What the user's desktop does for programs and tells them.
namespace ulvak::platform {

/// Has the file browser show and select all these items, absolute paths, at once. One that cannot select
/// opens the folder of the first. Nothing to show is not a failure. False when nothing could be opened; why,
/// the desktop does not say in a way that would help anybody. Threads: any but the UI thread;
/// waits for the desktop, up to a few seconds.
[[nodiscard]] bool revealInFileBrowser(std::span<const std::string> paths);

/// Has the desktop open a URL with the program for it. Fails and waits as `revealInFileBrowser`.
bool openUrl(std::string_view url);

/// Whether this system has a page of privacy settings on which the user can let this program see more.
[[nodiscard]] bool hasPrivacySettings();

/// The names of this user's running applications as the desktop shows them, in the system's order. Where the
/// desktop does not name a process itself, one that goes by two names, the user's language's and its own, is
/// there with both; and when it is not certain which application a process belongs to, all that it may be are
/// named: better one window too many is closed than a live application's files removed. It only reads.
/// Threads: any; blocks while all processes are looked through.
[[nodiscard]] std::vector<std::string> runningApplications();

/// Whether the user wants programs to be light or dark.
enum class ColorScheme : std::uint8_t { unsaid, light, dark };

/// Asks the desktop for that, and listens to it for as long as this lives. For what a toolkit does not know
/// by itself.
///
/// Threads: `changed` is called on a thread of this object's own: when the desktop has answered, whenever the
/// wish changes, and never again once the destructor has returned. It must not wait for whoever destroys
/// this. Where nobody answers it is not called; neither end waits for the desktop.
class ColorSchemeWatch {
public:
    using Changed = std::function<void(ColorScheme)>;

    explicit ColorSchemeWatch(Changed changed);
    ~ColorSchemeWatch();
    ColorSchemeWatch(const ColorSchemeWatch&) = delete;
    ColorSchemeWatch& operator=(const ColorSchemeWatch&) = delete;

private:
    class Desktop;
    std::shared_ptr<Desktop> desktop_;
};

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
