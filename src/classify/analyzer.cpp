#include "classify/analyzer.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <optional>
#include <ranges>
#include <set>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "classify/folder_evidence.h"
#include "classify/heuristics.h"
#include "classify/large_file.h"
#include "classify/rule_matcher.h"
#include "classify/temporary_use.h"
#include "core/format.h"
#include "core/largest_first.h"
#include "core/text.h"
#include "core/words.h"
#include "platform/files.h"
#include "platform/volume.h"

namespace ulvak {
namespace {

constexpr int initialDepth = 2;
constexpr int personalDepth = 6;
constexpr int applicationDepth = 6;
/// Containers that are known by their names can lie in each other, deeper than the stack.
constexpr int maxEntered = 64;
constexpr int otherDepth = 2;
constexpr std::int64_t probeMinimum = 100'000'000;
constexpr std::int64_t drillMinimum = 2'000'000'000;
constexpr std::int64_t drillShareFloor = 4'000'000'000;
constexpr std::int64_t drillShare = 4;
constexpr std::size_t maxChildren = 12;
constexpr std::size_t maxSiblings = 10;

/// The walk's current node. Lives on the walk's stack, as do its parents.
struct Position {
    const DirNode* node = nullptr;
    std::string path;
    const Position* parent = nullptr;

    [[nodiscard]] std::string_view name() const { return Paths::lastComponent(path); }
    [[nodiscard]] bool canBeEntered() const { return node->isDirectory && !node->isPackage; }
    [[nodiscard]] Position child(const DirNode& below) const {
        return {.node = &below, .path = Paths::join(path, below.url), .parent = this};
    }
};

/// An application's folder that is looked into: what no rule names in it is reported as part of it.
struct Owner {
    std::string title;
    std::string explanation;
    SafetyLevel level = SafetyLevel::keep;
    const Rule* rule = nullptr;
    /// A unit that holds something to keep: nothing around that may be reported as a whole.
    bool isOpened = false;
};

/// What the walk passes down.
struct State {
    ScanContext context = ScanContext::normal;
    int depth = initialDepth;      ///< how many more levels of unknown folders may be drilled into
    bool drilled = false;          ///< reached by drilling into an unknown folder, not through a rule
    int entered = 0;               ///< how many containers are around
    const Owner* owner = nullptr;  ///< in an application's folder; lives on the walk's stack
};

ChildSummary summary(const DirNode& node) {
    return {.name = node.url, .size = node.size, .isDirectory = node.isDirectory};
}

std::vector<ChildSummary> summaries(const DirNode& node) {
    std::vector<ChildSummary> result;
    std::ranges::transform(node.children | std::views::take(maxChildren), std::back_inserter(result),
                           summary);
    return result;
}

std::vector<ChildSummary> siblings(const Position& place) {
    std::vector<ChildSummary> result;
    if (place.parent == nullptr)
        return result;
    const auto isOther = [&](const DirNode& node) { return &node != place.node; };
    std::ranges::transform(
        place.parent->node->children | std::views::filter(isOther) | std::views::take(maxSiblings),
        std::back_inserter(result), summary);
    return result;
}

/// "Uygulama-gkzqxwvutsrqponm" is the build data of Uygulama: the part after the last "-" is a hash.
std::string projectName(std::string_view folder) {
    std::vector<std::string_view> pieces;
    for (const auto piece : folder | std::views::split('-')) {
        if (!std::ranges::empty(piece))
            pieces.emplace_back(piece.begin(), piece.end());
    }
    std::string name;
    for (std::size_t i = 0; i + 1 < pieces.size(); ++i) {
        if (i > 0)
            name += '-';
        name += pieces[i];
    }
    return name.empty() ? std::string(folder) : name;
}

std::string resolvedName(Rule::Resolver resolver, std::string_view component) {
    switch (resolver) {
        case Rule::Resolver::derivedData:
            return projectName(component);
        case Rule::Resolver::avd:
            return replacedAll(replacedAll(component, ".avd", ""), "_", " ");
        case Rule::Resolver::app:
            return replacedAll(component, ".app", "");
        case Rule::Resolver::none:
        case Rule::Resolver::deviceSupport:
        case Rule::Resolver::simulator:
        case Rule::Resolver::application:
            break;
    }
    return std::string(component);
}

/// A finding's verdict and action, before it is tied to a place.
struct Judgement {
    Verdict verdict;
    CleanAction action;
};

Judgement simulatorJudgement(const SimulatorInfo& simulator) {
    Judgement judgement{.verdict = {.title = simulator.name + " · " + simulator.runtime},
                        .action = {CleanAction::DeleteSimulator{simulator.udid}}};
    if (simulator.isAvailable) {
        judgement.verdict.level = SafetyLevel::caution;
        judgement.verdict.explanation =
            "Bir iOS simülatörü. Silersen içine kurduğun uygulamalar ve verileri gider; Xcode'dan aynısını "
            "birkaç saniyede yeniden oluşturabilirsin." +
            (simulator.lastBooted ? " Son açılış: " + Format::relative(simulator.lastBooted) + "."
                                  : std::string(" Hiç açılmamış görünüyor."));
    } else {
        judgement.verdict.level = SafetyLevel::safe;
        judgement.verdict.explanation =
            "Bu simülatörün iOS sürümü artık yüklü değil, yani açılamıyor. Silmek tamamen güvenli.";
    }
    return judgement;
}

Judgement systemJudgement(const Position& place) {
    return {.verdict = {.level = SafetyLevel::keep,
                        .title = std::string(place.name()),
                        .explanation = "Sistemin kullandığı bir klasör. Ulvak buna dokunmaz."},
            .action = {CleanAction::None{"Sistem dosyalarını Ulvak silmez."}}};
}

Judgement trashJudgement() {
    return {.verdict = {.level = SafetyLevel::safe,
                        .title = "Çöp Kutusu",
                        .explanation = "Çöp kutusuna attığın dosyalar; başka programlarla attıkların da "
                                       "buradadır. Boşaltana kadar yer kaplamaya devam ederler."},
            .action = {}};
}

Judgement personalJudgement(const Position& place) {
    return {.verdict = {.level = SafetyLevel::keep,
                        .title = std::string(place.name()),
                        .explanation =
                            place.node->isDirectory
                                ? "Kişisel klasörlerinden biri. İçinde ne olduğunu en iyi sen bilirsin; " +
                                      std::string(words().inFileManager) +
                                      " açıp neyin gereksiz olduğuna karar ver."
                                : "Kişisel bir dosya. Artık gerekmiyorsa silebilirsin."},
            .action = {}};
}

Judgement largeFileJudgement(const Position& place, LargeFile kind) {
    const std::string name(place.name());
    Verdict verdict{.level = SafetyLevel::caution};
    if (kind == LargeFile::machineDisk) {
        verdict.title = "Sanal makine diski: " + name;
        verdict.explanation =
            "Bir sanal makinenin diski. Silersen içindeki sistem ve dosyalar geri gelmez; "
            "makineyi artık kullanmıyorsan silebilirsin.";
    } else if (kind == LargeFile::coreDump) {
        verdict.title = "Bellek dökümü: " + name;
        verdict.explanation =
            "Çöken bir programın bellek dökümü. Hatayı incelemiyorsan gereksizdir; silersen "
            "aynı döküm geri gelmez.";
    } else {
        verdict.title = "Kurulum dosyası: " + name;
        verdict.explanation =
            "İndirilmiş bir kurulum dosyası ya da disk kalıbı. Kurduysan gereksizdir; gerekirse "
            "yeniden indirirsin, ama eski sürümü bulamayabilirsin.";
    }
    return {.verdict = std::move(verdict), .action = {}};
}

Judgement guessedJudgement(const Position& place, const Heuristics::Guess& guess) {
    return {.verdict = {.level = guess.level,
                        .title = replacedAll(guess.title, "{name}", place.name()),
                        .explanation = "Klasör adına göre tahmin: " + guess.explanation +
                                       " Emin olmak için " + std::string(words().withModel) + " analiz et.",
                        .source = VerdictSource::heuristic},
            .action = {}};
}

Judgement unknownJudgement(const Position& place) {
    return {.verdict = {.level = SafetyLevel::unknown,
                        .title = std::string(place.name()),
                        .explanation = "Bu klasörün ne olduğunu kurallarım bilmiyor. " +
                                       std::string(words().withModelFirst) +
                                       " analiz edebilir ya da kendin etiketleyebilirsin."},
            .action = {}};
}

/// Group key for the hard links of one file in one folder: they are cleaned together, since only removing all
/// of them frees anything. Links with different judgements stay apart.
std::optional<std::string> nameGroup(const Position& place, const Finding& finding) {
    const std::optional<LinkedFile>& file = place.node->linked;
    if (!file || place.parent == nullptr)
        return std::nullopt;
    const auto isOtherName = [&](const DirNode& node) {
        return &node != place.node && node.linked && node.linked->isSameAs(*file);
    };
    if (std::ranges::none_of(place.parent->node->children, isOtherName))
        return std::nullopt;
    return place.parent->path + "|" + std::to_string(file->volume) + ":" + std::to_string(file->number) +
           "|" + std::string(info(finding.level).rawValue) + "|" + finding.explanation;
}

Finding findingAt(const Position& place, Judgement judgement) {
    Finding finding;
    finding.id = place.path;
    finding.urls = {place.path};
    finding.size = place.node->size;
    finding.action = std::move(judgement.action);
    finding.modified = place.node->modified;
    finding.fileCount = place.node->fileCount;
    finding.heldElsewhere = place.node->heldElsewhere;
    finding.children = summaries(*place.node);
    if (place.parent != nullptr)
        finding.parentPath = place.parent->path;
    finding.siblings = siblings(place);
    finding.original = judgement.verdict;
    setCurrentVerdict(finding, std::move(judgement.verdict));
    finding.groupKey = nameGroup(place, finding);
    return finding;
}

void append(std::vector<std::string>& names, const std::vector<std::string>& more) {
    for (const std::string& name : more) {
        if (std::ranges::find(names, name) == names.end())
            names.push_back(name);
    }
}

/// Whether a rule recognises its places by what is inside them, so that this does not speak against it.
bool isAbout(const Rule& rule, std::string_view entry) {
    const auto* name = std::get_if<Rule::Name>(&rule.match);
    return name != nullptr && std::ranges::find(name->holds, entry) != name->holds.end();
}

bool isContainer(const Rule& rule) {
    return std::holds_alternative<Rule::Container>(rule.kind);
}

/// Whether a rule is about whatever lies in the temporary folder.
bool isTemporary(const Rule& rule) {
    const auto* path = std::get_if<Rule::Path>(&rule.match);
    return path != nullptr && path->pattern.starts_with("$T/");
}

/// Names of what nothing can make again.
struct Precious {
    std::vector<std::string> machineDisks;
    std::vector<std::string> secrets;
    std::vector<std::string> databases;
    std::vector<std::string> backups;    ///< of two kinds of repositories
    std::vector<std::string> documents;  ///< that people write
};

const Precious& precious() {
    static const Precious names{
        .machineDisks = {"*.qcow2", "*.vdi", "*.vmdk", "*.vhdx"},
        .secrets = {"logins.json", "Login Data", "private-keys-v1.d", "wallet.dat", "*.kdbx", "Local State",
                    "cookies.sqlite", "key4.db"},
        .databases = {"PG_VERSION", "ibdata1", "WiredTiger"},
        .backups = {"hints.*", "keys"},
        .documents = {"*.docx", "*.odt", "*.xlsx", "*.ods", "*.pptx", "*.odp", "*.psd", "*.xcf", "*.kra"},
    };
    return names;
}

/// What is in a folder that nothing can make again, whatever the folder is called. Turkish, beginning with a
/// blank; empty if there is nothing.
std::string_view preciousContents(FolderEvidence& evidence) {
    if (evidence.isKnownToLackAll())
        return {};
    if (evidence.holdsOneOf(precious().machineDisks))
        return " Ama içinde sanal makine diskleri var: içlerindekiler geri gelmez.";
    if (evidence.lists("cur") && evidence.lists("new") && evidence.hasFolder("cur") &&
        evidence.hasFolder("new"))
        return " Ama içinde e-posta klasörleri var: başka yerde olmayan iletiler geri gelmez.";
    if (evidence.holdsOneOf(precious().secrets))
        return " Ama içinde oturumlar, parolalar ya da anahtarlar var: onlar geri gelmez.";
    if (evidence.holdsOneOf(precious().databases))
        return " Ama içinde bir veritabanı var: kayıtları geri gelmez.";
    if (evidence.lists("config") && evidence.lists("data") && evidence.holdsOneOf(precious().backups))
        return " Ama içi bir yedek deposuna benziyor: yedekler geri gelmez.";
    return {};
}

/// What a tool leaves where it builds, and what it builds from.
struct Build {
    std::string made;
    std::vector<std::string> sources;
};

const std::vector<Build>& builds() {
    static const std::vector<Build> all{
        {.made = "CMakeCache.txt", .sources = {"CMakeLists.txt"}},
        {.made = "meson-private", .sources = {"meson.build"}},
        {.made = ".rustc_info.json", .sources = {"Cargo.toml"}},
        {.made = "pyvenv.cfg",
         .sources = {"pyproject.toml", "setup.py", "requirements.txt", "Pipfile", "manage.py"}},
    };
    return all;
}

/// Whether a project was built among its own sources, so that they are in the folder too.
bool isBuiltInItsSources(FolderEvidence& evidence) {
    if (evidence.isKnownToLackAll())
        return false;
    return std::ranges::any_of(builds(), [&](const Build& build) {
        return evidence.lists(build.made) && evidence.holdsOneOf(build.sources);
    });
}

/// One analysis: a depth-first walk that appends to `findings_`.
class Analysis {
public:
    Analysis(const Analyzer& analyzer, std::span<const Rule> rules, std::vector<std::string> innerRoots,
             const UserFolders& folders, std::span<const std::string> trashes)
        : analyzer_(analyzer),
          innerRoots_(std::move(innerRoots)),
          matcher_(rules, folders),
          trashes_(trashes),
          usesEvidence_(!rules.empty() && rules.front().isRanked),
          home_(folders.home),
          temp_(folders.temp),
          temporary_(folders),
          downloads_(usesEvidence_ ? downloadFolder(folders) : std::string()) {
        if (!usesEvidence_)
            return;
        for (const std::string* moved : {&folders.userConfig, &folders.userData, &folders.userState}) {
            if (!moved->empty())
                innerRoots_.push_back(*moved);
        }
    }

