#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <random>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "clean/guard_rails.h"
#include "clean/plain_rule.h"
#include "support/turkish_locale.h"

namespace ulvak {
namespace {

using namespace test;

const std::array<UserFolders, 3> users = {{
    {.home = "/Users/ayşe", .temp = "/var/folders/ab/xyz/T", .cache = "/var/folders/ab/xyz/C"},
    {.home = "/home/ali", .temp = "/tmp", .cache = "/C"},
    {.home = "/home/ali", .temp = "/home/ali/tmp", .cache = "/home/ali/C"},
}};

TEST(GuardRailsTables, HoldWhatWasAgreedOnInThatOrder) {
    for (const UserFolders& user : users) {
        const GuardRails rails(user);
        const std::vector<std::string> expected = filledIn(protectedTable, user);
        EXPECT_EQ(std::set<std::string>(rails.protectedPaths().begin(), rails.protectedPaths().end()),
                  std::set<std::string>(expected.begin(), expected.end()));
        EXPECT_EQ(rails.protectedPaths().size(), protectedTable.size());
        EXPECT_TRUE(std::ranges::equal(rails.forbiddenPrefixes(), filledIn(forbiddenTable, user)));
        EXPECT_TRUE(std::ranges::equal(rails.allowedPrefixes(), filledIn(allowedTable, user)));
    }
}

/// Makes paths close to the tables' entries.
class PathMaker {
public:
    PathMaker(const UserFolders& user, unsigned seed) : random_(seed) {
        for (const auto& rows :
             {filledIn(protectedTable, user), filledIn(forbiddenTable, user), filledIn(allowedTable, user)})
            seeds_.insert(seeds_.end(), rows.begin(), rows.end());
        for (const std::string& path : {user.temp, user.cache})
            seeds_.push_back("/private" + path);
    }

    std::string next() {
        std::string path = below(10) == 0 ? "/" : seeds_[below(seeds_.size())];
        if (below(4) == 0)
            path.resize(1 + below(path.size()));  // anywhere, even inside a name or a character
        for (std::size_t pieces = below(6); pieces > 0; --pieces)
            path += piece();
        for (std::size_t slashes = below(8) == 0 ? 1 + below(3) : 0; slashes > 0; --slashes)
            path.insert(path.begin() + static_cast<std::ptrdiff_t>(slashAt(path)), '/');
        if (below(8) == 0)
            changeCase(path);
        return path;
    }

private:
    std::size_t below(std::size_t bound) { return random_() % bound; }

    std::string piece() {
        static const std::array<std::string_view, 15> pieces = {
            "/..",      "/.", "/",       "//",   "/../..",     "/...",     "/..x",  "/x.",
            "/Library", "/a", "/System", "/usr", "/Keychains", "/private", "/\xff",
        };
        if (below(3) != 0)
            return std::string(pieces[below(pieces.size())]);
        // The names of another row, after enough ".." to reach the root, or too few.
        std::string path;
        for (std::size_t up = below(6); up > 0; --up)
            path += "/..";
        return path + seeds_[below(seeds_.size())];
    }

    std::size_t slashAt(const std::string& path) {
        std::vector<std::size_t> slashes;
        for (std::size_t at = 0; at < path.size(); ++at) {
            if (path[at] == '/')
                slashes.push_back(at);
        }
        return slashes[below(slashes.size())];
    }

    void changeCase(std::string& path) {
        char& c = path[below(path.size())];
        if ((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'))
            c = static_cast<char>(c ^ 0x20);
    }

    std::mt19937 random_;
    std::vector<std::string> seeds_;
};

/// What was wrong with the answer for a path; empty if nothing.
std::string objection(const GuardRails& rails, const PlainRule& rule, const std::string& path) {
    const bool allowed = rails.isAllowed(path);
    if (allowed != rule.allows(path))
        return allowed ? "is allowed" : "is refused";
    const auto place = rails.place(path);
    if (place.has_value() != allowed)
        return "has a place that the judgement does not fit";
    if (!place)
        return "";
    if (place->path() != PlainRule::tidy(path))
        return "becomes " + place->path();
    return rule.mustStay(place->path()) ? "must stay" : "";
}

void judgeAMillionPaths() {
    constexpr unsigned seed = 20240611;
    constexpr int paths = 1'000'000;
    int allowed = 0;
    for (const UserFolders& user : users) {
        const GuardRails rails(user);
        const PlainRule rule(user);
        PathMaker maker(user, seed);
        for (int count = 0; count < paths / static_cast<int>(users.size()) + 1; ++count) {
            const std::string path = maker.next();
            const std::string wrong = objection(rails, rule, path);
            ASSERT_EQ(wrong, "") << path << " with the seed " << seed << ", path " << count << ", home "
                                 << user.home << ", temp " << user.temp;
            allowed += rails.isAllowed(path) ? 1 : 0;
        }
    }
    // There were many of both kinds.
    EXPECT_GT(allowed, paths / 10);
    EXPECT_LT(allowed, paths * 9 / 10);
}

TEST(GuardRailsProperty, AgreesWithThePlainRuleOnAMillionPaths) {
    judgeAMillionPaths();
}

TEST(GuardRailsProperty, JudgesNoOtherwiseInTurkish) {
    const test::TurkishLocale turkish;
    if (const auto reason = turkish.whyNot())
        GTEST_SKIP() << *reason;
    judgeAMillionPaths();
    const GuardRails rails(users[0]);
    EXPECT_FALSE(rails.isAllowed("/Users/ayşe/Library"));
    EXPECT_TRUE(rails.isAllowed("/Users/ayşe/LIBRARY"));
    EXPECT_TRUE(rails.isAllowed("/Users/ayşe/lıbrary"));
}

}  // namespace
}  // namespace ulvak
