#include "classify/rule_book.h"

#include <gtest/gtest.h>
#include <unicode/normalizer2.h>

#include <algorithm>
#include <set>
#include <string>
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
    return RuleBook::all();
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

/// Text that matches a pattern of this table: an "x" wherever anything may stand.
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

/// A path that begins where nothing is, a level too deep, a level too high, and a name too long.
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

/// Each sibling in turn lies beside the folder; then none, nearly one, and none but a file of the name.
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

TEST(RuleBook, EveryRowIsWellFormedMatchesWhatItNamesAndMissesWhatIsNearIt) {
    ASSERT_EQ(book().size(), 109U);
    for (std::size_t i = 0; i < book().size(); ++i) {
        SCOPED_TRACE("row " + std::to_string(i + 1));
        const Rule& rule = book()[i];
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

/// The numbers of the rows for which something holds, counted from 1.
std::set<std::size_t> rows(const std::function<bool(const Rule&)>& holds) {
    std::set<std::size_t> result;
    for (std::size_t i = 0; i < book().size(); ++i) {
        if (holds(book()[i]))
            result.insert(i + 1);
    }
    return result;
}

std::set<std::size_t> range(std::size_t first, std::size_t last) {
    std::set<std::size_t> result;
    for (std::size_t i = first; i <= last; ++i)
        result.insert(i);
    return result;
}

using Numbers = std::set<std::size_t>;

TEST(RuleBook, TheseRowsAreContainers) {
    EXPECT_EQ(rows(isContainer), (Numbers{1,  5,  8,  10, 11, 12, 13, 16, 19, 20, 23, 24, 26, 28, 29, 33,
                                          35, 38, 42, 47, 56, 59, 60, 63, 64, 67, 69, 76, 77, 79, 83}));
    const auto leadsInto = [](ScanContext context) {
        return [context](const Rule& rule) { return rule.kind == Rule::Kind(Rule::Container{context}); };
    };
    EXPECT_EQ(rows(leadsInto(ScanContext::personal)), (Numbers{76, 83}));
    EXPECT_EQ(rows(leadsInto(ScanContext::system)), (Numbers{79}));
}

TEST(RuleBook, TheLastRowsAreTheNameRules) {
    EXPECT_EQ(rows([](const Rule& rule) { return nameMatch(rule) != nullptr; }), range(84, 109));
    EXPECT_EQ(rows([](const Rule& rule) {
                  return nameMatch(rule) != nullptr && nameMatch(rule)->siblings.empty();
              }),
              (Numbers{96, 98, 99, 100, 101, 102, 103, 104, 105, 106, 107, 108, 109}));
}

TEST(RuleBook, NamesThatSayLittleDoNotApplyAmongPersonalFiles) {
    EXPECT_EQ(rows([](const Rule& rule) { return !rule.inPersonal; }), range(100, 109));
}

TEST(RuleBook, TheseRowsAreNeverCleanedByTheProgram) {
    EXPECT_EQ(rows([](const Rule& rule) { return !rule.actionable; }),
              (Numbers{66, 68, 70, 71, 72, 73, 74, 75, 80, 81, 82}));
}

TEST(RuleBook, TheseRowsHaveALevelThatCostsSomething) {
    EXPECT_EQ(rows([](const Rule& rule) { return rule.level == SafetyLevel::keep; }),
              (Numbers{66, 71, 72, 73, 74, 75, 81}));
    EXPECT_EQ(rows([](const Rule& rule) { return rule.level == SafetyLevel::caution; }),
              (Numbers{18, 21, 25, 27, 30, 45, 52, 53, 54, 55, 62, 68, 70, 78, 80, 82}));
    EXPECT_EQ(rows([](const Rule& rule) { return rule.level == SafetyLevel::safe; }),
              (Numbers{2, 3, 4, 6, 9, 58, 108, 109}));
}

TEST(RuleBook, TheseRowsHaveAResolver) {
    const auto resolvedBy = [](Rule::Resolver resolver) {
        return rows([resolver](const Rule& rule) { return rule.resolver == resolver; });
    };
    EXPECT_EQ(resolvedBy(Rule::Resolver::derivedData), Numbers{15});
    EXPECT_EQ(resolvedBy(Rule::Resolver::deviceSupport), Numbers{17});
    EXPECT_EQ(resolvedBy(Rule::Resolver::simulator), Numbers{21});
    EXPECT_EQ(resolvedBy(Rule::Resolver::avd), Numbers{30});
    EXPECT_EQ(resolvedBy(Rule::Resolver::app), Numbers{78});
}

TEST(RuleBook, OnlyTracesAreGrouped) {
    EXPECT_EQ(rows([](const Rule& rule) { return rule.group.has_value(); }), (Numbers{2, 3}));
    EXPECT_EQ(book()[1].group, "instruments");
    EXPECT_EQ(book()[2].group, "xrgpu");
}

TEST(RuleBook, TheseApplicationsAreQuitFirst) {
    using Apps = std::vector<std::string>;
    EXPECT_EQ(rows([](const Rule& rule) { return !rule.quitApps.empty(); }),
              (Numbers{2, 3, 6, 14, 15, 22, 36, 61, 65, 68}));
    EXPECT_EQ(book()[1].quitApps, Apps{"Instruments"});
    EXPECT_EQ(book()[2].quitApps, (Apps{"Instruments", "Xcode"}));
    EXPECT_EQ(book()[13].quitApps, Apps{"Xcode"});
    EXPECT_EQ(book()[21].quitApps, Apps{"Simulator"});
    EXPECT_EQ(book()[35].quitApps, Apps{"Android Studio"});
    EXPECT_EQ(book()[64].quitApps, Apps{"Google Chrome"});
    EXPECT_EQ(book()[67].quitApps, Apps{"Docker"});
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
