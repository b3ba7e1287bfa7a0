#include "clean/cleaner.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <optional>
#include <utility>

#include "core/paths.h"
#include "core/text.h"
#include "platform/files.h"
#include "platform/guarded_folders.h"
#include "platform/removal.h"
#include "platform/running_applications.h"
#include "platform/trash.h"
#include "platform/volume.h"

namespace ulvak::Cleaner {
namespace {

using platform::Directory;
using platform::FileError;

const GuardRails& rails() {
    static const GuardRails built(Paths::folders());
    return built;
}

CleanFailure failed(std::string message) {
    return CleanError{CleanError::Failed{std::move(message)}};
}

CleanFailure fileError(int number, std::string path) {
    return FileError{.code = {number, std::generic_category()}, .path = std::move(path)};
}

/// What the disk and the system know of places that must stay, beyond the text of a path: a home folder that
/// is a link and so has two paths, folders with names of the user's language, volumes mounted inside.
class Surroundings {
public:
    Surroundings()
        : real_(realFolders()),
          guarded_(platform::guardedFolders(Paths::home())),
          mountPoints_(platform::mountPoints()) {}

    /// Why an item that the guard rails let pass must stay all the same.
    [[nodiscard]] std::optional<CleanFailure> objection(const CleanPlace& place, std::string_view url) const {
        const std::string path = place.path();
        // No link is followed below the anchor, so this is where the item really is.
        const std::string real =
            Paths::join(platform::resolvedPath(place.anchor).value_or(place.anchor), place.relative);
        if (rails().holdsProtected(path) || real_.holdsProtected(real) || isGuarded(path))
            return CleanError{CleanError::Protected{Paths::display(url)}};
        const auto isInside = [&](const std::string& point) { return Paths::isWithin(point, real); };
        const auto mounted = std::ranges::find_if(mountPoints_, isInside);
        if (mounted != mountPoints_.end())
            return fileError(EBUSY, *mounted);
        return std::nullopt;
    }

private:
    static UserFolders realFolders() {
        UserFolders folders = Paths::folders();
        for (std::string* folder : {&folders.home, &folders.temp, &folders.cache})
            *folder = platform::resolvedPath(*folder).value_or(*folder);
        return folders;
    }

    [[nodiscard]] bool isGuarded(const std::string& path) const {
        return std::ranges::any_of(guarded_.themselves,
                                   [&](const std::string& kept) { return Paths::isWithin(kept, path); }) ||
               std::ranges::any_of(guarded_.withContents, [&](const std::string& kept) {
                   return Paths::isWithin(kept, path) || Paths::isWithin(path, kept);
               });
    }