    void visit(const Position& place, State state) {
        const Rule* rule = match(place, state.context);
        if (isTrash(place)) {
            addTrash(place, rule);
            return;
        }
        if (place.node->isDirectory && holdsAnotherRoot(place) && !isLeftAlone(rule)) {
            enter(place, rule, state);
        } else if (rule == nullptr) {
            visitUnmatched(place, state);
        } else if (std::holds_alternative<Rule::Unit>(rule->kind)) {
            visitUnit(place, *rule, state);
        } else if (place.canBeEntered() && state.entered < maxEntered && !isBestWhole(place, *rule)) {
            enter(place, rule, state);
        } else if (contextOf(*rule) == ScanContext::application) {
            reportOwned(place, ownerAt(place, *rule), false);
        } else {
            const State inside = intoContainer(rule, state);
            reportDefault(place, {.context = inside.context, .depth = state.depth, .owner = inside.owner});
        }
    }

    [[nodiscard]] std::vector<Finding> takeFindings() {
        std::vector<Finding> findings = mergeGroups(std::move(findings_), linked_);
        std::erase_if(findings, [&](const Finding& finding) {
            return ulvak::isTrash(finding) && finding.size < analyzer_.unitMinimum;
        });
        return findings;
    }

private:
    [[nodiscard]] bool isTrash(const Position& place) const {
        return place.node->isDirectory && std::ranges::find(trashes_, place.path) != trashes_.end();
    }

