#include "survey/simulators.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <nlohmann/json.hpp>
#include <ranges>
#include <vector>

#include "core/shell.h"

namespace ulvak::Simulators {
namespace {

using Json = nlohmann::json;

/// Parses `count` digits at `position`; -1 if there is any other character.
int number(std::string_view text, std::size_t position, std::size_t count) {
    int value = 0;
    for (const char c : text.substr(position, count)) {
        if (c < '0' || c > '9')
            return -1;
        value = value * 10 + (c - '0');
    }
    return value;
}

/// "Z", "+hh:mm" or "-hh:mm".
std::optional<std::chrono::minutes> zoneOffset(std::string_view zone) {
    if (zone == "Z")
        return std::chrono::minutes(0);
    if (zone.size() != 6 || (zone[0] != '+' && zone[0] != '-') || zone[3] != ':')
        return std::nullopt;
    const int hours = number(zone, 1, 2);
    const int minutes = number(zone, 4, 2);
    if (hours < 0 || hours > 23 || minutes < 0 || minutes > 59)
        return std::nullopt;
    const std::chrono::minutes offset = std::chrono::hours(hours) + std::chrono::minutes(minutes);
    return zone[0] == '-' ? -offset : offset;
}

/// The value of a key if present and of the wanted type; null otherwise.
template <typename T>
const T* value(const Json& object, const char* key) {
    const auto found = object.find(key);
    return found == object.end() ? nullptr : found->get_ptr<const T*>();
}

std::optional<SimulatorInfo> device(const Json& object, std::string_view runtime) {
    const auto* udid = value<Json::string_t>(object, "udid");
    if (udid == nullptr)
        return std::nullopt;
    SimulatorInfo info{.udid = *udid, .name = *udid, .runtime = std::string(runtime)};
    if (const auto* name = value<Json::string_t>(object, "name"))
        info.name = *name;
    if (const auto* isAvailable = value<Json::boolean_t>(object, "isAvailable"))
        info.isAvailable = *isAvailable;
    if (const auto* lastBooted = value<Json::string_t>(object, "lastBootedAt"))
        info.lastBooted = parseIso8601(*lastBooted);
    return info;
}

/// Whether the nesting, ignoring brackets inside strings, exceeds what a device list needs. The parser would
/// allocate memory for each level.
bool isNestedTooDeep(std::string_view json) {
    int depth = 0;
    bool inString = false;
    for (std::size_t i = 0; i < json.size(); ++i) {
        const char c = json[i];
        if (inString) {
            if (c == '\\')
                ++i;
            else if (c == '"')
                inString = false;
        } else if (c == '"') {
            inString = true;
        } else if (c == '[' || c == '{') {
            if (++depth > maxNesting)
                return true;
        } else if (c == ']' || c == '}') {
            --depth;
        }
    }
    return false;
}

bool isArrayOfObjects(const Json& value) {
    return value.is_array() && std::ranges::all_of(value, &Json::is_object);
}

}  // namespace

SimulatorMap load(std::stop_token stop) {
    static const std::array<std::string, 4> arguments = {"simctl", "list", "devices", "-j"};
    // Tried on every system: without the tools, the program simply fails to start. The exit status is
    // ignored: the output either is a list or is not.
    const auto result = Shell::run("/usr/bin/xcrun", arguments, std::move(stop));
    return result ? parse(result->output) : SimulatorMap();
}

SimulatorMap parse(std::string_view json) {
    if (json.size() > maxListBytes || isNestedTooDeep(json))
        return {};
    const Json document = Json::parse(json, nullptr, /*allow_exceptions=*/false);
    if (!document.is_object())
        return {};
    const auto devices = document.find("devices");
    if (devices == document.end() || !devices->is_object() ||
        !std::ranges::all_of(*devices, isArrayOfObjects))
        return {};
    SimulatorMap simulators;
    for (const auto& [identifier, list] : devices->items()) {
        const std::string runtime = readableRuntime(identifier);
        for (const Json& object : list) {
            if (auto info = device(object, runtime))
                simulators.insert_or_assign(info->udid, std::move(*info));
        }
    }
    return simulators;
}

std::string readableRuntime(std::string_view identifier) {
    const std::string_view last = identifier.substr(identifier.rfind('.') + 1);
    std::vector<std::string_view> pieces;
    for (const auto piece : last | std::views::split('-')) {
        if (!std::ranges::empty(piece))
            pieces.emplace_back(piece.begin(), piece.end());
    }
    if (pieces.empty())
        return std::string(last);
    std::string runtime = std::string(pieces.front()) + ' ';
    for (std::size_t i = 1; i < pieces.size(); ++i) {
        if (i > 1)
            runtime += '.';
        runtime += pieces[i];
    }
    return runtime;
}

std::optional<FileTime> parseIso8601(std::string_view text) {
    // "yyyy-mm-ddThh:mm:ss" and the zone.
    constexpr std::size_t zoneAt = 19;
    if (text.size() <= zoneAt || text[4] != '-' || text[7] != '-' || text[10] != 'T' || text[13] != ':' ||
        text[16] != ':')
        return std::nullopt;
    const int year = number(text, 0, 4);
    const int month = number(text, 5, 2);
    const int day = number(text, 8, 2);
    const int hour = number(text, 11, 2);
    const int minute = number(text, 14, 2);
    const int second = number(text, 17, 2);
    const auto offset = zoneOffset(text.substr(zoneAt));
    if (year < 0 || month < 0 || day < 0 || hour < 0 || hour > 23 || minute < 0 || minute > 59 ||
        second < 0 || second > 59 || !offset)
        return std::nullopt;
    const std::chrono::year_month_day date(std::chrono::year(year),
                                           std::chrono::month(static_cast<unsigned>(month)),
                                           std::chrono::day(static_cast<unsigned>(day)));
    if (!date.ok())
        return std::nullopt;
    return std::chrono::sys_days(date) + std::chrono::hours(hour) + std::chrono::minutes(minute) +
           std::chrono::seconds(second) - *offset;
}

}  // namespace ulvak::Simulators
