#include "app/cleaned_paths.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "core/paths.h"

namespace ulvak {
namespace {

namespace fs = std::filesystem;

/// Whether something exists at a path; does not follow links. Also true when that cannot be determined.
bool isThere(const std::string& path) {
    std::error_code error;
    return fs::symlink_status(path, error).type() != fs::file_type::not_found;
}

using Cleaned = std::map<std::string, bool, std::less<>>;

/// The cleaned path that is `url`, an absolute path, or an ancestor of it.
Cleaned::const_iterator around(const std::string& url, const Cleaned& cleaned) {
    for (std::string_view place = url; place.starts_with('/'); place = place.substr(0, place.rfind('/'))) {
        if (const auto known = cleaned.find(place); known != cleaned.end())
            return known;
    }
    return cleaned.end();
}

/// Whether anything below the folder `url` was cleaned.
bool isAnyIn(const std::string& url, const Cleaned& cleaned) {
    // Paths that begin with "url/" are adjacent in byte order.
    const auto inside = cleaned.lower_bound(url + "/");
    return inside != cleaned.end() && Paths::isWithin(inside->first, url);
}

/// Of one of a finding's paths.
enum class Fate : std::uint8_t { untouched, gone, unclear };

Fate fateOf(const std::string& url, const Cleaned& cleaned) {
    if (const auto place = around(url, cleaned); place != cleaned.end())
        return place->second && !isThere(url) ? Fate::gone : Fate::unclear;
    return isAnyIn(url, cleaned) ? Fate::unclear : Fate::untouched;
}

}  // namespace

bool CleanedPaths::touches(const Finding& finding) const {
    return std::ranges::any_of(finding.urls, [&](const std::string& url) {
        return around(url, paths_) != paths_.end() || isAnyIn(url, paths_);
    });
}

CleanedPaths::Rest CleanedPaths::rest(MutableFindings findings) const {
    Rest rest;
    for (std::shared_ptr<Finding>& finding : findings) {
        std::size_t gone = 0;
        for (const std::string& url : finding->urls) {
            const Fate fate = fateOf(url, paths_);
            gone += fate == Fate::gone ? 1U : 0U;
            rest.isKnown = rest.isKnown && fate != Fate::unclear;
        }
        if (gone > 0 && gone == finding->urls.size())
            continue;
        rest.isKnown = rest.isKnown && gone == 0;  // for a group, only the sum is known
        rest.findings.push_back(std::move(finding));
    }
    return rest;
}

}  // namespace ulvak