    /// With several, each counts, however small: their sum is reported.
    void addTrash(const Position& place, const Rule* rule) {
        Judgement judgement = rule != nullptr && !rule->isRanked && !isContainer(*rule)
                                  ? ruleJudgement(place, *rule)
                                  : trashJudgement();
        judgement.action = {CleanAction::EmptyTrash{}};
        Finding finding = findingAt(place, std::move(judgement));
        if (trashes_.size() > 1)
            finding.groupKey = "trash";
        add(place, std::move(finding));
    }

    [[nodiscard]] const Rule* match(const Position& place, ScanContext context) const {
        if (!around_ || !isParent(around_->path(), place.path)) {
            if (place.parent != nullptr)
                around_.emplace(place.parent->path, noted(*place.parent->node));
            else
                around_.emplace(std::string(Paths::parent(place.path)));
        }
        return matcher_.match(place.path, place.node->isDirectory, context, evidenceIn(place), *around_);
    }

    [[nodiscard]] static bool isParent(std::string_view folder, std::string_view path) {
        return path.size() > folder.size() && Paths::parent(path) == folder;
    }

    [[nodiscard]] NotedEntries noted(const DirNode& node) const {
        return {.names = analyzer_.noted, .seen = node.noted};
    }

    /// What is known of the folder that is being judged; valid until the next one is asked for.
    [[nodiscard]] FolderEvidence& evidenceIn(const Position& place) const {
        if (!evidence_ || evidence_->path() != place.path)
            evidence_.emplace(place.path, noted(*place.node));
        return *evidence_;
    }

