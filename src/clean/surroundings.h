#pragma once

#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "clean/clean_error.h"
#include "clean/guard_rails.h"
#include "platform/directory.h"
#include "platform/files.h"
#include "platform/user_folders.h"
#include "platform/volume.h"

namespace ulvak {

/// Folders that must stay, known by every path that leads to them and by their file numbers: a link, a
/// case-insensitive file system or a second mount can give any of them another path. Folders on a volume that
/// holds no item are known by path only, as nothing is removed there.
class KeptFolders {
public:
    void add(const std::string& path, const platform::Reach& reach);

    /// Whether any of them is the item at `path` or lies in it.
    [[nodiscard]] bool areWithin(std::string_view path) const;
    /// Whether the item at `path` is one of them or lies in one.
    [[nodiscard]] bool hold(std::string_view path) const;

    [[nodiscard]] const std::vector<std::string>& paths() const { return paths_; }
    [[nodiscard]] const std::set<platform::FileNumber>& numbers() const { return numbers_; }

private:
    std::vector<std::string> paths_;
    std::set<platform::FileNumber> numbers_;
};

/// What the disk and the system know of protected places, beyond the text of a path. Touches only the volumes
/// that hold the items, and the way there. Not thread-safe.
class Surroundings {
public:
    /// For items in these places.
    Surroundings(const GuardRails& rails, std::span<const CleanPlace> places);

    /// Why no item can be judged at all.
    [[nodiscard]] std::optional<CleanFailure> objection() const;
    /// Why an item that passed the guard rails must stay all the same, as far as can be told without looking
    /// at it.
    [[nodiscard]] std::optional<CleanFailure> objection(const CleanPlace& place, std::string_view url) const;
    /// The same, by the file numbers of the item and its ancestors.
    [[nodiscard]] std::optional<CleanFailure> objection(const CleanPlace& place, std::string_view url,
                                                        const platform::FileNumber& item) const;

    /// File numbers of the protected folders and all their ancestors.
    [[nodiscard]] const std::set<platform::FileNumber>& untouchable() const { return untouchable_; }

private:
    void addNumbers(const std::string& path);
    [[nodiscard]] bool isRefused(std::string_view path) const;
    [[nodiscard]] std::string realPath(const CleanPlace& place) const;

    UserFolders folders_;
    platform::Reach reach_;
    std::string unreadSetting_;
    KeptFolders kept_;    ///< their contents may be removed
    KeptFolders closed_;  ///< their contents may not be removed either
    std::set<std::string, std::less<>> numbered_;
    std::set<platform::FileNumber> untouchable_;
};

}  // namespace ulvak
