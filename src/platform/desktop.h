#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Services and information of the user's desktop.
namespace ulvak::platform {

/// Shows and selects all these items (absolute paths) at once in the file browser. One that cannot select
/// opens the first item's folder. An empty list is not a failure. Returns false if nothing could be opened;
/// the desktop gives no useful reason.
///
/// Threads: any but the UI thread; blocks on the desktop for up to a few seconds.
[[nodiscard]] bool revealInFileBrowser(std::span<const std::string> paths);

/// Opens a URL with its default program. Fails and blocks like `revealInFileBrowser`.
bool openUrl(std::string_view url);

/// Whether this system has a privacy settings page where the user can grant this program wider access.
[[nodiscard]] bool hasPrivacySettings();

/// The names of this user's running applications as the desktop shows them, in the system's order. On a
/// system where the desktop does not name processes itself, an application with two names (in the user's
/// language, and its own) is listed under both. If it is not certain which application a process belongs to,
/// all candidates are listed: closing one window too many is better than removing a live application's files.
/// Read-only.
///
/// Threads: any; blocks while all processes are examined.
[[nodiscard]] std::vector<std::string> runningApplications();

/// The names of the installed applications, as the desktop shows them, by the id of their desktop entry
/// without
/// ".desktop". Includes those that are installed in sandboxes. Empty on a system that has no such entries.
/// Read-only.
///
/// Threads: any; blocks while the entries are read.
[[nodiscard]] std::map<std::string, std::string, std::less<>> applicationNames();

/// An application as its desktop entry or its sandbox describes it.
struct InstalledApplication {
    std::string id;                     ///< of the entry, without ".desktop", or of the sandbox
    std::vector<std::string> names;     ///< in the user's language, and the untranslated one; may be empty
    std::vector<std::string> programs;  ///< the file names of its program, its window class, its package
    bool isRunning = false;             ///< whether a process of this user may belong to it
};

/// What this user can start.
struct InstalledApplications {
    std::vector<InstalledApplication> all;  ///< sorted by id
    std::vector<std::string> processes;     ///< see `runningProcesses`
    /// False if a place where applications are installed is on a volume that may never answer.
    bool isComplete = true;
};

/// The applications installed for this user, sandboxed ones included, and which of them run. nullopt on a
/// system whose applications are the contents of one folder. Read-only.
///
/// Threads: any but the UI thread; blocks while the entries are read and all processes are examined.
[[nodiscard]] std::optional<InstalledApplications> installedApplications();

/// Whether the user prefers light or dark programs.
enum class ColorScheme : std::uint8_t { unsaid, light, dark };

/// Asks the desktop for the color scheme, and listens for changes while this lives. For toolkits that do not
/// track it themselves.
///
/// Threads: `changed` is called on a thread of this object's own: when the desktop has answered, and on every
/// change, but never after the destructor has returned. It must not wait for the thread that destroys this.
/// If no desktop answers, it is never called; neither the constructor nor the destructor waits for the
/// desktop.
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

/// The arguments of one start of the program.
struct LaunchRequest {
    std::vector<std::string> arguments;  ///< without the program's name; invalid UTF-8 is dropped
    std::string activationToken;         ///< lets the desktop bring a window to the front; empty for none

    friend bool operator==(const LaunchRequest&, const LaunchRequest&) = default;
};

/// The activation token of this start, from the environment.
[[nodiscard]] std::string activationToken();

/// Elects the first of several instances; later ones hand their request to it. The desktop decides which is
/// first, so two that start at once cannot both be. Without the means for that, every instance is first.
///
/// If the first one does not obey within a few seconds, the role is `silent`: it may be stopped or hang. The
/// user should then get a window anyway, since two windows cannot harm each other's labels.
///
/// Threads: not thread-safe; runs a thread of its own.
class SingleInstance {
public:
    enum class Role { first, handedOver, silent };

    /// Instances with the same `place` count as one: another home folder gets another window. Blocks until
    /// the role is known, a few seconds at most.
    SingleInstance(const std::string& place, const LaunchRequest& request);
    ~SingleInstance();
    SingleInstance(const SingleInstance&) = delete;
    SingleInstance& operator=(const SingleInstance&) = delete;

    [[nodiscard]] Role role() const;

    /// Called with each request, including those received before this call, on any thread. The sender waits
    /// until its request has been obeyed, that is, while anybody holds `turn`.
    using Received = std::function<void(LaunchRequest request, std::shared_ptr<void> turn)>;
    void listen(Received received);

private:
    class Desktop;
    std::unique_ptr<Desktop> desktop_;
};

}  // namespace ulvak::platform