    [[nodiscard]] bool holdsAnotherRoot(const Position& place) const {
        return std::ranges::any_of(innerRoots_, [&](const std::string& root) {
            return root.size() > place.path.size() && Paths::isWithin(root, place.path);
        });
    }

    /// An item the program never cleans may be reported as a whole: nothing inside it is taken along.
    [[nodiscard]] static bool isLeftAlone(const Rule* rule) {
        return rule != nullptr && std::holds_alternative<Rule::Unit>(rule->kind) && !rule->actionable;
    }

    /// Of a container; a unit switches to none.
    [[nodiscard]] static ScanContext contextOf(const Rule& rule) {
        const auto* container = std::get_if<Rule::Container>(&rule.kind);
        return container != nullptr ? container->context : ScanContext::normal;
    }

    [[nodiscard]] static State intoContainer(const Rule* rule, const State& around) {
        State inside{.context = around.context, .entered = around.entered + 1, .owner = around.owner};
        if (rule != nullptr && contextOf(*rule) != ScanContext::normal) {
            inside.context = contextOf(*rule);
            inside.owner = nullptr;
        }
        if (inside.context == ScanContext::personal)
            inside.depth = personalDepth;
        else
            inside.depth = inside.context == ScanContext::application ? applicationDepth : otherDepth;
        return inside;
    }

    void enter(const Position& place, const Rule* rule, const State& around) {
        State inside = intoContainer(rule, around);
        if (inside.context != ScanContext::application || inside.owner != nullptr) {
            visitChildren(place, inside);
            return;
        }
        const Owner owner = ownerAt(place, *rule);
        inside.owner = &owner;
        visitChildren(place, inside);
    }

    [[nodiscard]] Owner ownerAt(const Position& place, const Rule& rule) const {
        Verdict verdict = ruleJudgement(place, rule).verdict;
        return {.title = std::move(verdict.title),
                .explanation = std::move(verdict.explanation),
                .level = rule.level == SafetyLevel::unknown ? SafetyLevel::keep : rule.level,
                .rule = &rule};
    }

    /// Whether an application's folder holds nothing that is known and big.
    [[nodiscard]] bool isBestWhole(const Position& place, const Rule& rule) const {
        return contextOf(rule) == ScanContext::application && !holdsKnown(place, applicationDepth);
    }

    /// Like `containsMatch`, but a folder that is only a way to others is not worth opening.
    [[nodiscard]] bool holdsKnown(const Position& place, int depth) const {
        if (depth < 1)
            return false;
        return std::ranges::any_of(place.node->children, [&](const DirNode& node) {
            if (node.size < probeMinimum)
                return false;
            const Position child = place.child(node);
            const Rule* rule = match(child, ScanContext::application);
            const bool isWay = rule != nullptr && std::holds_alternative<Rule::Container>(rule->kind) &&
                               contextOf(*rule) == ScanContext::normal;
            if (rule != nullptr && !isWay)
                return true;
            const bool isOnPath = isWay && std::holds_alternative<Rule::Path>(rule->match);
            return child.canBeEntered() && holdsKnown(child, isOnPath ? depth : depth - 1);
        });
    }

