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

/// Folders that must stay, by every path that leads to them and by their numbers on the disk: a link, letter
/// case that the file system does not tell apart, or a second mount can give any of them another path. What
/// lies on a volume that holds no item is known by its paths alone: nothing is removed on it.
class KeptFolders {
public:
    void add(const std::string& path, const platform::Reach& reach);

    /// Whether one of them is the item at `path`, or lies in it.
    [[nodiscard]] bool areWithin(std::string_view path) const;
    /// Whether the item at `path` is one of them, or lies in one.
    [[nodiscard]] bool hold(std::string_view path) const;

    [[nodiscard]] const std::vector<std::string>& paths() const { return paths_; }
    [[nodiscard]] const std::set<platform::FileNumber>& numbers() const { return numbers_; }

private:
    std::vector<std::string> paths_;
    std::set<platform::FileNumber> numbers_;
};

/// What the disk and the system know of places that must stay, beyond the text of a path. Touches no volume
/// but those that hold the items, and what is on the way to them. For one thread at a time.
class Surroundings {
public:
    /// Of items in these places.
    Surroundings(const GuardRails& rails, std::span<const CleanPlace> places);

    /// Why no item can be judged.
    [[nodiscard]] std::optional<CleanFailure> objection() const;
    /// Why an item that the guard rails let pass must stay all the same, for all that can be told without a
    /// look at it.
    [[nodiscard]] std::optional<CleanFailure> objection(const CleanPlace& place, std::string_view url) const;
    /// The same by the numbers of the item and of what holds it.
    [[nodiscard]] std::optional<CleanFailure> objection(const CleanPlace& place, std::string_view url,
                                                        const platform::FileNumber& item) const;

    /// The numbers of the folders that must stay, and of all around them.
    [[nodiscard]] const std::set<platform::FileNumber>& untouchable() const { return untouchable_; }

private:
    void addNumbers(const std::string& path);
    [[nodiscard]] bool isRefused(std::string_view path) const;
    [[nodiscard]] std::string realPath(const CleanPlace& place) const;

    UserFolders folders_;
    platform::Reach reach_;
    std::string unreadSetting_;
    KeptFolders kept_;    ///< what lies in them may go
    KeptFolders closed_;  ///< nothing in them is removed either
    std::set<std::string, std::less<>> numbered_;
    std::set<platform::FileNumber> untouchable_;
};

}  // namespace ulvak
