#include "classify/rule_matcher.h"

#include <algorithm>
#include <utility>
#include <variant>

#include "core/glob.h"
#include "platform/ascii.h"
#include "platform/files.h"

namespace ulvak {
namespace {

constexpr GlobOptions pathOptions{.pathname = true, .ignoreCase = true};

/// Patterns are case-insensitive, and so are the folders they begin with.
bool isWithinFolded(std::string_view path, std::string_view folder) {
    constexpr auto folded = [](char c) { return platform::lowerAscii(c); };
    if (path.size() < folder.size() ||
        !std::ranges::equal(path.substr(0, folder.size()), folder, {}, folded, folded))
        return false;
    return path.size() == folder.size() || folder.ends_with('/') || path[folder.size()] == '/';
}

std::string lowerCasedAscii(std::string_view text) {
    std::string result(text);
    std::ranges::transform(result, result.begin(), [](char c) { return platform::lowerAscii(c); });
    return result;
}

std::size_t componentCount(std::string_view folder) {
    return folder == "/" ? 0 : components(folder).size();
}

/// The last components of a path, as many as the pattern has.
std::string_view tail(std::string_view path, std::string_view pattern) {
    std::size_t begin = path.size();
    for (auto left = std::ranges::count(pattern, '/') + 1; left > 0; --left) {
        const std::size_t slash = begin == 0 ? std::string_view::npos : path.rfind('/', begin - 1);
        if (slash == std::string_view::npos)
            return {};
        begin = slash;
    }
    return path.substr(begin + 1);
}

bool isKept(const Rule& rule, const Specificity& specificity) {
    return rule.isRanked && rule.level == SafetyLevel::keep && !specificity.empty() &&
           specificity.back() > wideSpecificity;
}

bool isContainer(const Rule& rule) {
    return std::holds_alternative<Rule::Container>(rule.kind);
}

/// Whether a rule knows by what is in a folder that it is not easily deleted. That somebody calls it a cache
/// is no warning.
bool isWarning(const Rule& rule) {
    const std::vector<std::string>& holds = std::get<Rule::Name>(rule.match).holds;
    return !isEasilyDeleted(rule.level) && !isContainer(rule) && !holds.empty() &&
           std::ranges::find(holds, FolderEvidence::cacheTag) == holds.end();
}

}  // namespace

RuleMatcher::RuleMatcher(std::span<const Rule> rules, UserFolders folders)
    : rules_(rules), folders_(std::move(folders)), hasOwnCache_(Paths::hasOwnCache(folders_)) {
    homeDepth_ = componentCount(folders_.home);
    addPlaces();
    specificities_.reserve(rules.size());
    for (std::uint32_t index = 0; index < rules.size(); ++index) {
        const Rule& rule = rules[index];
        hasRanked_ = hasRanked_ || rule.isRanked;
        if (const auto* path = std::get_if<Rule::Path>(&rule.match)) {
            specificities_.push_back(specificity(path->pattern));
            preparePath(index, path->pattern);
        } else {
            const auto& name = std::get<Rule::Name>(rule.match);
            specificities_.push_back(specificity(name.pattern));
            prepareName(index, name);
        }
    }
}

/// Where applications keep their files. Many do not care where the user has moved these folders, so the usual
/// places count too. What an application keeps is asked for before what it can make again.
void RuleMatcher::addPlaces() {
    const auto add = [&](Area area, const std::string& folder) {
        const std::size_t depth = componentCount(folder);
        Place place{.area = area, .folded = lowerCasedAscii(folder), .reading = {}, .before = {}};
        place.reading = {.area = area, .skipped = depth, .before = {}, .frame = area};
        const bool isTemporary = area == Area::temp || area == Area::cache;
        if (!isTemporary && isWithinFolded(folder, folders_.home)) {
            place.before.assign(depth - homeDepth_, literalSpecificity);
            place.reading.frame = Area::home;
        }
        places_.push_back(std::move(place));
    };
    add(Area::home, folders_.home);
    add(Area::temp, folders_.temp);
    if (hasOwnCache_)
        add(Area::cache, folders_.cache);
    const auto addBoth = [&](Area area, const std::string& moved, std::string_view usual) {
        if (!moved.empty())
            add(area, moved);
        add(area, Paths::join(folders_.home, usual));
    };
    addBoth(Area::userConfig, folders_.userConfig, ".config");
    addBoth(Area::userData, folders_.userData, ".local/share");
    addBoth(Area::userState, folders_.userState, ".local/state");
    addBoth(Area::userCache, folders_.userCache, ".cache");
    for (Place& place : places_)
        place.reading.before = place.before;
}

void RuleMatcher::preparePath(std::uint32_t index, std::string_view pattern) {
    constexpr std::array<std::pair<std::string_view, Area>, 7> tokens = {{{"~", Area::home},
                                                                          {"$T", Area::temp},
                                                                          {"$C", Area::cache},
                                                                          {"$cache", Area::userCache},
                                                                          {"$config", Area::userConfig},
                                                                          {"$data", Area::userData},
                                                                          {"$state", Area::userState}}};
    Area area = Area::none;
    for (const auto& [token, named] : tokens) {
        // The folder itself is compared literally: a home folder named "[x]" is not a pattern.
        if (pattern == token ||
            (pattern.starts_with(token) && pattern.substr(token.size()).starts_with('/'))) {
            area = named;
            pattern.remove_prefix(token.size());
            break;
        }
    }
    const Rule& rule = rules_[index];
    if (PatternTree::accepts(pattern) && (area != Area::none || !pattern.empty())) {
        auto& tree = (rule.isRanked ? ranked_ : ordered_)[static_cast<std::size_t>(area)];
        tree.add(components(pattern), index, isKept(rule, specificities_[index]));
    } else if (!rule.isRanked) {
        linear_.push_back({.area = area, .glob = std::string(pattern), .rule = index});
    }
}

void RuleMatcher::prepareName(std::uint32_t index, const Rule::Name& name) {
    for (const std::string& entry : name.outside)
        outside_[index].push_back(Paths::expand(entry, folders_));
    NameIndex& names = rules_[index].isRanked ? rankedNames_ : orderedNames_;
    names.add(lowerCasedAscii(Paths::lastComponent(name.pattern)), index);
}

void RuleMatcher::NameIndex::add(std::string_view folded, std::uint32_t rule) {
    constexpr std::string_view special = "*?[\\]";
    const auto isPlain = [&](char c) { return special.find(c) == std::string_view::npos; };
    if (!folded.empty() && std::ranges::all_of(folded, isPlain))
        literal[std::string(folded)].push_back(rule);
    else if (!folded.empty() && isPlain(folded.front()))
        beginning[static_cast<unsigned char>(folded.front())].push_back(rule);
    else if (!folded.empty() && isPlain(folded.back()))
        ending[static_cast<unsigned char>(folded.back())].push_back(rule);
    else
        others.push_back(rule);
}

RuleMatcher::Candidates::Candidates(const NameIndex& index, std::string_view folded) {
    left_.front() = index.others;
    if (folded.empty())
        return;
    left_[1] = index.beginning[static_cast<unsigned char>(folded.front())];
    left_[2] = index.ending[static_cast<unsigned char>(folded.back())];
    if (const auto found = index.literal.find(folded); found != index.literal.end())
        left_[3] = found->second;
}

std::uint32_t RuleMatcher::Candidates::next() {
    constexpr auto first = [](std::span<const std::uint32_t> rules) {
        return rules.empty() ? PatternTree::none : rules.front();
    };
    auto& least = *std::ranges::min_element(left_, {}, first);
    const std::uint32_t rule = first(least);
    if (!least.empty())
        least = least.subspan(1);
    return rule;
}

bool RuleMatcher::Found::isMoreSpecificThan(const Found& other) const {
    for (std::size_t i = 0; i < std::min(depth(), other.depth()); ++i) {
        if (at(i) != other.at(i))
            return at(i) > other.at(i);
    }
    return depth() > other.depth();
}

std::string_view RuleMatcher::folder(Area area) const {
    switch (area) {
        case Area::home:
            return folders_.home;
        case Area::temp:
            return folders_.temp;
        case Area::cache:
            return folders_.cache;
        default:
            return {};
    }
}

/// The innermost user folder that contains `path`; only its rules apply. Otherwise a home folder below the
/// temporary one would be a temporary file, and safe to delete. If two are the same folder, the home folder
/// wins.
RuleMatcher::Area RuleMatcher::areaOf(std::string_view path) const {
    Area innermost = Area::none;
    for (const Area area : {Area::home, Area::temp, Area::cache}) {
        if (area == Area::cache && !hasOwnCache_)
            continue;
        const bool isDeeper = innermost == Area::none || folder(area).size() > folder(innermost).size();
        if (isDeeper && isWithinFolded(path, folder(area)))
            innermost = area;
    }
    return innermost;
}

/// The same among all the folders that ranked rules begin with.
const RuleMatcher::Place* RuleMatcher::innermost(const Question& question) const {
    const Place* best = nullptr;
    for (const Place& place : places_) {
        const bool isDeeper = best == nullptr || place.folded.size() > best->folded.size();
        if (isDeeper && Paths::isWithin(question.foldedPath, place.folded))
            best = &place;
    }
    return best;
}

RuleMatcher::Question::Question(std::string_view itemPath, bool isFolder, ScanContext area)
    : path(Paths::withoutPrivate(itemPath)),
      foldedPath(lowerCasedAscii(path)),
      parts(components(path)),
      folded(parts),
      isDirectory(isFolder),
      context(area) {
    for (std::string_view& part : folded)
        part = std::string_view(foldedPath)
                   .substr(static_cast<std::size_t>(part.data() - path.data()), part.size());
}

const Rule* RuleMatcher::match(std::string_view path, bool isDirectory, ScanContext context) const {
    FolderEvidence inside{std::string(path)};
    FolderEvidence around{std::string(Paths::parent(Paths::withoutPrivate(path)))};
    return match(path, isDirectory, context, inside, around);
}

const Rule* RuleMatcher::match(std::string_view path, bool isDirectory, ScanContext context,
                               FolderEvidence& inside, FolderEvidence& around) const {
    Question question(path, isDirectory, context);
    question.inside = &inside;
    question.around = &around;
    Found found = inOrder(question);
    if (hasRanked_) {
        const Found ranked = mostSpecific(question, found);
        if (rankedWins(ranked, found))
            found = ranked;
    }
    return found.isNothing() ? nullptr : &rules_[found.rule];
}

// The rules that are asked in their order ------------------------------------------------------------------

RuleMatcher::Found RuleMatcher::inOrder(const Question& question) const {
    const Area area = areaOf(question.path);
    const PatternTree::Components parts(question.parts);
    const PatternTree::Components folded(question.folded);
    Found found{.rule = ordered_[0].first(parts, folded)};
    if (area != Area::none) {
        const std::size_t skipped =
            std::min((area == Area::home ? homeDepth_ : componentCount(folder(area))), parts.size());
        const bool isFolderItself = question.path.size() == folder(area).size();
        const auto& tree = ordered_[static_cast<std::size_t>(area)];
        const std::uint32_t rule =
            isFolderItself ? tree.first({}, {}) : tree.first(parts.subspan(skipped), folded.subspan(skipped));
        if (rule < found.rule)
            found = {.rule = rule, .frame = area};
    }
    found.rule = std::min(found.rule, linearly(question.path, area));
    if (question.isDirectory) {
        const std::uint32_t name = named(question, orderedNames_, found.rule);
        if (name < found.rule)
            found = {.rule = name};
    }
    if (!found.isNothing())
        found.own = specificities_[found.rule];
    return found;
}

std::uint32_t RuleMatcher::linearly(std::string_view path, Area area) const {
    for (const LinearPattern& pattern : linear_) {
        if (pattern.area != Area::none && pattern.area != area)
            continue;
        const std::string_view base = folder(pattern.area);
        // "/" is the only folder whose path already ends in the "/" that patterns continue with.
        const std::string_view rest = base == "/" && path != "/" ? path : path.substr(base.size());
        if (globMatches(pattern.glob, rest, pathOptions))
            return pattern.rule;
    }
    return PatternTree::none;
}

/// The first rule before `end` whose name and evidence match. A warning is a unit that is not easily deleted,
/// by what is in the folder.
std::uint32_t RuleMatcher::named(const Question& question, const NameIndex& index, std::uint32_t end,
                                 bool onlyWarnings) const {
    Candidates candidates(index, question.folded.empty() ? std::string_view() : question.folded.back());
    for (std::uint32_t rule = candidates.next(); rule < end; rule = candidates.next()) {
        if (onlyWarnings && !isWarning(rules_[rule]))
            continue;
        if (matchesName(rule, question))
            return rule;
    }
    return PatternTree::none;
}

namespace {

/// The names are looked up one by one: a folder of many projects is not listed for each of them.
bool isBeside(FolderEvidence& around, const std::vector<std::string>& siblings) {
    return std::ranges::any_of(siblings, [&](const std::string& sibling) {
        return sibling.contains('*') ? around.holdsOneOf({&sibling, 1}) : around.hasEntry(sibling);
    });
}

/// For the rules that are asked in their order, which count a link only if it leads somewhere.
bool isBesideNow(const FolderEvidence& around, const std::vector<std::string>& siblings) {
    return std::ranges::any_of(siblings, [&](const std::string& sibling) {
        const auto wasSeen = around.wasSeen(sibling);
        if (wasSeen && !*wasSeen)
            return false;
        if (!sibling.contains('*'))
            return platform::existsIn(around.path(), sibling);
        const auto names = platform::listNames(around.path());
        return std::ranges::any_of(names,
                                   [&](const std::string& entry) { return globMatches(sibling, entry); });
    });
}

}  // namespace

bool RuleMatcher::matchesName(std::uint32_t index, const Question& question) const {
    const Rule& rule = rules_[index];
    if (question.context == ScanContext::personal && !rule.inPersonal)
        return false;
    const auto& name = std::get<Rule::Name>(rule.match);
    if ((!name.holds.empty() && question.inside->isKnownToLackAll()) ||
        (!name.siblings.empty() && question.around->isKnownToLackAll()))
        return false;
    if (name.pattern != "*" && !globMatches(name.pattern, tail(question.path, name.pattern), pathOptions))
        return false;
    if (const auto outside = outside_.find(index); outside != outside_.end()) {
        if (std::ranges::any_of(outside->second,
                                [&](const std::string& prefix) { return question.path.starts_with(prefix); }))
            return false;
    }
    const bool hasSibling =
        name.siblings.empty() || (rule.isRanked ? isBeside(*question.around, name.siblings)
                                                : isBesideNow(*question.around, name.siblings));
    return hasSibling && (name.holds.empty() || question.inside->holdsOneOf(name.holds));
}

// The ranked rules -----------------------------------------------------------------------------------------

bool RuleMatcher::isInHome(const Question& question) const {
    return Paths::isWithin(question.foldedPath, places_.front().folded);
}

/// The folder of a sandboxed application, read as a home folder: "~/.var/app/<id>" and
/// "~/snap/<name>/<version>".
std::optional<RuleMatcher::Reading> RuleMatcher::sandboxReading(const Question& question) const {
    constexpr std::size_t depth = 3;
    // With the folders that applications keep their files in.
    static constexpr std::array<std::uint16_t, depth + 2> flatpak = {
        literalSpecificity, literalSpecificity, 0, literalSpecificity, literalSpecificity};
    static constexpr std::array<std::uint16_t, depth + 2> snap = {literalSpecificity, 0, 0,
                                                                  literalSpecificity, literalSpecificity};
    if (question.folded.size() < homeDepth_ + depth)
        return std::nullopt;
    Reading reading{.area = Area::home, .skipped = homeDepth_ + depth, .before = {}, .frame = Area::home};
    if (question.folded[homeDepth_] == ".var" && question.folded[homeDepth_ + 1] == "app")
        reading.before = std::span(flatpak).first(depth);
    else if (question.folded[homeDepth_] == "snap")
        reading.before = std::span(snap).first(depth);
    else
        return std::nullopt;
    return reading;
}

/// The folders where the application of the last reading keeps its files.
void RuleMatcher::addAreasWithin(const Question& question, Readings& readings) {
    struct Within {
        std::array<std::string_view, 2> names;
        Area area;
    };
    constexpr std::array<Within, 7> areas = {{{{"cache", ""}, Area::userCache},
                                              {{".cache", ""}, Area::userCache},
                                              {{"config", ""}, Area::userConfig},
                                              {{".config", ""}, Area::userConfig},
                                              {{"data", ""}, Area::userData},
                                              {{".local", "share"}, Area::userData},
                                              {{".local", "state"}, Area::userState}}};
    Reading reading = readings.used().back();
    const PatternTree::Components rest = PatternTree::Components(question.folded).subspan(reading.skipped);
    for (const Within& within : areas) {
        const std::size_t count = within.names[1].empty() ? 1 : 2;
        if (rest.size() < count ||
            !std::ranges::equal(rest.first(count), std::span(within.names).first(count)))
            continue;
        reading.area = within.area;
        reading.skipped += count;
        reading.before = {reading.before.data(), reading.before.size() + count};
        readings.add(reading);
        return;
    }
}

RuleMatcher::Readings RuleMatcher::readings(const Question& question) const {
    Readings result;
    if (const Place* place = innermost(question)) {
        result.add(place->reading);
        if (place->area == Area::home) {
            if (const auto sandbox = sandboxReading(question)) {
                result.add(*sandbox);
                addAreasWithin(question, result);
            }
        }
    }
    result.add({});
    return result;
}

RuleMatcher::Found RuleMatcher::mostSpecificPath(const Question& question) const {
    Found best;
    const Readings all = readings(question);
    for (const Reading& reading : all.used()) {
        // The root's path has a component too, but as somebody's folder it has none.
        const std::size_t skipped = question.path == "/" && reading.area != Area::none ? 1 : reading.skipped;
        const auto& tree = ranked_[static_cast<std::size_t>(reading.area)];
        const std::uint32_t rule = tree.first(PatternTree::Components(question.parts).subspan(skipped),
                                              PatternTree::Components(question.folded).subspan(skipped));
        if (rule == PatternTree::none)
            continue;
        const Found found{
            .rule = rule, .before = reading.before, .own = specificities_[rule], .frame = reading.frame};
        if (best.isNothing() || (found.frame == best.frame && found.isMoreSpecificThan(best)))
            best = found;
    }
    return best;
}

/// Names are asked in the context that a container of the other rules leads to: what is one's own at the top
/// of the home folder is no application's.
RuleMatcher::Found RuleMatcher::mostSpecific(Question& question, const Found& other) const {
    Found found = mostSpecificPath(question);
    if (!question.isDirectory || (!found.isNothing() && !mayBeOverruled(found)))
        return found;
    const bool isOtherSystems =
        isInHome(question) && question.folded.size() > homeDepth_ && question.folded[homeDepth_] == "library";
    if (isOtherSystems)
        return found;
    if (!other.isNothing()) {
        const auto* container = std::get_if<Rule::Container>(&rules_[other.rule].kind);
        if (container != nullptr && container->context != ScanContext::normal)
            question.context = container->context;
    }
    const std::uint32_t name = named(question, rankedNames_, PatternTree::none, !found.isNothing());
    if (name != PatternTree::none)
        found = {.rule = name, .own = specificities_[name]};
    return found;
}

/// What lies inside a folder may say more than that it is some cache.
bool RuleMatcher::mayBeOverruled(const Found& path) const {
    const Rule& rule = rules_[path.rule];
    return path.isWide() && !isContainer(rule) && isEasilyDeleted(rule.level);
}

bool RuleMatcher::rankedWins(const Found& ranked, const Found& other) const {
    if (ranked.isNothing() || other.isNothing())
        return other.isNothing();
    return std::holds_alternative<Rule::Path>(rules_[other.rule].match) ? rankedWinsOverPath(ranked, other)
                                                                        : rankedWinsOverName(ranked, other);
}

bool RuleMatcher::rankedWinsOverPath(const Found& ranked, const Found& other) const {
    const bool isPath = std::holds_alternative<Rule::Path>(rules_[ranked.rule].match);
    if (!isPath || ranked.frame != other.frame)
        return other.depth() > 0 && other.isWide();
    return !other.isMoreSpecificThan(ranked);
}

bool RuleMatcher::rankedWinsOverName(const Found& ranked, const Found& other) const {
    const Rule& rule = rules_[ranked.rule];
    if (std::holds_alternative<Rule::Path>(rule.match))
        return !ranked.isWide() || !isContainer(rule);
    if (ranked.depth() > other.depth())
        return true;
    const auto& name = std::get<Rule::Name>(rule.match);
    const bool isSameName = ranked.own.back() == literalSpecificity && other.own.back() == literalSpecificity;
    return isSameName && std::get<Rule::Name>(rules_[other.rule].match).siblings.empty() &&
           (!name.siblings.empty() || !name.holds.empty());
}

// What lies inside -----------------------------------------------------------------------------------------

bool RuleMatcher::holdsKept(FolderEvidence& inside, std::span<const std::string> known) const {
    if (!hasRanked_)
        return false;
    const Question question(inside.path(), true, ScanContext::normal);
    const Readings all = readings(question);
    return std::ranges::any_of(all.used(), [&](const Reading& reading) {
        if (question.parts.size() < reading.skipped)
            return false;
        const auto nodes = ranked_[static_cast<std::size_t>(reading.area)].keptBelow(
            PatternTree::Components(question.parts).subspan(reading.skipped),
            PatternTree::Components(question.folded).subspan(reading.skipped));
        return std::ranges::any_of(
            nodes, [&](const PatternTree::Node* node) { return inside.holdsKept(*node, known); });
    });
}

std::string_view RuleMatcher::sandboxOf(std::string_view path) const {
    if (!hasRanked_)
        return {};
    const Question question(path, true, ScanContext::normal);
    if (!isInHome(question))
        return {};
    if (const auto reading = sandboxReading(question))
        return question.parts[homeDepth_ + (reading->before[1] == literalSpecificity ? 2 : 1)];
    const bool isSnap = question.folded.size() == homeDepth_ + 2 && question.folded[homeDepth_] == "snap";
    return isSnap ? question.parts.back() : std::string_view();
}

}  // namespace ulvak