    [[nodiscard]] bool holdsKept(const Position& place) const {
        std::vector<std::string> big;
        std::ranges::transform(place.node->children, std::back_inserter(big), &DirNode::url);
        return matcher_.holdsKept(evidenceIn(place), big);
    }

    void visitUnit(const Position& place, const Rule& rule, const State& state) {
        if (place.node->size < analyzer_.unitMinimum)
            return;
        if (isEasilyDeleted(rule.level) && place.canBeEntered() && holdsKept(place)) {
            Owner owner = ownerAt(place, rule);
            owner.level = SafetyLevel::caution;
            owner.isOpened = true;
            visitChildren(place, {.context = ScanContext::application,
                                  .depth = applicationDepth,
                                  .entered = state.entered + 1,
                                  .owner = &owner});
            return;
        }
        Finding finding = ruleFinding(place, rule);
        if (state.owner != nullptr && std::holds_alternative<Rule::Name>(rule.match)) {
            append(finding.quitApps, state.owner->rule->quitApps);
            append(finding.processes, state.owner->rule->processes);
        }
        add(place, std::move(finding));
    }

    void visitChildren(const Position& place, State state) {
        for (const DirNode& child : place.node->children)
            visit(place.child(child), state);
    }

    void visitUnmatched(const Position& place, State state) {
        if (const LargeFile kind = largeFileAt(place, state.context); kind != LargeFile::other) {
            addLargeFile(place, kind, state.context);
            return;
        }
        if (state.context == ScanContext::application) {
            visitOwned(place, state);
            return;
        }
        if (state.context == ScanContext::normal) {
            if (const auto guess = Heuristics::guess(place.name())) {
                visitGuessed(place, state, *guess);
                return;
            }
        }
        const bool mayDrill = place.canBeEntered() && !place.node->children.empty() && state.depth >= 1;
        if (mayDrill && (containsMatch(place, state.context, state.depth) || shouldDrill(*place.node)))
            visitChildren(place, {.context = state.context,
                                  .depth = state.depth - 1,
                                  .drilled = true,
                                  .entered = state.entered});
        else
            reportDefault(place, state);
    }

    /// Only of files that nobody else has named.
    [[nodiscard]] LargeFile largeFileAt(const Position& place, ScanContext context) const {
        const bool isAsked = usesEvidence_ && !place.node->isDirectory &&
                             (context == ScanContext::normal || context == ScanContext::personal);
        if (!isAsked || nameOfLargeFile(place.name()) == LargeFile::other)
            return LargeFile::other;
        const auto [known, isNew] = largeFiles_.try_emplace(place.path, LargeFile::other);
        if (isNew)
            known->second = largeFile(place.path);
        if (known->second == LargeFile::installer &&
            (downloads_.empty() || !Paths::isWithin(place.path, downloads_)))
            return LargeFile::other;
        return known->second;
    }

    void addLargeFile(const Position& place, LargeFile kind, ScanContext context) {
        if (place.node->size < analyzer_.unitMinimum)
            return;
        Finding finding = findingAt(place, largeFileJudgement(place, kind));
        finding.isPersonal = context == ScanContext::personal;
        add(place, std::move(finding));
    }

    /// In an application's folder.
    void visitOwned(const Position& place, State state) {
        const bool isKeeping = state.owner->isOpened && place.canBeEntered() && holdsKept(place);
        const bool mayDrill = place.canBeEntered() && !place.node->children.empty() && state.depth >= 1;
        if (mayDrill && (isKeeping || holdsKnown(place, state.depth))) {
            --state.depth;
            visitChildren(place, state);
        } else if (isKeeping) {
            Owner kept = *state.owner;
            kept.level = SafetyLevel::keep;
            reportOwned(place, kept, true);
        } else {
            reportOwned(place, *state.owner, true);
        }
    }

    void reportOwned(const Position& place, const Owner& owner, bool isPart) {
        if (place.node->size < analyzer_.unitMinimum)
            return;
        Judgement judgement{
            .verdict = {.level = owner.level, .title = owner.title, .explanation = owner.explanation},
            .action = ruleAction(*owner.rule)};
        if (isPart)
            judgement.verdict.title += " › " + std::string(place.name());
        addRunning(place, findingAt(place, std::move(judgement)), *owner.rule);
    }

    void addRunning(const Position& place, Finding finding, const Rule& rule) {
        finding.quitApps = rule.quitApps;
        finding.processes = rule.processes;
        finding.command = rule.command;
        add(place, std::move(finding));
    }

    void visitGuessed(const Position& place, State state, const Heuristics::Guess& guess) {
        std::vector<const DirNode*> bigFolders;
        for (const DirNode& child : place.node->children) {
            if (child.isDirectory && child.size >= analyzer_.defaultMinimum)
                bigFolders.push_back(&child);
        }
        if (!guess.splitChildren || bigFolders.size() < 2) {
            reportDefault(place, state);
            return;
        }
        for (const DirNode* child : bigFolders) {
            const Position below = place.child(*child);
            add(below, defaultFinding(below, state, guess));
        }
    }

