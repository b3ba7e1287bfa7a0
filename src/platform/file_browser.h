#pragma once

#include <span>
#include <string>
#include <string_view>

/// What the desktop opens for the user. Threads: any but the one of the user interface; the calls wait for
/// the desktop, up to a few seconds. False when nothing could be opened; why, the desktop does not say in a
/// way that would help anybody.
namespace ulvak::platform {

/// Has the file browser show and select all these items, absolute paths, at once. One that cannot select
/// opens the folder of the first. Nothing to show is not a failure.
[[nodiscard]] bool revealInFileBrowser(std::span<const std::string> paths);

bool openUrl(std::string_view url);

/// Whether this system has a page of privacy settings on which the user can let this program see more.
[[nodiscard]] bool hasPrivacySettings();

}  // namespace ulvak::platform
