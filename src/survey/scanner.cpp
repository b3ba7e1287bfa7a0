#include "survey/scanner.h"

#include <algorithm>
#include <functional>
#include <future>
#include <iterator>
#include <map>
#include <new>
#include <optional>
#include <utility>

#include "classify/analyzer.h"
#include "classify/platform_rows.h"
#include "classify/rule_book.h"
#include "platform/desktop.h"
#include "platform/files.h"
#include "platform/trash.h"
#include "platform/user_folders.h"
#include "platform/volume.h"
#include "scan/disk_walker.h"
#include "survey/simulators.h"

namespace ulvak {
namespace {

constexpr std::int64_t keepThreshold = 50'000'000;
constexpr std::int64_t defaultMinimum = 300'000'000;

/// A root with its real path: a home or temporary folder may be a link, or be reached through one.
struct Located {
    std::string path;
    std::string real;
    platform::FileInfo info;
    bool isSystems = false;
};

/// The existing roots, each place once: of two names for one folder, the first wins.
std::vector<Located> locatedRoots(const UserFolders& folders, const FurtherPlaces& further) {
    std::vector<Located> located;
    const platform::Reach reach({&folders.home, 1}, platform::Reach::Others::prompt);
    std::vector<std::string> paths = Scanner::roots(folders);
    std::ranges::copy(further.trashes, std::back_inserter(paths));
    const std::size_t firstOfSystem = paths.size();
    std::ranges::copy(further.systems, std::back_inserter(paths));
    for (std::size_t i = 0; i < paths.size(); ++i) {
        const std::string& path = paths[i];
        platform::Reach::Target real = reach.follow(path);
        const auto info = real.isThere ? platform::fileInfo(real.path) : std::nullopt;
        if (!info || (path == folders.cache && !Paths::hasOwnCache(folders)))
            continue;
        const auto isSame = [&](const Located& other) {
            return other.real == real.path || other.info.volumeAndNumber == info->volumeAndNumber;
        };
        if (std::ranges::none_of(located, isSame))
            located.push_back(
                {.path = path, .real = std::move(real.path), .info = *info, .isSystems = i >= firstOfSystem});
    }
    // A file inside another root belongs to that root.
    std::vector<Located> kept;
    std::ranges::copy_if(located, std::back_inserter(kept), [&](const Located& root) {
        const auto holdsIt = [&](const Located& other) {
            return other.real != root.real && Paths::isWithin(root.real, other.real);
        };
        return root.info.isDirectory || std::ranges::none_of(located, holdsIt);
    });
    return kept;
}

/// Where, inside one root's tree, another root begins. Each is walked once, as itself.
std::vector<std::string> innerRoots(const std::vector<Located>& roots) {
    std::vector<std::string> inner;
    for (const Located& outer : roots) {
        for (const Located& root : roots) {
            if (root.real != outer.real && Paths::isWithin(root.real, outer.real))
                inner.push_back(
                    Paths::join(outer.path, root.real.substr(outer.real == "/" ? 1 : outer.real.size() + 1)));
        }
    }
    return inner;
}

/// Names applications by the ids of their sandboxes; reads the desktop entries when first asked.
class ApplicationNames {
public:
    [[nodiscard]] std::string of(std::string_view id) {
        if (!names_)
            names_ = platform::applicationNames();
        if (const auto found = names_->find(id); found != names_->end())
            return found->second;
        // A snap's entries are named "<snap>_<application>".
        const std::string prefix = std::string(id) + "_";
        const auto first = names_->lower_bound(prefix);
        return first != names_->end() && first->first.starts_with(prefix) ? first->second : std::string();
    }

private:
    std::optional<std::map<std::string, std::string, std::less<>>> names_;
};

/// Walks the user's own roots or the system's, in their order.
std::vector<DirNode> trees(const DiskWalker& walker, const std::vector<Located>& located, bool areSystems,
                           const std::stop_token& stop) {
    std::vector<std::string> paths;
    for (const Located& root : located) {
        if (root.isSystems == areSystems)
            paths.push_back(root.path);
    }
    std::vector<DirNode> found;
    for (std::optional<DirNode>& node : walker.nodes(paths, stop)) {
        if (node)
            found.push_back(std::move(*node));
    }
    return found;
}

/// The system's folders are walked apart: what may not be read there is no alarm.
std::vector<DirNode> systemTrees(const DiskWalker& own, const std::vector<Located>& located,
                                 const std::stop_token& stop) {
    ScanProgress progress;
    const DiskWalker walker{.progress = progress,
                            .home = own.home,
                            .excluded = own.excluded,
                            .innerRoots = own.innerRoots,
                            .keepThreshold = own.keepThreshold,
                            .noted = own.noted};
    std::vector<DirNode> found = trees(walker, located, true, stop);
    own.progress.addFiles(progress.files());
    own.progress.addBytes(progress.bytes());
    if (progress.denied() > 0)
        own.progress.addDeniedBeyond();
    return found;
}

std::vector<Finding> scan(const Scanner& scanner, const std::stop_token& stop) {
    // If no thread can be started, this runs when the answer is needed.
    auto simulators =
        std::async(std::launch::async | std::launch::deferred, [stop] { return Simulators::load(stop); });
    const FurtherPlaces further = scanner.further ? *scanner.further : FurtherPlaces::of(scanner.folders);
    const std::vector<Located> located = locatedRoots(scanner.folders, further);
    const std::vector<std::string> inner = innerRoots(located);

    static const NotedNames evidence = Analyzer::evidence(RuleBook::all());
    const DiskWalker walker{.progress = scanner.progress,
                            .home = scanner.folders.home,
                            .excluded = Scanner::excluded(scanner.folders),
                            .innerRoots = inner,
                            .keepThreshold = keepThreshold,
                            .noted = &evidence};
    std::vector<DirNode> roots = trees(walker, located, false, stop);
    std::ranges::move(systemTrees(walker, located, stop), std::back_inserter(roots));

    SimulatorMap installed = simulators.get();
    if (stop.stop_requested())
        return {};
    std::vector<std::string> trashes = further.trashes;
    if (trashes.empty())
        trashes.push_back(scanner.folders.trash);
    ApplicationNames names;
    const Analyzer analyzer{.rules = RuleBook::all(),
                            .simulators = std::move(installed),
                            .unitMinimum = keepThreshold,
                            .defaultMinimum = defaultMinimum,
                            .applicationName = [&names](std::string_view id) { return names.of(id); },
                            .trashes = std::move(trashes),
                            .untouched = further.systems,
                            .noted = &evidence};
    return analyzer.run(roots, scanner.folders, inner);
}

}  // namespace

FurtherPlaces FurtherPlaces::of(const UserFolders& folders) {
    FurtherPlaces further;
    if (!platform::isAccountsHome(folders.home))
        return further;
    const platform::Reach reach({&folders.home, 1}, platform::Reach::Others::prompt);
    const std::string own = reach.follow(folders.trash).path;
    // One that is a link, or that others may change, is neither emptied nor what it seems.
    for (const platform::TrashFolder& trash : platform::trashFolders().folders) {
        if (trash.folder)
            further.trashes.push_back(reach.follow(trash.path).path == own ? folders.trash : trash.path);
    }
    // The home folder's own counts whole, however small, once there are others to add it to. The walk comes
    // by itself where no link leads there.
    const bool isFoundInHome = Paths::isWithin(own, reach.follow(folders.home).path);
    if (further.trashes.size() == 1 && further.trashes.front() == folders.trash && isFoundInHome)
        further.trashes.clear();
    further.systems = RuleBook::systemFolders();
    return further;
}

std::expected<std::vector<Finding>, ScanError> Scanner::run(std::stop_token stop) const {
    try {
        return scan(*this, stop);
    } catch (const std::bad_alloc&) {
        return std::unexpected(ScanError::outOfMemory);
    }
}

std::vector<std::string> Scanner::roots(const UserFolders& folders) {
    return {folders.home, folders.temp,      folders.cache,   "/Applications",
            "/Library",   "/private/var/vm", "/opt/homebrew", "/Users/Shared"};
}

std::set<std::string, std::less<>> Scanner::excluded(const UserFolders& folders) {
    return {
        Paths::join(folders.home, "Library/CloudStorage"),
        Paths::join(folders.home, "Library/Mobile Documents"),
        Paths::join(folders.home, "Library/Metadata/CoreSpotlight"),
        "/Library/Developer/CoreSimulator/Volumes",
        "/Library/Developer/CoreSimulator/Cryptex",
    };
}

}  // namespace ulvak