    /// Whether there is a known place worth reporting below this one.
    [[nodiscard]] bool containsMatch(const Position& place, ScanContext context, int depth) const {
        if (depth < 1)
            return false;
        return std::ranges::any_of(place.node->children, [&](const DirNode& node) {
            if (node.size < probeMinimum)
                return false;
            const Position child = place.child(node);
            return match(child, context) != nullptr || largeFileAt(child, context) != LargeFile::other ||
                   (child.canBeEntered() && containsMatch(child, context, depth - 1));
        });
    }

    /// Whether one sub-folder makes up so much of an unknown folder that it deserves its own finding.
    [[nodiscard]] static bool shouldDrill(const DirNode& node) {
        if (node.size < drillMinimum)
            return false;
        const auto largest = std::ranges::find_if(node.children, &DirNode::isDirectory);
        return largest != node.children.end() &&
               largest->size >= std::max(node.size, drillShareFloor) / drillShare;
    }

    void reportDefault(const Position& place, State state) {
        if (state.owner != nullptr)
            reportOwned(place, *state.owner, true);
        else if (place.node->size >= analyzer_.defaultMinimum)
            add(place, defaultFinding(place, state, std::nullopt));
    }

    [[nodiscard]] bool isUntouched(const Position& place) const {
        return std::ranges::any_of(analyzer_.untouched, [&](const std::string& folder) {
            const auto isUsers = [&](const std::string& own) {
                return Paths::isWithin(own, folder) && Paths::isWithin(place.path, own);
            };
            return Paths::isWithin(place.path, folder) && !isUsers(home_) && !isUsers(temp_);
        });
    }

    void add(const Position& place, Finding finding) {
        if (canBeCleaned(finding) && isUntouched(place))
            finding.action = {CleanAction::None{"Sistem dosyalarını Ulvak silmez."}};
        if (place.node->linked)
            linked_.emplace(finding.id, *place.node->linked);
        findings_.push_back(std::move(finding));
    }

    [[nodiscard]] Finding ruleFinding(const Position& place, const Rule& rule) const {
        Finding finding = findingAt(place, cautious(place, ruleJudgement(place, rule), &rule));
        finding.quitApps = rule.quitApps;
        finding.processes = rule.processes;
        finding.command = rule.command;
        if (rule.group)
            finding.groupKey =
                (place.parent != nullptr ? place.parent->path : std::string()) + "|" + *rule.group;
        return finding;
    }

    [[nodiscard]] static CleanAction ruleAction(const Rule& rule) {
        if (rule.actionable)
            return {};
        return {CleanAction::None{"Ulvak bunu senin yerine silmez. Açıklamadaki yöntemi kullan."}};
    }

    [[nodiscard]] std::string nameFor(const Rule& rule, const Position& place) const {
        return rule.resolver == Rule::Resolver::application ? applicationName(place.name())
                                                            : resolvedName(rule.resolver, place.name());
    }

    /// Without a desktop entry, the last part of an id such as "org.gnome.Maps".
    [[nodiscard]] std::string applicationName(std::string_view id) const {
        std::string name = analyzer_.applicationName ? analyzer_.applicationName(id) : std::string();
        return name.empty() ? std::string(id.substr(id.rfind('.') + 1)) : name;
    }

    /// In an application's sandbox, a title says whose it is.
    [[nodiscard]] std::string withApplication(const Position& place, std::string title) const {
        const std::string_view id = matcher_.sandboxOf(place.path);
        if (id.empty())
            return title;
        const std::string name = applicationName(id);
        if (name.empty() || lowerCased(title).contains(lowerCased(name)))
            return title;
        return title + " (" + name + ")";
    }

    [[nodiscard]] Judgement ruleJudgement(const Position& place, const Rule& rule) const {
        const std::string_view parentName =
            place.parent != nullptr ? place.parent->name() : std::string_view();
        Judgement judgement{
            .verdict = {.level = rule.level,
                        .title = withApplication(
                            place, replacedAll(replacedAll(rule.title, "{name}", nameFor(rule, place)),
                                               "{parent}", parentName)),
                        .explanation = rule.explanation},
            .action = ruleAction(rule)};
        if (rule.resolver != Rule::Resolver::simulator)
            return judgement;

        const auto simulator = analyzer_.simulators.find(place.name());
        if (simulator != analyzer_.simulators.end())
            return simulatorJudgement(simulator->second);
        judgement.verdict.level = SafetyLevel::safe;
        judgement.verdict.title = "Sahipsiz simülatör verisi";
        judgement.verdict.explanation = "Xcode'un artık tanımadığı bir simülatör klasörü. Silmek güvenli.";
        return judgement;
    }

    [[nodiscard]] static Judgement defaultJudgement(const Position& place, ScanContext context,
                                                    const std::optional<Heuristics::Guess>& inherited) {
        switch (context) {
            case ScanContext::system:
                return systemJudgement(place);
            case ScanContext::personal:
                return personalJudgement(place);
            case ScanContext::normal:
            case ScanContext::application:
                break;
        }
        auto guess = Heuristics::guess(place.name());
        if (!guess)
            guess = inherited;
        return guess ? guessedJudgement(place, *guess) : unknownJudgement(place);
    }

