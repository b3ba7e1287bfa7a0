#include "classify/rule_matcher.h"

#include <algorithm>
#include <iterator>
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

}  // namespace

RuleMatcher::RuleMatcher(std::span<const Rule> rules, UserFolders folders)
    : rules_(rules), folders_(std::move(folders)), hasOwnCache_(Paths::hasOwnCache(folders_)) {
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
    places_ = {{.area = Area::home, .folder = folders_.home}, {.area = Area::temp, .folder = folders_.temp}};
    if (hasOwnCache_)
        places_.push_back({.area = Area::cache, .folder = folders_.cache});
    const auto add = [&](Area area, const std::string& moved, std::string_view usual) {
        if (!moved.empty())
            places_.push_back({.area = area, .folder = moved});
        places_.push_back({.area = area, .folder = Paths::join(folders_.home, usual)});
    };
    add(Area::userConfig, folders_.userConfig, ".config");
    add(Area::userData, folders_.userData, ".local/share");
    add(Area::userState, folders_.userState, ".local/state");
    add(Area::userCache, folders_.userCache, ".cache");
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
    const std::string_view last = Paths::lastComponent(name.pattern);
    if (componentSpecificity(last) != literalSpecificity || last.contains('\\')) {
        names.wild.push_back(index);
        return;
    }
    names.literal[lowerCasedAscii(last)].push_back(index);
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
const RuleMatcher::Place* RuleMatcher::innermost(std::string_view path) const {
    const Place* best = nullptr;
    for (const Place& place : places_) {
        const bool isDeeper = best == nullptr || place.folder.size() > best->folder.size();
        if (isDeeper && isWithinFolded(path, place.folder))
            best = &place;
    }
    return best;
}

RuleMatcher::Question::Question(std::string_view itemPath, bool isFolder, ScanContext area)
    : path(Paths::withoutPrivate(itemPath)),
      foldedPath(lowerCasedAscii(path)),
      parts(components(path)),
      folded(components(foldedPath)),
      isDirectory(isFolder),
      context(area) {}

const Rule* RuleMatcher::match(std::string_view path, bool isDirectory, ScanContext context) const {
    Question question(path, isDirectory, context);
    Found found = inOrder(question);
    if (hasRanked_) {
        Found ranked = mostSpecific(question, found);
        if (rankedWins(ranked, found))
            found = std::move(ranked);
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
        const std::size_t skipped = std::min(componentCount(folder(area)), parts.size());
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
        found.specificity = specificities_[found.rule];
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

/// The first rule before `end` whose name and evidence match.
std::uint32_t RuleMatcher::named(const Question& question, const NameIndex& index, std::uint32_t end) const {
    static const std::vector<std::uint32_t> nothing;
    const auto found =
        index.literal.find(question.folded.empty() ? std::string_view() : question.folded.back());
    std::span<const std::uint32_t> literal(found != index.literal.end() ? found->second : nothing);
    std::span<const std::uint32_t> wild(index.wild);
    FolderEvidence inside{std::string(question.path)};
    while (!literal.empty() || !wild.empty()) {
        const bool isLiteral = wild.empty() || (!literal.empty() && literal.front() < wild.front());
        auto& next = isLiteral ? literal : wild;
        const std::uint32_t rule = next.front();
        next = next.subspan(1);
        if (rule >= end)
            break;
        if (matchesName(rule, question, inside))
            return rule;
    }
    return PatternTree::none;
}

namespace {

bool hasSibling(const Rule& rule, const Rule::Name& name, std::string_view path) {
    const std::string parent(Paths::parent(path));
    if (rule.isRanked)
        return FolderEvidence(parent).holdsOneOf(name.siblings);
    return std::ranges::any_of(name.siblings, [&](const std::string& sibling) {
        if (!sibling.contains('*'))
            return platform::existsIn(parent, sibling);
        const auto names = platform::listNames(parent);
        return std::ranges::any_of(names,
                                   [&](const std::string& entry) { return globMatches(sibling, entry); });
    });
}

}  // namespace

bool RuleMatcher::matchesName(std::uint32_t index, const Question& question, FolderEvidence& inside) const {
    const Rule& rule = rules_[index];
    if (question.context == ScanContext::personal && !rule.inPersonal)
        return false;
    const auto& name = std::get<Rule::Name>(rule.match);
    if (name.pattern != "*" && !globMatches(name.pattern, tail(question.path, name.pattern), pathOptions))
        return false;
    if (const auto outside = outside_.find(index); outside != outside_.end()) {
        if (std::ranges::any_of(outside->second,
                                [&](const std::string& prefix) { return question.path.starts_with(prefix); }))
            return false;
    }
    return (name.siblings.empty() || hasSibling(rule, name, question.path)) &&
           (name.holds.empty() || inside.holdsOneOf(name.holds));
}

// The ranked rules -----------------------------------------------------------------------------------------

std::optional<std::size_t> RuleMatcher::homeComponents(std::string_view path) const {
    if (!isWithinFolded(path, folders_.home))
        return std::nullopt;
    return componentCount(folders_.home);
}

/// The folder of a sandboxed application, read as a home folder: "~/.var/app/<id>" and
/// "~/snap/<name>/<version>".
std::optional<RuleMatcher::Reading> RuleMatcher::sandboxReading(const Question& question, std::size_t home) {
    constexpr std::size_t depth = 3;
    if (question.folded.size() < home + depth)
        return std::nullopt;
    Reading reading{.area = Area::home, .skipped = home + depth, .before = {}, .frame = Area::home};
    if (question.folded[home] == ".var" && question.folded[home + 1] == "app")
        reading.before = {literalSpecificity, literalSpecificity, 0};
    else if (question.folded[home] == "snap")
        reading.before = {literalSpecificity, 0, 0};
    else
        return std::nullopt;
    return reading;
}

/// The folders where the application of the last reading keeps its files.
void RuleMatcher::addAreasWithin(const Question& question, std::vector<Reading>& readings) {
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
    const Reading sandbox = readings.back();
    const PatternTree::Components rest = PatternTree::Components(question.folded).subspan(sandbox.skipped);
    for (const Within& within : areas) {
        const std::size_t count = within.names[1].empty() ? 1 : 2;
        if (rest.size() < count ||
            !std::ranges::equal(rest.first(count), std::span(within.names).first(count)))
            continue;
        Reading reading = sandbox;
        reading.area = within.area;
        reading.skipped += count;
        reading.before.insert(reading.before.end(), count, literalSpecificity);
        readings.push_back(std::move(reading));
        return;
    }
}

std::vector<RuleMatcher::Reading> RuleMatcher::readings(const Question& question) const {
    std::vector<Reading> result;
    const Place* place = innermost(question.path);
    if (place != nullptr) {
        const auto home = homeComponents(place->folder);
        Reading reading{.area = place->area,
                        .skipped = componentCount(place->folder),
                        .before = {},
                        .frame = place->area};
        const bool isOwn = place->area == Area::temp || place->area == Area::cache;
        if (home && !isOwn) {
            reading.before.assign(reading.skipped - *home, literalSpecificity);
            reading.frame = Area::home;
        }
        result.push_back(reading);
        if (place->area == Area::home) {
            if (auto sandbox = sandboxReading(question, reading.skipped)) {
                result.push_back(std::move(*sandbox));
                addAreasWithin(question, result);
            }
        }
    }
    result.push_back({});
    return result;
}

RuleMatcher::Found RuleMatcher::mostSpecificPath(const Question& question) const {
    Found best;
    for (Reading& reading : readings(question)) {
        const bool isRoot = question.path == "/";
        const std::size_t skipped = std::min(reading.skipped, question.parts.size());
        const PatternTree::Components parts(question.parts);
        const PatternTree::Components folded(question.folded);
        const auto& tree = ranked_[static_cast<std::size_t>(reading.area)];
        const std::uint32_t rule = isRoot && reading.area != Area::none
                                       ? tree.first({}, {})
                                       : tree.first(parts.subspan(skipped), folded.subspan(skipped));
        if (rule == PatternTree::none)
            continue;
        Found found{.rule = rule, .specificity = std::move(reading.before), .frame = reading.frame};
        found.specificity.insert(found.specificity.end(), specificities_[rule].begin(),
                                 specificities_[rule].end());
        if (best.isNothing() || (found.frame == best.frame && found.specificity > best.specificity))
            best = std::move(found);
    }
    return best;
}

/// Names are asked in the context that a container of the other rules leads to: what is one's own at the top
/// of the home folder is no application's.
RuleMatcher::Found RuleMatcher::mostSpecific(Question& question, const Found& other) const {
    Found found = mostSpecificPath(question);
    if (!found.isNothing() || !question.isDirectory)
        return found;
    const auto home = homeComponents(question.path);
    const bool isOtherSystems = home && question.folded.size() > *home && question.folded[*home] == "library";
    if (isOtherSystems)
        return found;
    if (!other.isNothing()) {
        const auto* container = std::get_if<Rule::Container>(&rules_[other.rule].kind);
        if (container != nullptr && container->context != ScanContext::normal)
            question.context = container->context;
    }
    found.rule = named(question, rankedNames_, PatternTree::none);
    if (!found.isNothing())
        found.specificity = specificities_[found.rule];
    return found;
}

bool RuleMatcher::rankedWins(const Found& ranked, const Found& other) const {
    if (ranked.isNothing() || other.isNothing())
        return other.isNothing();
    return std::holds_alternative<Rule::Path>(rules_[other.rule].match) ? rankedWinsOverPath(ranked, other)
                                                                        : rankedWinsOverName(ranked, other);
}

bool RuleMatcher::rankedWinsOverPath(const Found& ranked, const Found& other) const {
    const bool isWide = !other.specificity.empty() && other.specificity.back() <= wideSpecificity;
    const bool isPath = std::holds_alternative<Rule::Path>(rules_[ranked.rule].match);
    if (!isPath || ranked.frame != other.frame)
        return isWide;
    return ranked.specificity > other.specificity;
}

bool RuleMatcher::rankedWinsOverName(const Found& ranked, const Found& other) const {
    const Rule& rule = rules_[ranked.rule];
    if (std::holds_alternative<Rule::Path>(rule.match)) {
        const bool isWide = ranked.specificity.empty() || ranked.specificity.back() <= wideSpecificity;
        return !isWide || !isContainer(rule);
    }
    if (ranked.specificity.size() > other.specificity.size())
        return true;
    const auto& name = std::get<Rule::Name>(rule.match);
    const bool isSameName =
        ranked.specificity.back() == literalSpecificity && other.specificity.back() == literalSpecificity;
    return isSameName && std::get<Rule::Name>(rules_[other.rule].match).siblings.empty() &&
           (!name.siblings.empty() || !name.holds.empty());
}

// What lies inside -----------------------------------------------------------------------------------------

bool RuleMatcher::holdsKept(std::string_view path) const {
    if (!hasRanked_)
        return false;
    const Question question(path, true, ScanContext::normal);
    FolderEvidence inside{std::string(path)};
    return std::ranges::any_of(readings(question), [&](const Reading& reading) {
        if (question.parts.size() < reading.skipped)
            return false;
        const auto nodes = ranked_[static_cast<std::size_t>(reading.area)].keptBelow(
            PatternTree::Components(question.parts).subspan(reading.skipped),
            PatternTree::Components(question.folded).subspan(reading.skipped));
        return std::ranges::any_of(nodes,
                                   [&](const PatternTree::Node* node) { return inside.holdsKept(*node); });
    });
}

std::string_view RuleMatcher::sandboxOf(std::string_view path) const {
    const auto home = homeComponents(path);
    if (!hasRanked_ || !home)
        return {};
    const Question question(path, true, ScanContext::normal);
    if (const auto reading = sandboxReading(question, *home))
        return question.parts[*home + (reading->before[1] == literalSpecificity ? 2 : 1)];
    if (question.folded.size() == *home + 2 && question.folded[*home] == "snap")
        return question.parts.back();
    return {};
}

}  // namespace ulvak