    GuardRails real_;
    platform::GuardedFolders guarded_;
    std::vector<std::string> mountPoints_;
};

/// Where each item is, if none of them must stay.
std::expected<std::vector<CleanPlace>, CleanFailure> judged(const std::vector<std::string>& urls) {
    std::vector<CleanPlace> places;
    for (const std::string& url : urls) {
        auto place = rails().place(url);
        if (!place)
            return std::unexpected(CleanError{CleanError::Protected{Paths::display(url)}});
        places.push_back(std::move(*place));
    }
    const Surroundings surroundings;
    for (std::size_t index = 0; index < urls.size(); ++index) {
        if (auto objection = surroundings.objection(places[index], urls[index]))
            return std::unexpected(std::move(*objection));
    }
    return places;
}

/// The folder that holds an item, reached from the anchor without following a link.
std::expected<Directory, CleanFailure> openFolder(const CleanPlace& place) {
    auto anchor = Directory::open(place.anchor);
    if (!anchor)
        return std::unexpected(FileError{.code = anchor.error(), .path = place.anchor});
    const std::string way(place.folder());
    if (way.empty())
        return std::move(*anchor);
    auto folder = anchor->openBelow(way.c_str());
    if (!folder)
        return std::unexpected(FileError{.code = folder.error(), .path = Paths::join(place.anchor, way)});
    return std::move(*folder);
}

std::expected<void, CleanFailure> removeItem(const CleanPlace& place, const Services& services) {
    const auto folder = openFolder(place);
    if (!folder)
        return std::unexpected(folder.error());
    auto removed = services.removeEntry(*folder, std::string(place.name()));
    if (removed)
        return {};
    FileError error = std::move(removed.error());
    error.path = Paths::join(Paths::join(place.anchor, place.folder()), error.path);
    return std::unexpected(std::move(error));
}

/// The Trash takes a path and finds its own way. Looking before and after makes sure that it found ours.
std::expected<void, CleanFailure> trashItem(const CleanPlace& place, const Services& services) {
    const auto folder = openFolder(place);
    if (!folder)
        return std::unexpected(folder.error());
    const std::string path = place.path();
    const std::string name(place.name());
    const auto item = platform::entryNumber(*folder, name);
    if (!item)
        return std::unexpected(fileError(ENOENT, path));
    if (!folder->isAt(Paths::join(place.anchor, place.folder())))
        return std::unexpected(fileError(ESTALE, path));
    if (auto moved = services.moveToTrash(path); !moved)
        return std::unexpected(std::move(moved.error()));
    if (platform::entryNumber(*folder, name) == item)
        return std::unexpected(fileError(ESTALE, path));
    return {};
}

std::expected<std::int64_t, CleanFailure> deleteSimulator(const std::string& udid, std::int64_t size,
                                                          const Services& services) {
    static const std::string program = "/usr/bin/xcrun";
    const std::array<std::string, 3> arguments = {"simctl", "delete", udid};
    const auto result = services.run(program, arguments);
    if (!result)
        return std::unexpected(StartError{.program = program, .code = result.error()});
    if (result->status != 0)
        return std::unexpected(failed("Simülatör silinemedi: " + result->error));
    return size;
}

std::expected<std::int64_t, CleanFailure> removeFiles(const Finding& finding, CleanMode mode,
                                                      const Services& services) {
    const auto places = judged(finding.urls);
    if (!places)
        return std::unexpected(places.error());
    for (const CleanPlace& place : *places) {
        auto done = mode == CleanMode::trash ? trashItem(place, services) : removeItem(place, services);
        if (!done)
            return std::unexpected(std::move(done.error()));
    }
    return finding.size;
}

/// The Trash itself, unless it is a link, is another volume's, or holds what must stay.
std::expected<Directory, CleanFailure> openTrash() {
    const std::string_view trash = Paths::trash();
    const std::size_t slash = trash.rfind('/');
    const CleanPlace place{.anchor = std::string(trash.substr(0, slash)),
                           .relative = std::string(trash.substr(slash + 1))};
    if (place.anchor.empty() || place.relative.empty() || rails().isForbidden(Paths::join(trash, "")))
        return std::unexpected(CleanError{CleanError::Protected{Paths::display(trash)}});
    if (auto objection = Surroundings().objection(place, trash))
        return std::unexpected(std::move(*objection));
    const auto parent = openFolder(place);
    if (!parent)
        return std::unexpected(parent.error());
    auto folder = parent->openBelow(place.relative.c_str());
    if (!folder)
        return std::unexpected(FileError{.code = folder.error(), .path = place.path()});
    return std::move(*folder);
}

/// Whether the Trash is empty afterwards. The file browser's own ".DS_Store" may stay.
bool emptiedDirectly(const Services& services) {
    const auto trash = openTrash();
    if (!trash)
        return false;
    const auto names = platform::entryNames(*trash);
    if (!names)
        return false;
    // Sorted, what is in the Trash goes before what is written about it.
    for (const std::string& name : *names) {
        // Dropped by design: what stays behind is seen in the listing that follows.
        (void)services.removeEntry(*trash, name);
    }
    const auto left = platform::entryNames(*trash);
    return left && std::ranges::all_of(*left, [](const std::string& name) { return name == ".DS_Store"; });
}

}  // namespace

const Services& Services::system() {
    static const Services services{
        .removeEntry = platform::removeEntry,
        .moveToTrash = platform::moveToTrash,
        .run = [](const std::string& program,
                  std::span<const std::string> arguments) { return Shell::run(program, arguments); },
    };
    return services;
}

bool isAllowed(std::string_view path) {
    return rails().isAllowed(path);
}

std::vector<std::string> runningApps(std::span<const std::string> among) {
    if (among.empty())
        return {};
    return runningApps(among, platform::runningApplications());
}

std::vector<std::string> runningApps(std::span<const std::string> among,
                                     std::span<const std::string> running) {
    std::vector<std::string> folded;
    for (const std::string& name : running)
        folded.push_back(lowerCased(name));
    std::vector<std::string> found;
    std::ranges::copy_if(among, std::back_inserter(found), [&](const std::string& name) {
        return std::ranges::find(folded, lowerCased(name)) != folded.end();
    });
    return found;
}

std::expected<std::int64_t, CleanFailure> clean(const Finding& finding, CleanMode mode,
                                                const Services& services) {
    if (const auto* simulator = std::get_if<CleanAction::DeleteSimulator>(&finding.action.value))
        return deleteSimulator(simulator->udid, finding.size, services);
    if (const auto* none = std::get_if<CleanAction::None>(&finding.action.value))
        return std::unexpected(failed(none->reason));
    return removeFiles(finding, mode, services);
}

std::expected<void, CleanFailure> emptyTrash(const Services& services) {
    if (emptiedDirectly(services))
        return {};
    const platform::Command& command = platform::trashEmptyingCommand();
    const auto result = services.run(command.program, command.arguments);
    if (!result)
        return std::unexpected(StartError{.program = command.program, .code = result.error()});
    if (result->status != 0)
        return std::unexpected(failed("Çöp kutusu boşaltılamadı: " + result->error));
    return {};
}

}  // namespace ulvak::Cleaner