    /// The judgement, unless something inside speaks against deleting the folder easily.
    [[nodiscard]] Judgement cautious(const Position& place, Judgement judgement, const Rule* rule) const {
        if (!usesEvidence_ || !isEasilyDeleted(judgement.verdict.level) ||
            place.node->size < analyzer_.unitMinimum)
            return judgement;
        const std::string reason = objection(place, rule);
        if (!reason.empty()) {
            judgement.verdict.level = SafetyLevel::caution;
            judgement.verdict.explanation += reason;
        }
        return judgement;
    }

    [[nodiscard]] std::string objection(const Position& place, const Rule* rule) const {
        if (place.node->isDirectory && holdsMount(place))
            return " Burası ya da içindeki bir klasör başka bir diskin bağlandığı yer; silersen oradaki "
                   "dosyalar da gidebilir.";
        if (rule != nullptr && isTemporary(*rule)) {
            if (std::string reason = temporary_.objection(place.path, *place.node); !reason.empty())
                return reason;
        }
        if (!place.node->isDirectory)
            return {};
        FolderEvidence& evidence = evidenceIn(place);
        if ((rule == nullptr || !isAbout(*rule, ".git")) && evidence.lists(".git"))
            return " Ama içinde bir git deposu var: gönderilmemiş değişiklikler geri gelmez.";
        if (lowerCased(place.name()).starts_with("build") && evidence.hasFile("conf/local.conf"))
            return " Ama içinde elle yazılmış derleme ayarları (`conf/local.conf`) var: onlar geri gelmez.";
        if (isBuiltInItsSources(evidence))
            return " Ama içinde projenin kendisi de var: kaynak dosyaları geri gelmez.";
        if (evidence.holdsOneOf(precious().documents))
            return " Ama içinde belgeler var: başka yerde yoksa geri gelmezler.";
        const std::string_view reason = preciousContents(evidence);
        return std::string(reason.empty() ? preciousBelow(place) : reason);
    }

    /// The same of the big folders inside.
    [[nodiscard]] std::string_view preciousBelow(const Position& place) const {
        for (const DirNode& child : place.node->children) {
            if (!child.isDirectory)
                continue;
            FolderEvidence evidence(Paths::join(place.path, child.url), noted(child));
            if (const std::string_view reason = preciousContents(evidence); !reason.empty())
                return reason;
        }
        return {};
    }

    [[nodiscard]] bool holdsMount(const Position& place) const {
        if (!mounts_)
            mounts_ = platform::mountPoints();
        const std::string path = realPath(place);
        return std::ranges::any_of(*mounts_,
                                   [&](const std::string& mount) { return Paths::isWithin(mount, path); });
    }

    /// As the system calls it. Only the root of a walk may be reached through links.
    [[nodiscard]] std::string realPath(const Position& place) const {
        const Position* root = &place;
        while (root->parent != nullptr)
            root = root->parent;
        const auto [known, isNew] = realRoots_.try_emplace(root->path);
        if (isNew)
            known->second = platform::resolvedPath(root->path).value_or(root->path);
        if (root == &place)
            return known->second;
        const std::size_t skipped = root->path == "/" ? 1 : root->path.size() + 1;
        return Paths::join(known->second, place.path.substr(skipped));
    }

    [[nodiscard]] Finding defaultFinding(const Position& place, State state,
                                         const std::optional<Heuristics::Guess>& inherited) const {
        const bool isPersonal = state.context == ScanContext::personal;
        Judgement judgement = cautious(place, defaultJudgement(place, state.context, inherited), nullptr);
        if (place.parent != nullptr && state.drilled && !isPersonal)
            judgement.verdict.title = std::string(place.parent->name()) + " › " + judgement.verdict.title;
        Finding finding = findingAt(place, std::move(judgement));
        finding.isPersonal = isPersonal;
        return finding;
    }

