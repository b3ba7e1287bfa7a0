#include "classify/rule_book.h"

#include <gtest/gtest.h>
#include <unicode/normalizer2.h>

#include <algorithm>
#include <array>
#include <set>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "classify/rule_matcher.h"
#include "core/text.h"
#include "node.h"
#include "support/temp_tree.h"

namespace ulvak {
namespace {

using test::file;
using test::folder;
using test::TempTree;

const std::vector<Rule>& book() {
    return RuleBook::reference();
}

bool isContainer(const Rule& rule) {
    return std::holds_alternative<Rule::Container>(rule.kind);
}
const Rule::Path* pathMatch(const Rule& rule) {
    return std::get_if<Rule::Path>(&rule.match);
}
const Rule::Name* nameMatch(const Rule& rule) {
    return std::get_if<Rule::Name>(&rule.match);
}

const Rule* matchOf(std::string_view path, bool isDirectory = true,
                    ScanContext context = ScanContext::normal) {
    return RuleMatcher(book(), test::ayse).match(path, isDirectory, context);
}

bool isComposed(const std::string& text) {
    UErrorCode status = U_ZERO_ERROR;
    return icu::Normalizer2::getNFCInstance(status)->isNormalizedUTF8(text, status) && U_SUCCESS(status);
}

/// Text that matches a pattern of this table: "x" for every wildcard.
std::string instance(std::string pattern) {
    pattern = replacedAll(pattern, "[!.]", "x");
    return replacedAll(pattern, "*", "xyz");
}

bool hasOnlyKnownPlaceholders(const std::string& title) {
    const std::string rest = replacedAll(replacedAll(title, "{name}", ""), "{parent}", "");
    return rest.find_first_of("{}") == std::string::npos;
}

void expectWellFormed(const Rule& rule) {
    EXPECT_FALSE(rule.title.empty());
    EXPECT_TRUE(hasOnlyKnownPlaceholders(rule.title));
    EXPECT_TRUE(isComposed(rule.title));
    EXPECT_TRUE(isComposed(rule.explanation));
    EXPECT_EQ(rule.title, printable(rule.title));
    EXPECT_EQ(rule.explanation, printable(rule.explanation));
    EXPECT_NE(rule.group, "");
    EXPECT_EQ(std::ranges::count(rule.quitApps, ""), 0);
    if (!rule.inPersonal) {
        EXPECT_NE(nameMatch(rule), nullptr) << "only name rules ask for it";
    }
}

void expectBareContainer(const Rule& rule) {
    const Rule bare{.match = rule.match, .kind = rule.kind, .level = SafetyLevel::unknown, .title = "{name}"};
    EXPECT_EQ(rule, bare);
    EXPECT_NE(pathMatch(rule), nullptr);
}

void expectUnit(const Rule& rule) {
    EXPECT_NE(rule.level, SafetyLevel::unknown);
    EXPECT_EQ(rule.explanation.empty(), rule.resolver == Rule::Resolver::simulator);
    if (!rule.explanation.empty()) {
        EXPECT_TRUE(rule.explanation.ends_with('.'));
    }
}

/// Near misses: a nonexistent prefix, a level too deep, a level too high, a name too long.
void expectPathToMatch(const Rule& rule, const std::string& pattern) {
    EXPECT_TRUE(pattern == "~" || pattern == "$T" || pattern == "$C" || pattern.starts_with("~/") ||
                pattern.starts_with("$T/") || pattern.starts_with("$C/") || pattern.starts_with('/'));
    EXPECT_FALSE(pattern.ends_with('/'));
    EXPECT_EQ(pattern.find("//"), std::string::npos);

    const std::string path = Paths::expand(instance(pattern), test::ayse);
    for (const ScanContext context : {ScanContext::normal, ScanContext::personal, ScanContext::system}) {
        EXPECT_EQ(matchOf(path, true, context), &rule) << path;
        EXPECT_EQ(matchOf(path, false, context), &rule) << path;
    }
    EXPECT_NE(matchOf(path + "/below"), &rule) << path;
    EXPECT_NE(matchOf("/elsewhere" + path), &rule) << path;
    EXPECT_NE(matchOf(path.substr(0, path.rfind('/'))), &rule) << path;
    if (pattern.ends_with('*')) {
        EXPECT_NE(matchOf(path.substr(0, path.rfind('/') + 1) + "x/y"), &rule) << path;
    } else {
        EXPECT_NE(matchOf(path + "x"), &rule) << path;
    }
    if (pattern.contains("[!.]")) {
        EXPECT_NE(matchOf(path.substr(0, path.rfind('/') + 1) + ".xyz"), &rule) << path;
    }
}

/// Matches next to each sibling in turn; not without siblings, with a near miss, or with only a file of that
/// name.
void expectNameToMatch(const Rule& rule, const Rule::Name& name) {
    EXPECT_TRUE(name.outside.empty());
    EXPECT_EQ(name.pattern.find('/'), std::string::npos);
    const std::string entry = instance(name.pattern);
    std::vector<std::string> siblings = name.siblings;
    if (siblings.empty())
        siblings.emplace_back("anything");
    for (const std::string& sibling : siblings) {
        const TempTree tree({folder(entry), folder(entry + "x"), file(instance(sibling))});
        EXPECT_EQ(matchOf(tree.path(entry)), &rule) << entry << " beside " << sibling;
        EXPECT_EQ(matchOf(tree.path(entry), true, ScanContext::system), &rule);
        EXPECT_EQ(matchOf(tree.path(entry), true, ScanContext::personal), rule.inPersonal ? &rule : nullptr)
            << entry;
        EXPECT_EQ(matchOf(tree.path(entry), false), nullptr) << "a file";
        EXPECT_EQ(matchOf(tree.path(entry + "x")), nullptr) << "nearly the name";
    }
    if (name.siblings.empty())
        return;
    TempTree tree({folder(entry)});
    for (const std::string& sibling : name.siblings)
        tree.add({file(instance(sibling) + "~")});
    EXPECT_EQ(matchOf(tree.path(entry)), nullptr) << entry << " beside nothing that tells";
}

/// A row without its texts.
std::string described(const Rule& rule) {
    constexpr std::array containers = {"container", "personal container", "system container"};
    constexpr std::array resolvers = {"none", "simulator", "derivedData", "avd", "app", "deviceSupport"};
    std::string text;
    if (const auto* name = nameMatch(rule)) {
        text = "named " + name->pattern;
        for (const std::string& sibling : name->siblings)
            text += (sibling == name->siblings.front() ? " beside " : " ") + sibling;
    } else {
        text = pathMatch(rule)->pattern;
    }
    text += ": ";
    if (const auto* container = std::get_if<Rule::Container>(&rule.kind))
        text += containers[static_cast<std::size_t>(container->context)];
    else
        text += info(rule.level).rawValue;
    if (rule.resolver != Rule::Resolver::none)
        text += std::string(", resolver ") + resolvers[static_cast<std::size_t>(rule.resolver)];
    if (!rule.actionable)
        text += ", never cleaned";
    if (!rule.inPersonal)
        text += ", not among personal files";
    if (rule.group)
        text += ", group " + *rule.group;
    for (const std::string& app : rule.quitApps)
        text += (app == rule.quitApps.front() ? ", quit " : " and ") + app;
    return text;
}

TEST(RuleBook, EveryRowIsWellFormedMatchesWhatItNamesAndMissesWhatIsNearIt) {
    for (const Rule& rule : book()) {
        SCOPED_TRACE(described(rule));
        EXPECT_EQ(std::ranges::count(book(), rule.match, &Rule::match), 1) << "twice";
        expectWellFormed(rule);
        if (isContainer(rule))
            expectBareContainer(rule);
        else
            expectUnit(rule);
        if (const auto* path = pathMatch(rule))
            expectPathToMatch(rule, path->pattern);
        else
            expectNameToMatch(rule, *nameMatch(rule));
    }
}

TEST(RuleBook, HasTheseRowsInThisOrder) {
    constexpr std::string_view expected = R"(
$T: container
$T/instruments*.ktrace: safe, group instruments, quit Instruments
$T/xrgpu_*: safe, group xrgpu, quit Instruments and Xcode
$T/*: safe
$C: container
$C/com.apple.dt.InstrumentsCLI: safe, quit Instruments
$C/*: regenerable
~: container
~/.Trash: safe
~/Library: container
~/Library/Developer: container
~/Library/Developer/Xcode: container
~/Library/Developer/Xcode/DerivedData: container
~/Library/Developer/Xcode/DerivedData/ModuleCache.noindex: regenerable, quit Xcode
~/Library/Developer/Xcode/DerivedData/*: regenerable, resolver derivedData, quit Xcode
~/Library/Developer/Xcode/*DeviceSupport: container
~/Library/Developer/Xcode/*DeviceSupport/*: regenerable, resolver deviceSupport
~/Library/Developer/Xcode/Archives: caution
~/Library/Developer/CoreSimulator: container
~/Library/Developer/CoreSimulator/Devices: container
~/Library/Developer/CoreSimulator/Devices/*: caution, resolver simulator
~/Library/Developer/CoreSimulator/Caches: regenerable, quit Simulator
~/Library/Android: container
~/Library/Android/sdk: container
~/Library/Android/sdk/system-images: caution
~/Library/Android/sdk/ndk: container
~/Library/Android/sdk/ndk/*: caution
~/.android: container
~/.android/avd: container
~/.android/avd/*.avd: caution, resolver avd
~/.android/cache: regenerable
~/.npm: regenerable
~/Library/pnpm: container
~/Library/pnpm/store: regenerable
~/.gradle: container
~/.gradle/caches: regenerable, quit Android Studio
~/.gradle/wrapper: regenerable
~/.cache: container
~/.cache/*: regenerable
~/.cocoapods: regenerable
~/.m2: regenerable
~/.cargo: container
~/.cargo/registry: regenerable
~/.cargo/git: regenerable
~/.rustup: caution
~/go/pkg/mod: regenerable
~/.bun: container
~/.bun/install/cache: regenerable
~/.expo: regenerable
~/.nuget/packages: regenerable
~/.pub-cache: regenerable
~/.vscode: caution
~/.cursor: caution
~/.ollama/models: caution
~/.docker: caution
~/Library/Caches: container
~/Library/Caches/*: regenerable
~/Library/Logs: safe
~/Library/Application Support: container
~/Library/Application Support/Claude: container
~/Library/Application Support/Claude/vm_bundles: regenerable, quit Claude
~/Library/Application Support/MobileSync/Backup: caution
~/Library/Application Support/Google: container
~/Library/Application Support/Google/Chrome: container
~/Library/Application Support/Google/Chrome/OptGuideOnDeviceModel: regenerable, quit Google Chrome
~/Library/Application Support/Google/Chrome/*: keep, never cleaned
~/Library/Containers: container
~/Library/Containers/com.docker.docker: caution, never cleaned, quit Docker
~/Library/Group Containers: container
~/Library/Group Containers/group.net.whatsapp.WhatsApp.shared: caution, never cleaned
~/Library/Mail: keep, never cleaned
~/Library/Messages: keep, never cleaned
~/Library/Photos: keep, never cleaned
~/Library/Keychains: keep, never cleaned
~/Pictures/*.photoslibrary: keep, never cleaned
~/[!.]*: personal container
/Applications: container
/Applications/*.app: caution, resolver app
/Library: system container
/Library/Developer/CommandLineTools: caution, never cleaned
/private/var/vm: keep, never cleaned
/opt/homebrew: caution, never cleaned
/Users/Shared: personal container
named node_modules beside package.json: regenerable
named Pods beside Podfile: regenerable
named .build beside Package.swift: regenerable
named build beside build.gradle build.gradle.kts CMakeLists.txt package.json pubspec.yaml Makefile *.xcodeproj *.xcworkspace project.yml Package.swift Podfile: regenerable
named .gradle beside settings.gradle settings.gradle.kts gradlew: regenerable
named .next beside package.json: regenerable
named .nuxt beside package.json: regenerable
named .turbo beside package.json: regenerable
named .parcel-cache beside package.json: regenerable
named .expo beside package.json app.json: regenerable
named dist beside package.json: regenerable
named target beside Cargo.toml: regenerable
named .venv: regenerable
named venv beside requirements.txt pyproject.toml setup.py: regenerable
named *.trace: regenerable
named DerivedData: regenerable
named Cache: regenerable, not among personal files
named Caches: regenerable, not among personal files
named CachedData: regenerable, not among personal files
named Code Cache: regenerable, not among personal files
named GPUCache: regenerable, not among personal files
named ShaderCache: regenerable, not among personal files
named CachedExtensionVSIXs: regenerable, not among personal files
named Service Worker: regenerable, not among personal files
named logs: safe, not among personal files
named Crashpad: safe, not among personal files
)";
    std::string rows = "\n";
    for (const Rule& rule : book())
        rows += described(rule) + "\n";
    EXPECT_EQ(rows, expected);
}

TEST(RuleBook, IsBuiltOnceFromWhateverThread) {
    std::vector<const std::vector<Rule>*> seen(8);
    {
        std::vector<std::jthread> threads;
        for (auto& answer : seen)
            threads.emplace_back([&answer] { answer = &RuleBook::all(); });
    }
    EXPECT_EQ(std::set(seen.begin(), seen.end()).size(), 1U);
}

}  // namespace
}  // namespace ulvak
