#include "clean/surroundings.h"

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <utility>

#include "core/paths.h"

namespace ulvak {
namespace {

using platform::Reach;

CleanFailure fileError(int number, std::string path) {
    return platform::FileError{
        .code = {number, std::generic_category()}, .path = std::move(path), .detail = {}};
}

CleanFailure protects(std::string_view url, const UserFolders& folders) {
    return CleanError{CleanError::Protected{Paths::display(url, folders)}};
}

std::vector<std::string> anchorsOf(std::span<const CleanPlace> places) {
    std::set<std::string> anchors;
    for (const CleanPlace& place : places)
        anchors.insert(place.anchor);
    return {anchors.begin(), anchors.end()};
}

/// The file number at an absolute path, following links within reach.
std::optional<platform::FileNumber> numberAt(std::string_view path, const Reach& reach) {
    const Reach::Target place = reach.follow(path);
    const auto info = place.isThere ? platform::fileInfo(place.path) : std::nullopt;
    return info ? std::optional(info->volumeAndNumber) : std::nullopt;
}

}  // namespace

void KeptFolders::add(const std::string& path, const Reach& reach) {
    paths_.push_back(path);
    const Reach::Target place = reach.follow(path);
    if (place.path != path)
        paths_.push_back(place.path);
    if (const auto number = numberAt(path, reach))
        numbers_.insert(*number);
}

bool KeptFolders::areWithin(std::string_view path) const {
    return std::ranges::any_of(paths_, [&](const std::string& kept) { return Paths::isWithin(kept, path); });
}

bool KeptFolders::hold(std::string_view path) const {
    return std::ranges::any_of(paths_, [&](const std::string& kept) { return Paths::isWithin(path, kept); });
}

Surroundings::Surroundings(const GuardRails& rails, std::span<const CleanPlace> places)
    : folders_(rails.folders()), reach_(anchorsOf(places), Reach::Others::none) {
    platform::GuardedFolders guarded = platform::guardedFolders(folders_.home);
    unreadSetting_ = std::move(guarded.unread);
    for (const std::string& path : rails.protectedPaths())
        kept_.add(path, reach_);
    for (const std::string& path : guarded.themselves)
        kept_.add(path, reach_);
    for (const std::string& prefix : rails.forbiddenPrefixes())
        closed_.add(prefix.substr(0, prefix.size() - 1), reach_);
    for (const std::string& path : guarded.withContents)
        closed_.add(path, reach_);
    for (const KeptFolders* folders : {&kept_, &closed_}) {
        for (const std::string& path : folders->paths())
            addNumbers(path);
    }
}

/// A folder that must stay also keeps its ancestors.
void Surroundings::addNumbers(const std::string& path) {
    for (std::string_view around = path; around.starts_with('/');
         around = around.substr(0, around.rfind('/'))) {
        if (!numbered_.emplace(around).second)
            return;  // so are all its ancestors
        if (const auto number = numberAt(around, reach_))
            untouchable_.insert(*number);
    }
}

std::optional<CleanFailure> Surroundings::objection() const {
    if (reach_.mounts().empty())
        return fileError(
            EIO, "/");  // "/" is always listed; otherwise nothing is known of volumes mounted inside an item
    if (!unreadSetting_.empty())
        return CleanError{CleanError::Failed{"Hiçbir şeye dokunulmadı: korunacak klasörleri sayan “" +
                                             Paths::display(unreadSetting_, folders_) +
                                             "” dosyası, yanıt vermeyebilecek bir diskte."}};
    return std::nullopt;
}

std::optional<CleanFailure> Surroundings::objection(const CleanPlace& place, std::string_view url) const {
    const std::string path = place.path();
    const std::string real = realPath(place);
    if (isRefused(path) || isRefused(real))
        return protects(url, folders_);
    const auto inside = std::ranges::find_if(
        reach_.mounts(), [&](const platform::Mount& mount) { return Paths::isWithin(mount.path, real); });
    if (inside != reach_.mounts().end())
        return fileError(EBUSY, inside->path);
    const std::string_view anchor = std::string_view(real).substr(0, real.size() - place.relative.size() - 1);
    if (reach_.mountPointOf(real) != reach_.mountPointOf(anchor.empty() ? "/" : anchor))
        return fileError(EXDEV, path);
    return std::nullopt;
}

std::optional<CleanFailure> Surroundings::objection(const CleanPlace& place, std::string_view url,
                                                    const platform::FileNumber& item) const {
    if (untouchable_.contains(item))
        return protects(url, folders_);
    const std::string path = place.path();
    for (std::size_t end = path.rfind('/'); end > 0; end = path.rfind('/', end - 1)) {
        const auto number = numberAt(std::string_view(path).substr(0, end), reach_);
        if (number && closed_.numbers().contains(*number))
            return protects(url, folders_);
    }
    return std::nullopt;
}

bool Surroundings::isRefused(std::string_view path) const {
    return kept_.areWithin(path) || closed_.areWithin(path) || closed_.hold(path);
}

/// No link is followed below the anchor, so this is the item's real location.
std::string Surroundings::realPath(const CleanPlace& place) const {
    return Paths::join(reach_.follow(place.anchor).path, place.relative);
}

}  // namespace ulvak
