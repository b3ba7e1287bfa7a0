#include <gtest/gtest.h>
#include <unicode/normalizer2.h>

#include <algorithm>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "../node.h"
#include "classify/rule_book.h"
#include "classify/rule_matcher.h"
#include "core/text.h"

namespace ulvak {
namespace {

using test::ayse;

/// This system's rules.
const std::vector<Rule>& rules() {
    static const std::vector<Rule> own = [] {
        std::vector<Rule> ranked;
        std::ranges::copy_if(RuleBook::all(), std::back_inserter(ranked), &Rule::isRanked);
        return ranked;
    }();
    return own;
}

std::string patternOf(const Rule& rule) {
    const auto* path = std::get_if<Rule::Path>(&rule.match);
    return path != nullptr ? path->pattern : std::get<Rule::Name>(rule.match).pattern;
}

const Rule* matchOf(std::string_view path) {
    static const RuleMatcher matcher(RuleBook::all(), ayse);
    return matcher.match(path, true, ScanContext::normal);
}

std::string expanded(std::string pattern) {
    for (const auto& [token, folder] :
         {std::pair("$cache", "~/.cache"), std::pair("$config", "~/.config"),
          std::pair("$data", "~/.local/share"), std::pair("$state", "~/.local/state")}) {
        if (pattern.starts_with(token))
            pattern.replace(0, std::string_view(token).size(), folder);
    }
    return Paths::expand(pattern, ayse);
}

/// A path that the pattern matches.
std::string instance(std::string_view pattern) {
    std::string path;
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        if (pattern[i] == '[') {
            path += pattern[i + 1] == '!' ? 'q' : pattern[i + 1];
            i = pattern.find(']', i);
        } else if (pattern[i] == '*') {
            path += "qqq";
        } else {
            path += pattern[i] == '?' ? 'q' : pattern[i];
        }
    }
    return path;
}

bool isComposed(const std::string& text) {
    UErrorCode status = U_ZERO_ERROR;
    return icu::Normalizer2::getNFCInstance(status)->isNormalizedUTF8(text, status) && U_SUCCESS(status);
}

void expectText(const std::string& text) {
    EXPECT_TRUE(isComposed(text)) << text;
    EXPECT_EQ(text, printable(text));
    EXPECT_FALSE(text.starts_with(' ') || text.ends_with(' ')) << text;
    EXPECT_EQ(text.find("  "), std::string::npos) << text;
    for (const std::string_view foreign : {"Finder", "macOS", "Bu Mac", "Mac'"})
        EXPECT_EQ(text.find(foreign), std::string::npos) << text;
}

TEST(LinuxRules, HaveALevelAndTextsForPeople) {
    for (const Rule& rule : rules()) {
        SCOPED_TRACE(patternOf(rule));
        EXPECT_FALSE(rule.title.empty());
        expectText(rule.title);
        expectText(rule.explanation);
        EXPECT_NE(rule.group, "");
        EXPECT_EQ(std::ranges::count(rule.quitApps, ""), 0);
        EXPECT_EQ(std::ranges::count(rule.processes, ""), 0);
        const auto* container = std::get_if<Rule::Container>(&rule.kind);
        if (container != nullptr && container->context != ScanContext::application)
            continue;
        EXPECT_NE(rule.level, SafetyLevel::unknown);
        EXPECT_TRUE(rule.explanation.ends_with('.')) << rule.explanation;
        if (container != nullptr) {
            EXPECT_TRUE(rule.level == SafetyLevel::keep || rule.level == SafetyLevel::caution);
        }
    }
}

TEST(LinuxRules, AreWrittenOnce) {
    std::map<std::string, std::vector<const Rule*>> byPattern;
    for (const Rule& rule : rules()) {
        auto& same = byPattern[patternOf(rule)];
        for (const Rule* other : same)
            EXPECT_TRUE(other->match != rule.match || other->inPersonal != rule.inPersonal)
                << patternOf(rule);
        same.push_back(&rule);
    }
}

/// Known on every system, but with another explanation here.
bool isToldAnew(const Rule& rule) {
    const std::string pattern = patternOf(rule);
    return pattern == "$cache" || pattern == "$cache/*" || pattern == "$T/*";
}

TEST(LinuxRules, DoNotRepeatARuleForAllSystems) {
    for (const Rule& rule : rules()) {
        for (const Rule& other : RuleBook::reference()) {
            if (rule.match == other.match) {
                EXPECT_TRUE(isToldAnew(rule)) << patternOf(rule);
                EXPECT_EQ(rule.level, other.level) << patternOf(rule);
                EXPECT_EQ(rule.title, other.title) << patternOf(rule);
            }
        }
        if (!std::holds_alternative<Rule::Path>(rule.match) || isToldAnew(rule))
            continue;
        for (const Rule& other : RuleBook::reference()) {
            if (std::holds_alternative<Rule::Path>(other.match)) {
                EXPECT_NE(expanded(patternOf(rule)), expanded(patternOf(other)));
            }
        }
    }
}

TEST(LinuxRules, EachPathMatchesWhatItNamesAndNothingBesideIt) {
    for (const Rule& rule : rules()) {
        if (!std::holds_alternative<Rule::Path>(rule.match))
            continue;
        const std::string pattern = patternOf(rule);
        if (isToldAnew(rule))
            continue;
        SCOPED_TRACE(pattern);
        const std::string path = instance(expanded(pattern));
        const auto isSame = [&](const Rule* found) {
            return found != nullptr && found->isRanked && patternOf(*found) == pattern;
        };
        const Rule* found = matchOf(path);
        EXPECT_TRUE(isSame(found)) << path << " is for "
                                   << (found != nullptr ? patternOf(*found) : "nothing");
        EXPECT_FALSE(isSame(matchOf(path + "/below")));
        EXPECT_FALSE(isSame(matchOf("/elsewhere" + path)));
        EXPECT_FALSE(isSame(matchOf(Paths::parent(path))));
        if (!pattern.ends_with('*')) {
            EXPECT_FALSE(isSame(matchOf(path + "x")));
        }
    }
}

}  // namespace
}  // namespace ulvak