    const Analyzer& analyzer_;
    std::vector<std::string> innerRoots_;  ///< and where applications keep files, if the user has moved that
    RuleMatcher matcher_;
    std::span<const std::string> trashes_;
    bool usesEvidence_ = false;  ///< whether something inside may speak against a finding: with ranked rules
    std::string home_;
    std::string temp_;
    mutable TemporaryUse temporary_;
    std::string downloads_;                                          ///< empty for none
    mutable std::unordered_map<std::string, LargeFile> largeFiles_;  ///< those that were looked at
    mutable std::optional<FolderEvidence> evidence_;
    mutable std::optional<FolderEvidence> around_;                    ///< of the folder that contains it
    mutable std::optional<std::vector<std::string>> mounts_;          ///< read when first needed
    mutable std::unordered_map<std::string, std::string> realRoots_;  ///< those that were asked about
    std::vector<Finding> findings_;
    LinkedFindings linked_;
};

/// Whether the home folder is laid out as the rules for all systems have it, with a library of applications'
/// files. The ranked rules are about this system's folders; what they say of hidden ones would be wrong
/// there. A folder of that name among those that only this system makes is just a folder.
bool isAnotherSystemsHome(std::span<const DirNode> roots, std::span<const Rule> common,
                          const UserFolders& folders) {
    const auto home = std::ranges::find(roots, folders.home, &DirNode::url);
    if (home == roots.end())
        return false;
    const auto library = std::ranges::find(home->children, "Library", &DirNode::url);
    const bool isKnown =
        library != home->children.end() && std::ranges::any_of(library->children, [&](const DirNode& child) {
            const Rule::Match path = Rule::Path{"~/Library/" + child.url};
            return child.isDirectory && std::ranges::find(common, path, &Rule::match) != common.end();
        });
    constexpr std::array<std::string_view, 5> marks = {".config/user-dirs.dirs", ".var/app", ".steam", "snap",
                                                       ".local/share/flatpak"};
    const platform::Reach reach({&folders.home, 1}, platform::Reach::Others::prompt);
    return isKnown && std::ranges::none_of(marks, [&](std::string_view mark) {
               return reach.follow(Paths::join(folders.home, mark)).isThere;
           });
}

ChildSummary memberSummary(const Finding& member) {
    return {.name = std::string(Paths::lastComponent(member.urls.front())),
            .size = member.size,
            .isDirectory = false};
}

/// Files with several hard links already seen in a group.
using MetFiles = std::vector<LinkedFile>;

/// Counts a file's bytes once among the members of its group. Bytes held elsewhere are known per file; for
/// members that are folders, only what each has outside itself.
void countOnce(Finding& group, Finding& member, const LinkedFile& file, MetFiles& met) {
    const auto known =
        std::ranges::find_if(met, [&](const LinkedFile& other) { return other.isSameAs(file); });
    if (known == met.end()) {
        met.push_back(file);
        return;
    }
    ++known->seen;
    member.size = member.heldElsewhere = 0;
    if (known->isComplete())
        group.heldElsewhere -= known->size;
}

void fold(Finding& group, Finding member) {
    group.size += member.size;
    group.heldElsewhere += member.heldElsewhere;
    group.fileCount += member.fileCount;
    group.modified = std::max(group.modified, member.modified);  // nullopt is earlier than any date
    std::ranges::move(member.urls, std::back_inserter(group.urls));
}

}  // namespace

std::vector<Finding> mergeGroups(std::vector<Finding> findings, const LinkedFindings& linked) {
    std::vector<Finding> merged;
    std::unordered_map<std::string, std::size_t> positions;
    std::unordered_map<std::size_t, MetFiles> met;
    for (Finding& finding : findings) {
        if (!finding.groupKey) {
            merged.push_back(std::move(finding));
            continue;
        }
        const auto [position, isFirst] = positions.try_emplace(*finding.groupKey, merged.size());
        const std::size_t index = position->second;
        ChildSummary summary = memberSummary(finding);
        if (isFirst)
            finding.children.clear();
        Finding& group = isFirst ? merged.emplace_back(finding) : merged[index];
        group.children.push_back(std::move(summary));
        if (const auto file = linked.find(finding.id); file != linked.end())
            countOnce(group, finding, file->second, met[index]);
        if (!isFirst)
            fold(group, std::move(finding));
    }
    for (Finding& finding : merged) {
        if (finding.urls.size() < 2)
            continue;
        sortLargestFirst(finding.children);
        if (isTrash(finding))
            continue;
        appendMemberCount(finding);
    }
    return merged;
}

NotedNames Analyzer::evidence(std::span<const Rule> rules) {
    if (rules.empty() || !rules.front().isRanked)
        return NotedNames({});
    std::set<std::string> names = {".git", "cur", "new", "config", "data"};
    const Precious& all = precious();
    for (const auto* more : {&all.machineDisks, &all.secrets, &all.databases, &all.backups, &all.documents})
        names.insert(more->begin(), more->end());
    for (const Build& build : builds()) {
        names.insert(build.made);
        names.insert(build.sources.begin(), build.sources.end());
    }
    for (const Rule& rule : rules) {
        if (const auto* name = std::get_if<Rule::Name>(&rule.match)) {
            names.insert(name->siblings.begin(), name->siblings.end());
            names.insert(name->holds.begin(), name->holds.end());
        }
    }
    return NotedNames({names.begin(), names.end()});
}

std::vector<Finding> Analyzer::run(std::span<const DirNode> roots, const UserFolders& folders,
                                   std::vector<std::string> innerRoots) const {
    // Ranked rules come first.
    std::span<const Rule> asked(rules);
    const auto common =
        asked.subspan(static_cast<std::size_t>(std::ranges::count(rules, true, &Rule::isRanked)));
    std::span<const std::string> ownTrashes(trashes);
    if (common.size() < rules.size() && isAnotherSystemsHome(roots, common, folders)) {
        asked = common;
        ownTrashes = {};
    }
    Analysis analysis(*this, asked, std::move(innerRoots), folders, ownTrashes);
    for (const DirNode& root : roots)
        analysis.visit({.node = &root, .path = root.url, .parent = nullptr}, {});
    std::vector<Finding> findings = analysis.takeFindings();
    sortLargestFirst(findings);
    return findings;
}

}  // namespace ulvak
