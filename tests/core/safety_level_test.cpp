#include "core/safety_level.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include "core/words.h"

namespace ulvak {
namespace {

using testing::ElementsAre;

TEST(SafetyLevel, IsDeclaredWithKeepBeforeUnknown) {
    EXPECT_THAT(allSafetyLevels, ElementsAre(SafetyLevel::safe, SafetyLevel::regenerable,
                                             SafetyLevel::caution, SafetyLevel::keep, SafetyLevel::unknown));
}

TEST(SafetyLevel, ShowsItselfWithTheseTextsAndSymbols) {
    const SafetyLevelInfo expected[] = {
        {SafetyLevel::safe, "safe", 0, "Güvenle silinebilir", "checkmark.shield.fill", "green",
         "Geçici dosyalar ve kayıtlar. Silinince hiçbir şey kaybolmaz."},
        {SafetyLevel::regenerable, "regenerable", 1, "Yeniden oluşur",
         "arrow.triangle.2.circlepath.circle.fill", "teal",
         "Önbellek ve derleme çıktıları. Gerekince tekrar indirilir veya oluşturulur."},
        {SafetyLevel::caution, "caution", 2, "Dikkat", "exclamationmark.triangle.fill", "orange",
         "Silinebilir ama bir bedeli var: ayarlar, emülatörler ya da uzun indirmeler gidebilir."},
        {SafetyLevel::keep, "keep", 4, "Dokunma", "hand.raised.fill", "red",
         "Kişisel dosyaların ya da sistemin ihtiyaç duyduğu veriler."},
        {SafetyLevel::unknown, "unknown", 3, "Bilinmiyor", "questionmark.circle.fill", "gray",
         words().unknownSummary},
    };
    ASSERT_EQ(std::size(expected), allSafetyLevels.size());
    for (const SafetyLevelInfo& row : expected) {
        const SafetyLevelInfo& shown = info(row.level);
        EXPECT_EQ(shown.level, row.level);
        EXPECT_EQ(shown.rawValue, row.rawValue);
        EXPECT_EQ(shown.order, row.order) << row.rawValue;
        EXPECT_EQ(shown.title, row.title);
        EXPECT_EQ(shown.symbol, row.symbol);
        EXPECT_EQ(shown.color, row.color) << row.rawValue;
        EXPECT_EQ(shown.summary, row.summary);
    }
}

TEST(SafetyLevel, EveryLevelHasItsOwnRank) {
    std::set<int> orders;
    for (const SafetyLevel level : allSafetyLevels)
        orders.insert(info(level).order);
    EXPECT_EQ(orders.size(), allSafetyLevels.size());
}

TEST(SafetyLevel, SortingTheDeclarationOrderPutsUnknownBeforeKeep) {
    EXPECT_THAT(displayedSafetyLevels(),
                ElementsAre(SafetyLevel::safe, SafetyLevel::regenerable, SafetyLevel::caution,
                            SafetyLevel::unknown, SafetyLevel::keep));
}

TEST(SafetyLevel, SortsEveryPermutationToTheSameOrder) {
    std::vector<SafetyLevel> levels(allSafetyLevels.begin(), allSafetyLevels.end());
    const auto displayed = displayedSafetyLevels();
    do {
        std::vector<SafetyLevel> sorted = levels;
        sortForDisplay(sorted);
        EXPECT_TRUE(std::ranges::equal(sorted, displayed));
    } while (std::ranges::next_permutation(levels).found);
}

TEST(SafetyLevel, SortsRepeatedLevelsAndEmptyLists) {
    std::vector levels = {SafetyLevel::keep, SafetyLevel::unknown, SafetyLevel::keep, SafetyLevel::safe};
    sortForDisplay(levels);
    EXPECT_THAT(levels,
                ElementsAre(SafetyLevel::safe, SafetyLevel::unknown, SafetyLevel::keep, SafetyLevel::keep));
    sortForDisplay({});
}

TEST(SafetyLevel, IsFoundByItsRawValue) {
    for (const SafetyLevel level : allSafetyLevels)
        EXPECT_EQ(safetyLevel(info(level).rawValue), level);
}

TEST(SafetyLevel, IsNotFoundByAnyOtherText) {
    for (const std::string text :
         {"", "Safe", "SAFE", "safe ", " safe", "saf", "safes", "bilinmiyor", "0", "Dikkat"})
        EXPECT_EQ(safetyLevel(text), std::nullopt) << text;
    EXPECT_EQ(safetyLevel(std::string_view("safe\0", 5)), std::nullopt);
}

}  // namespace
}  // namespace ulvak
