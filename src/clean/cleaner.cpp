#include "clean/cleaner.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <iterator>
#include <optional>
#include <set>
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

/// Whether there is a cache is asked anew each time: until then its place may have become somebody's.
const GuardRails& rails() {
    static const GuardRails withCache(Paths::folders(), true);
    static const GuardRails without(Paths::folders(), false);
    return Paths::hasOwnCache() ? withCache : without;
}

CleanFailure failed(std::string message) {
    return CleanError{CleanError::Failed{std::move(message)}};
}

CleanFailure fileError(int number, std::string path) {
    return FileError{.code = {number, std::generic_category()}, .path = std::move(path)};
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

/// Folders that must stay, by every path that leads to them and by their numbers on the disk: a link, letter
/// case that the file system does not tell apart, or a second mount can give any of them another path.
class KeptFolders {
public:
    void add(const std::string& path) {
        paths_.push_back(path);
        const auto real = platform::resolvedPath(path);
        if (!real)
            return;
        paths_.push_back(*real);
        if (const auto info = platform::fileInfo(*real))
            numbers_.insert(info->volumeAndNumber);
    }

    /// Whether one of them is the item at `path`, or lies in it.
    [[nodiscard]] bool areWithin(std::string_view path) const {
        return std::ranges::any_of(paths_,
                                   [&](const std::string& kept) { return Paths::isWithin(kept, path); });
    }

    /// Whether the item at `path` is one of them, or lies in one.
    [[nodiscard]] bool hold(std::string_view path) const {
        return std::ranges::any_of(paths_,
                                   [&](const std::string& kept) { return Paths::isWithin(path, kept); });
    }

    [[nodiscard]] const std::vector<std::string>& paths() const { return paths_; }
    [[nodiscard]] const std::set<platform::FileNumber>& numbers() const { return numbers_; }

private:
    std::vector<std::string> paths_;
    std::set<platform::FileNumber> numbers_;
};

/// What the disk and the system know of places that must stay, beyond the text of a path.
class Surroundings {
public:
    Surroundings() : mountPoints_(platform::mountPoints()) {
        const platform::GuardedFolders guarded = platform::guardedFolders(Paths::home());
        for (const std::string& path : rails().protectedPaths())
            kept_.add(path);
        for (const std::string& path : guarded.themselves)
            kept_.add(path);
        for (const std::string& prefix : rails().forbiddenPrefixes())
            closed_.add(prefix.substr(0, prefix.size() - 1));
        for (const std::string& path : guarded.withContents)
            closed_.add(path);
        for (const KeptFolders* folders : {&kept_, &closed_}) {
            for (const std::string& path : folders->paths())
                addNumbers(path);
        }
    }

    /// Why an item that the guard rails let pass must stay all the same.
    [[nodiscard]] std::optional<CleanFailure> objection(const CleanPlace& place, std::string_view url) const {
        const std::string path = place.path();
        if (mountPoints_.empty())
            return fileError(EIO, path);  // "/" is always one: what lies inside the item cannot be told
        // No link is followed below the anchor, so this is where the item really is.
        const std::string real =
            Paths::join(platform::resolvedPath(place.anchor).value_or(place.anchor), place.relative);
        if (isRefused(path) || isRefused(real) || isRefusedByNumber(place))
            return CleanError{CleanError::Protected{Paths::display(url)}};
        const auto isInside = [&](const std::string& point) { return Paths::isWithin(point, real); };
        const auto mounted = std::ranges::find_if(mountPoints_, isInside);
        if (mounted != mountPoints_.end())
            return fileError(EBUSY, *mounted);
        return std::nullopt;
    }

private:
    /// A folder that must stay keeps all those around it.
    void addNumbers(const std::string& path) {
        for (std::string_view around = path; around.starts_with('/');
             around = around.substr(0, around.rfind('/'))) {
            if (const auto info = platform::fileInfo(std::string(around)))
                untouchable_.insert(info->volumeAndNumber);
        }
    }

    [[nodiscard]] bool isRefused(std::string_view path) const {
        return kept_.areWithin(path) || closed_.areWithin(path) || closed_.hold(path);
    }

    [[nodiscard]] bool isRefusedByNumber(const CleanPlace& place) const {
        const auto folder = openFolder(place);
        if (!folder)
            return false;  // and so nothing can be removed there
        const auto item = platform::entryNumber(*folder, std::string(place.name()));
        if (item && untouchable_.contains(*item))
            return true;
        const std::string path = place.path();
        for (std::size_t end = path.rfind('/'); end > 0; end = path.rfind('/', end - 1)) {
            const auto info = platform::fileInfo(path.substr(0, end));
            if (info && closed_.numbers().contains(info->volumeAndNumber))
                return true;
        }
        return false;
    }

    KeptFolders kept_;    ///< what lies in them may go
    KeptFolders closed_;  ///< nothing in them is removed either
    std::set<platform::FileNumber> untouchable_;
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

/// Where one simulator's identifier stands, the developer tools also take options, lists, and words for many
/// at once.
bool namesOneSimulator(std::string_view udid) {
    constexpr std::array<std::string_view, 3> words = {"all", "unavailable", "booted"};
    return !udid.empty() && udid.front() != '-' && udid.find_first_of(" ,") == std::string_view::npos &&
           std::ranges::find(words, udid) == words.end();
}

std::expected<std::int64_t, CleanFailure> deleteSimulator(const std::string& udid, std::int64_t size,
                                                          const Services& services) {
    if (!namesOneSimulator(udid))
        return std::unexpected(failed("Simülatör silinemedi: kimliği tanınmıyor."));
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

/// Where the Trash is; its name is empty for a Trash that is no folder in another.
CleanPlace trashPlace() {
    const std::string_view trash = Paths::trash();
    const std::size_t slash = trash.rfind('/');
    return {.anchor = std::string(trash.substr(0, slash)), .relative = std::string(trash.substr(slash + 1))};
}

std::vector<std::string> namesIn(const std::expected<Directory, std::error_code>& folder) {
    return folder ? platform::entryNames(*folder).value_or(std::vector<std::string>())
                  : std::vector<std::string>();
}

/// Removes what is in the Trash now, one by one, so that an item that cannot be removed keeps no other. What
/// is written about it goes after it: whatever stays behind can still be restored.
void removeTrashedItems(const Directory& trash, const Services& services) {
    const platform::TrashLayout& layout = platform::trashLayout();
    const auto items = trash.openBelow(layout.items.c_str());
    const auto notes = trash.openBelow(layout.notes.c_str());
    const std::vector<std::string> itemNames = namesIn(items);
    // Others write the note first and move the item after it, at once.
    const std::vector<std::string> noteNames = namesIn(notes);
    for (const std::string& name : itemNames) {
        // Dropped by design: what stays behind is seen in the listing at the end.
        (void)services.removeEntry(*items, name);
    }
    if (!items && items.error() != std::errc::no_such_file_or_directory)
        return;
    for (const std::string& note : noteNames) {
        const bool isNote = note.ends_with(layout.noteSuffix);
        const std::string name = isNote ? note.substr(0, note.size() - layout.noteSuffix.size()) : "";
        if (!isNote || !items || !platform::entryNumber(*items, name))
            (void)services.removeEntry(*notes, note);  // as above
    }
    // Only when they are empty: what has come since then stays, for the desktop to decide about.
    (void)(items && platform::removeEmptyFolder(trash, layout.items));
    (void)(notes && platform::removeEmptyFolder(trash, layout.notes));
}

/// Whether the Trash is empty afterwards. The file browser's own ".DS_Store" may stay.
bool emptiedDirectly(const CleanPlace& place, const Services& services) {
    const auto parent = Directory::open(place.anchor);
    const auto trash = parent ? parent->openBelow(place.relative.c_str()) : std::unexpected(parent.error());
    if (!trash || !platform::entryNames(*trash))
        return false;
    const platform::TrashLayout& layout = platform::trashLayout();
    if (!layout.items.empty())
        removeTrashedItems(*trash, services);
    for (const std::string& name : namesIn(trash)) {
        if (name != layout.items && name != layout.notes)
            (void)services.removeEntry(*trash, name);  // as above
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
        .trashEmptyingCommand = platform::trashEmptyingCommand,
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
    const CleanPlace trash = trashPlace();
    if (!trash.anchor.empty() && !trash.relative.empty()) {
        // What must stay would not be safe from the desktop either.
        if (auto objection = Surroundings().objection(trash, Paths::trash()))
            return std::unexpected(std::move(*objection));
        if (emptiedDirectly(trash, services))
            return {};
    }
    const auto command = services.trashEmptyingCommand(Paths::trash());
    if (!command)
        return std::unexpected(failed(
            "Çöp kutusu boşaltılamadı: masaüstünün çöp kutusu başka bir klasör olabilir, ona dokunulmadı."));
    const auto result = services.run(command->program, command->arguments);
    if (!result)
        return std::unexpected(StartError{.program = command->program, .code = result.error()});
    if (result->status != 0)
        return std::unexpected(failed("Çöp kutusu boşaltılamadı: " + result->error));
    return {};
}

}  // namespace ulvak::Cleaner
