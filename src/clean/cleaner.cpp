#include "clean/cleaner.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <functional>
#include <iterator>
#include <optional>
#include <set>
#include <string>
#include <utility>

#include "clean/surroundings.h"
#include "clean/trash_judging.h"
#include "core/glob.h"
#include "core/paths.h"
#include "core/text.h"
#include "platform/desktop.h"
#include "platform/process.h"
#include "platform/removal.h"
#include "platform/trash.h"

namespace ulvak {

struct CleanAhead {
    Surroundings surroundings;
    std::set<std::string, std::less<>> anchors = {};        ///< of the places that were looked at
    std::unique_ptr<platform::TrashNotes> notes = nullptr;  ///< null when nothing goes to the Trash
};

namespace {

using platform::Directory;
using platform::FileError;

CleanFailure failed(std::string message) {
    return CleanError{CleanError::Failed{std::move(message)}};
}

CleanFailure fileError(int number, std::string path) {
    return FileError{.code = {number, std::generic_category()}, .path = std::move(path)};
}

/// Opens the folder that contains an item, from the anchor, following no link.
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

/// An item as judged.
struct Judged {
    CleanPlace place;
    /// nullopt if nothing was there: whatever appears there later was never judged.
    std::optional<platform::ItemIdentity> identity;
    platform::HeldEntry held;  ///< held only if the file number alone identifies it
};

/// The places of the items, if the paths alone allow all of them to go.
std::expected<std::vector<CleanPlace>, CleanFailure> placesOf(const std::vector<std::string>& urls,
                                                              const GuardRails& rails) {
    std::vector<CleanPlace> places;
    for (const std::string& url : urls) {
        auto place = rails.place(url);
        if (!place)
            return std::unexpected(CleanError{CleanError::Protected{Paths::display(url, rails.folders())}});
        places.push_back(std::move(*place));
    }
    return places;
}

/// Identifies each item, unless one of them must stay.
std::expected<std::vector<Judged>, CleanFailure> judged(const std::vector<std::string>& urls,
                                                        std::vector<CleanPlace> places,
                                                        const Surroundings& surroundings) {
    if (auto objection = surroundings.objection())
        return std::unexpected(std::move(*objection));
    std::vector<Judged> items;
    for (std::size_t index = 0; index < urls.size(); ++index) {
        CleanPlace& place = places[index];
        if (auto objection = surroundings.objection(place, urls[index]))
            return std::unexpected(std::move(*objection));
        Judged item;
        // A folder that cannot be opened is no objection: nothing can be removed from it either.
        if (const auto folder = openFolder(place)) {
            item.identity = platform::entryIdentity(*folder, std::string(place.name()));
            if (item.identity && !item.identity->born)
                item.held = platform::HeldEntry(*folder, std::string(place.name()));
        }
        if (item.identity) {
            if (auto objection = surroundings.objection(place, urls[index], item.identity->number))
                return std::unexpected(std::move(*objection));
        }
        item.place = std::move(place);
        items.push_back(std::move(item));
    }
    return items;
}

/// Skips items that cannot be opened; that failure is reported on removal.
void addNote(platform::TrashNotes& notes, const CleanPlace& place) {
    if (const auto folder = openFolder(place))
        notes.add(*folder, std::string(place.name()), place.path());
}

/// For the items of one finding, if several are left.
std::unique_ptr<platform::TrashNotes> notesFor(std::span<const Judged> items) {
    if (items.size() < 2)
        return nullptr;
    auto notes = std::make_unique<platform::TrashNotes>();
    for (const Judged& item : items.first(std::min(items.size(), platform::TrashNotes::maxNotes))) {
        if (item.identity)
            addNote(*notes, item.place);
    }
    notes->flush();
    return notes;
}

std::expected<void, CleanFailure> removeItem(const Judged& item, CleanMode mode,
                                             const Surroundings& surroundings, CleanRun& run,
                                             const Cleaner::Services& services, platform::TrashNotes* notes) {
    const CleanPlace& place = item.place;
    const auto folder = openFolder(place);
    if (!folder)
        return std::unexpected(folder.error());
    if (!item.identity)
        return std::unexpected(fileError(ENOENT, place.path()));
    const std::string name(place.name());
    if (mode == CleanMode::trash) {
        auto trashed = services.moveToTrash(*folder, name, *item.identity, place.path(), notes);
        if (!trashed)
            return std::unexpected(std::move(trashed.error()));
        run.trashed.push_back(std::move(*trashed));
    } else if (auto removed = services.removeItem(*folder, name, *item.identity, surroundings.untouchable());
               !removed) {
        FileError error = std::move(removed.error());
        error.path = Paths::join(Paths::join(place.anchor, place.folder()), error.path);
        return std::unexpected(std::move(error));
    }
    ++run.done;
    return {};
}

/// In place of a simulator's identifier, the developer tools also accept options, lists, and keywords that
/// mean many simulators.
bool namesOneSimulator(std::string_view udid) {
    constexpr std::array<std::string_view, 3> words = {"all", "unavailable", "booted"};
    return !udid.empty() && udid.front() != '-' && udid.find_first_of(" ,") == std::string_view::npos &&
           std::ranges::find(words, udid) == words.end();
}

std::expected<std::int64_t, CleanFailure> deleteSimulator(const std::string& udid, std::int64_t size,
                                                          const Cleaner::Services& services) {
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

CleanFailure stopped(std::size_t done, std::size_t all) {
    if (done == 0)
        return failed("Temizlik durduruldu: hiçbir öğeye dokunulmadı.");
    return failed("Temizlik durduruldu: " + std::to_string(all) + " öğeden " + std::to_string(done) +
                  " tanesi kaldırıldı, kalanlara dokunulmadı.");
}

std::expected<std::int64_t, CleanFailure> removeFiles(const Finding& finding, CleanMode mode, CleanRun& run,
                                                      const GuardRails& rails,
                                                      const Cleaner::Services& services) {
    auto places = placesOf(finding.urls, rails);
    if (!places)
        return std::unexpected(std::move(places.error()));
    std::optional<Surroundings> own;
    const auto isKnown = [&](const CleanPlace& place) { return run.ahead->anchors.contains(place.anchor); };
    // A folder that may be cleaned can have appeared since the look ahead.
    if (run.ahead == nullptr || !std::ranges::all_of(*places, isKnown))
        own.emplace(rails, *places);
    const Surroundings& surroundings = own ? *own : run.ahead->surroundings;
    const auto items = judged(finding.urls, std::move(*places), surroundings);
    if (!items)
        return std::unexpected(items.error());
    std::unique_ptr<platform::TrashNotes> ownNotes;
    for (std::size_t index = 0; index < items->size(); ++index) {
        if (run.stop.stop_requested())
            return std::unexpected(stopped(run.done, items->size()));
        if (mode == CleanMode::trash && index % platform::TrashNotes::maxNotes == 0)
            ownNotes = notesFor(std::span(*items).subspan(index));
        platform::TrashNotes* ahead = run.ahead != nullptr ? run.ahead->notes.get() : nullptr;
        platform::TrashNotes* notes = ownNotes ? ownNotes.get() : ahead;
        if (auto done = removeItem((*items)[index], mode, surroundings, run, services, notes); !done)
            return std::unexpected(std::move(done.error()));
    }
    return bytesFreed(finding);
}

}  // namespace

Cleaner::Cleaner(UserFolders folders, Services services)
    : folders_(std::move(folders)), services_(std::move(services)) {}

GuardRails Cleaner::rails() const {
    return GuardRails(folders_, Paths::hasOwnCache(folders_));
}

const Cleaner::Services& Cleaner::Services::system() {
    static const Services services{
        .removeEntry = [](const Directory& parent,
                          const std::string& name) { return platform::removeEntry(parent, name); },
        .removeItem =
            [](const Directory& parent, const std::string& name, const platform::ItemIdentity& item,
               const std::set<platform::FileNumber>& kept) {
                return platform::removeEntry(parent, name, item, kept);
            },
        .moveToTrash = platform::moveToTrash,
        .run = [](const std::string& program,
                  std::span<const std::string> arguments) { return Shell::run(program, arguments); },
        .runUntil = [](const std::string& program, std::span<const std::string> arguments,
                       const std::stop_token& stop) { return Shell::run(program, arguments, stop); },
        .trashEmptyingCommand = platform::trashEmptyingCommand,
    };
    return services;
}

bool Cleaner::isAllowed(std::string_view path) const {
    return rails().isAllowed(path);
}

std::vector<std::string> Cleaner::runningApps(std::span<const std::string> among) {
    if (among.empty())
        return {};
    return runningApps(among, platform::runningApplications());
}

std::vector<std::string> Cleaner::runningApps(std::span<const std::string> among,
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

std::vector<std::string> Cleaner::runningProcesses(std::span<const std::string> among) {
    if (among.empty())
        return {};
    return runningProcesses(among, platform::runningProcesses());
}

std::vector<std::string> Cleaner::runningProcesses(std::span<const std::string> among,
                                                   std::span<const std::string> running) {
    std::vector<std::string> found;
    std::ranges::copy_if(among, std::back_inserter(found), [&](const std::string& pattern) {
        return std::ranges::any_of(running, [&](const std::string& name) {
            return globMatches(pattern, name, {.ignoreCase = true});
        });
    });
    return found;
}

std::expected<std::int64_t, CleanFailure> Cleaner::clean(const Finding& finding, CleanMode mode,
                                                         CleanRun& run) const {
    if (const auto* none = std::get_if<CleanAction::None>(&finding.action.value))
        return std::unexpected(failed(none->reason));
    if (isTrash(finding))
        return std::unexpected(failed("Çöp kutusu taşınmaz ya da silinmez, boşaltılır."));
    const auto* simulator = std::get_if<CleanAction::DeleteSimulator>(&finding.action.value);
    if (simulator == nullptr)
        return removeFiles(finding, mode, run, rails(), services_);
    if (run.stop.stop_requested())
        return std::unexpected(stopped(0, 1));
    auto freed = deleteSimulator(simulator->udid, finding.size, services_);
    run.done += freed ? 1U : 0U;
    return freed;
}

std::expected<std::int64_t, CleanFailure> Cleaner::clean(const Finding& finding, CleanMode mode) const {
    CleanRun run;
    return clean(finding, mode, run);
}

std::shared_ptr<CleanAhead> Cleaner::prepare(std::span<const std::shared_ptr<const Finding>> findings,
                                             CleanMode mode) const {
    if (findings.size() < 2)
        return nullptr;
    const GuardRails rails = this->rails();
    std::vector<CleanPlace> all;
    std::vector<CleanPlace> single;  // a finding with several items writes its own notes when its turn comes
    for (const auto& finding : findings) {
        const auto places = placesOf(finding->urls, rails);
        if (!places || !std::holds_alternative<CleanAction::Trash>(finding->action.value))
            continue;
        all.insert(all.end(), places->begin(), places->end());
        if (places->size() == 1)
            single.push_back(places->front());
    }
    auto ahead = std::make_shared<CleanAhead>(CleanAhead{.surroundings = Surroundings(rails, all)});
    for (const CleanPlace& place : all)
        ahead->anchors.insert(place.anchor);
    if (mode == CleanMode::permanent)
        return ahead;
    ahead->notes = std::make_unique<platform::TrashNotes>();
    for (const CleanPlace& place : single)
        addNote(*ahead->notes, place);
    ahead->notes->flush();
    return ahead;
}

std::expected<std::set<platform::FileNumber>, CleanFailure> judgedTrash(const std::string& path,
                                                                        const GuardRails& rails) {
    const CleanPlace trash{.anchor = std::string(Paths::parent(path)),
                           .relative = std::string(Paths::lastComponent(path))};
    const Surroundings surroundings(rails, {&trash, 1});
    auto objection = surroundings.objection();
    if (!objection)
        objection = surroundings.objection(trash, path);
    const auto folder = openFolder(trash);
    const auto item = folder ? platform::entryIdentity(*folder, std::string(trash.name())) : std::nullopt;
    if (!objection && item)
        objection = surroundings.objection(trash, path, item->number);
    if (objection)
        return std::unexpected(std::move(*objection));
    return surroundings.untouchable();
}

}  // namespace ulvak
