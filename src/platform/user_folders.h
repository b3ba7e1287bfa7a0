#pragma once

#include <optional>
#include <string>

/// The folders that the operating system gives the current user. Each call asks anew; `Paths` keeps the
/// answers. All results are absolute and as the system spells them, trailing "/" included; bytes, not
/// necessarily UTF-8. Safe from any thread as long as nobody changes the environment.
namespace ulvak::platform {

[[nodiscard]] std::string homeDirectory();

/// Where programs put temporary files of this user.
[[nodiscard]] std::string temporaryDirectory();

/// The per-user cache folder, where the system has one apart from the temporary folder.
[[nodiscard]] std::optional<std::string> cacheDirectory();

/// Where programs keep data of this user that is no document, given the home folder. There always is one.
[[nodiscard]] std::string applicationSupportDirectory(const std::string& home);

/// Where this user's trashed files lie, given the home folder.
[[nodiscard]] std::string trashDirectory(const std::string& home);

}  // namespace ulvak::platform
