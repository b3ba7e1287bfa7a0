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

/// Whether something is at a path now, a link itself; also when nobody can say.
bool isThere(const std::string& path) {
    std::error_code error;
    return fs::symlink_status(path, error).type() != fs::file_type::not_found;
}

/// Of one path of a finding.
enum class Fate : std::uint8_t { untouched, gone, unclear };

Fate fateOf(const std::string& url, const std::map<std::string, bool, std::less<>>& cleaned) {
    for (std::string_view around = url; !around.empty(); around = around.substr(0, around.rfind('/'))) {
        if (const auto place = cleaned.find(around); place != cleaned.end())
            return place->second && !isThere(url) ? Fate::gone : Fate::unclear;
    }
    // What begins with "url/" comes together in the order of the bytes.
    const auto inside = cleaned.lower_bound(url + "/");
    return inside != cleaned.end() && Paths::isWithin(inside->first, url) ? Fate::unclear : Fate::untouched;
}

}  // namespace

CleanedPaths::Rest CleanedPaths::rest(Findings findings) const {
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
        rest.isKnown = rest.isKnown && gone == 0;  // of some of a group only their sum is known
        rest.findings.push_back(std::move(finding));
    }
    return rest;
}

}  // namespace ulvak
