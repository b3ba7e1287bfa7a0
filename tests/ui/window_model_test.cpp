#include "ui/window_model.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/words.h"
#include "ui/staged_window.h"
#include "ui/texts.h"

namespace ulvak {
namespace {

using test::finding;
using test::guessed;
using test::waitUntil;

constexpr std::int64_t low = 20'000'000'000;

class WindowModelTest : public test::ModelTest {
protected:
    static QVariant value(const QAbstractItemModel* list, int index, const char* name) {
        return list->data(list->index(index, 0), list->roleNames().key(name));
    }
    static QString field(const QAbstractItemModel* list, int index, const char* name) {
        return value(list, index, name).toString();
    }
    static QStringList column(const QAbstractItemModel* list, const char* name) {
        QStringList values;
        for (int index = 0; index < list->rowCount(); ++index)
            values.append(field(list, index, name));
        return values;
    }
};

TEST_F(WindowModelTest, BeginsWithTheSummaryAndNothingSelected) {
    start();
    EXPECT_EQ(model->sidebar(), SidebarItem{});
    EXPECT_TRUE(model->isOverview());
    EXPECT_TRUE(model->list()->selection()->ids().empty());
    EXPECT_EQ(model->scan()->phase(), ScanModel::Phase::Idle);
    EXPECT_EQ(model->scan()->buttonText(), QStringLiteral("Tara"));
    EXPECT_EQ(stage.count("scan"), 0);
}

TEST_F(WindowModelTest, LaunchOpensALevelAndScans) {
    start();
    model->launch({QStringLiteral("--level=keep"), QStringLiteral("--autoscan")});
    EXPECT_EQ(model->sidebar(), SidebarItem{SafetyLevel::keep});
    EXPECT_EQ(model->list()->title(), QStringLiteral("Dokunma"));
    EXPECT_EQ(model->scan()->phase(), ScanModel::Phase::Scanning);
    EXPECT_TRUE(waitUntil([&] { return model->scan()->phase() == ScanModel::Phase::Done; }));
}

TEST_F(WindowModelTest, LaunchKnowsRawValuesToTheLetter) {
    start();
    model->launch({QStringLiteral("--level=Keep")});
    EXPECT_EQ(model->sidebar(), SidebarItem{});
    model->launch({QStringLiteral("--level=")});
    EXPECT_EQ(model->sidebar(), SidebarItem{});
}

TEST_F(WindowModelTest, LaunchLooksAtTheFirstLevelOnly) {
    start();
    model->launch({QStringLiteral("--level=x"), QStringLiteral("--level=safe")});
    EXPECT_EQ(model->sidebar(), SidebarItem{});
}

TEST_F(WindowModelTest, SelectsTheFirstAfterEachScanOfALevel) {
    stage.result = {finding("/v/b", SafetyLevel::keep, 3), finding("/v/a", SafetyLevel::keep, 2)};
    start();
    model->launch(
        {QStringLiteral("--level=keep"), QStringLiteral("--autoscan"), QStringLiteral("--select-first")});
    ASSERT_TRUE(waitUntil([&] { return model->scan()->phase() == ScanModel::Phase::Done; }));
    EXPECT_THAT(model->list()->selection()->ids(), testing::ElementsAre("/v/b"));
    model->list()->selection()->set({"/v/a"});
    scanAll();
    EXPECT_THAT(model->list()->selection()->ids(), testing::ElementsAre("/v/b"));
}

TEST_F(WindowModelTest, SelectsNothingOnTheSummaryOrInAnEmptyList) {
    stage.result = {finding("/v/b", SafetyLevel::keep)};
    start();
    model->launch({QStringLiteral("--autoscan"), QStringLiteral("--select-first")});
    ASSERT_TRUE(waitUntil([&] { return model->scan()->phase() == ScanModel::Phase::Done; }));
    EXPECT_TRUE(model->list()->selection()->ids().empty());
    model->setSidebar(SidebarItem{SafetyLevel::safe});
    scanAll();
    EXPECT_TRUE(model->list()->selection()->ids().empty());
}

TEST_F(WindowModelTest, TheDiskIsLowBelowTwentyGigabytes) {
    for (const std::int64_t available : {low, low - 1}) {
        stage.disk = DiskInfo{.total = 100'000'000'000, .available = available};
        start();
        EXPECT_EQ(model->disk()->isLow(), available < low) << available;
    }
    EXPECT_EQ(model->disk()->text(), QStringLiteral("20 GB boş · 100 GB"));
    EXPECT_EQ(model->disk()->usedText(), QStringLiteral("80 GB kullanılıyor"));
    EXPECT_EQ(model->disk()->freeText(), QStringLiteral("20 GB boş"));
    EXPECT_DOUBLE_EQ(model->disk()->usedFraction(), 0.80000000001);
}

TEST_F(WindowModelTest, WithoutADiskThereIsNothingToSayOfIt) {
    stage.disk.reset();
    start();
    EXPECT_FALSE(model->disk()->isKnown());
    EXPECT_FALSE(model->disk()->isLow());
    EXPECT_TRUE(model->disk()->segments()->records().empty());
    EXPECT_TRUE(model->disk()->text().isEmpty());
}

TEST_F(WindowModelTest, SegmentsFollowTheDisplayOrderAndEndWithTheRest) {
    stage.disk = DiskInfo{.total = 1000, .available = 400};
    stage.result = {finding("/k", SafetyLevel::keep, 100), finding("/s", SafetyLevel::safe, 50)};
    start();
    scanAll();
    const auto* segments = model->disk()->segments();
    EXPECT_EQ(column(segments, "levelName"),
              QStringList({QStringLiteral("safe"), QStringLiteral("regenerable"), QStringLiteral("caution"),
                           QStringLiteral("unknown"), QStringLiteral("keep"), QString()}));
    EXPECT_EQ(column(segments, "levelColor"),
              QStringList({QStringLiteral("green"), QStringLiteral("teal"), QStringLiteral("orange"),
                           QStringLiteral("gray"), QStringLiteral("red"), QString()}));
    EXPECT_EQ(column(segments, "fraction"),
              QStringList({QStringLiteral("0.05"), QStringLiteral("0"), QStringLiteral("0"),
                           QStringLiteral("0"), QStringLiteral("0.1"), QStringLiteral("0.45")}));
}

TEST_F(WindowModelTest, SegmentsBeyondWhatIsUsedLeaveNoRest) {
    stage.disk = DiskInfo{.total = 1000, .available = 900};
    stage.result = {finding("/k", SafetyLevel::keep, 101)};
    start();
    scanAll();
    EXPECT_EQ(field(model->disk()->segments(), 5, "fraction"), QStringLiteral("0"));
}

TEST_F(WindowModelTest, LevelsComeInDisplayOrderAndChoicesInThatOfTheirDeclaration) {
    stage.result = {finding("/s1", SafetyLevel::safe, 2'000'000'000),
                    finding("/s2", SafetyLevel::safe, 500'000'000)};
    start();
    scanAll();
    const auto* levels = model->summary()->levels();
    EXPECT_EQ(
        column(levels, "title"),
        QStringList({QStringLiteral("Güvenle silinebilir"), QStringLiteral("Yeniden oluşur"),
                     QStringLiteral("Dikkat"), QStringLiteral("Bilinmiyor"), QStringLiteral("Dokunma")}));
    EXPECT_EQ(field(levels, 0, "sizeText"), QStringLiteral("2,5 GB"));
    EXPECT_EQ(field(levels, 0, "countText"),
              QStringLiteral("2 öğe · Geçici dosyalar ve kayıtlar. Silinince hiçbir şey kaybolmaz."));
    EXPECT_EQ(column(model->actions()->levels(), "name"),
              QStringList({QStringLiteral("safe"), QStringLiteral("regenerable"), QStringLiteral("caution"),
                           QStringLiteral("keep"), QStringLiteral("unknown")}));
}

TEST_F(WindowModelTest, ShowsTheEightLargestAndTheSumOfWhatIsEasy) {
    for (int number = 0; number < 10; ++number)
        stage.result.push_back(finding("/v/" + std::to_string(number),
                                       number % 2 == 0 ? SafetyLevel::safe : SafetyLevel::regenerable,
                                       1'000'000'000));
    start();
    scanAll();
    EXPECT_EQ(model->summary()->largest()->count(), 8);
    EXPECT_EQ(field(model->summary()->largest(), 7, "title"), QStringLiteral("7"));
    EXPECT_EQ(field(model->summary()->largest(), 7, "levelColor"), QStringLiteral("teal"));
    EXPECT_EQ(field(model->summary()->largest(), 0, "symbol"), QStringLiteral("checkmark.shield.fill"));
    EXPECT_EQ(model->summary()->reclaimableText(), QStringLiteral("10 GB"));
}

TEST_F(WindowModelTest, SecondsAreCutNotRounded) {
    EXPECT_EQ(Texts::wholeSeconds(12.5), QStringLiteral("12"));
    EXPECT_EQ(Texts::wholeSeconds(12.999), QStringLiteral("12"));
    EXPECT_EQ(Texts::wholeSeconds(0.9), QStringLiteral("0"));
    EXPECT_EQ(Texts::wholeSeconds(4000), QStringLiteral("4000"));
}

TEST_F(WindowModelTest, TheScanLineHasGroupedFiles) {
    stage.files = 1'234'567;
    stage.bytes = 5'000'000'000;
    start();
    EXPECT_TRUE(model->scan()->resultText().isEmpty());
    scanAll();
    EXPECT_EQ(model->scan()->resultText(), QStringLiteral("1.234.567 dosya, 5 GB · %1 sn")
                                               .arg(Texts::wholeSeconds(app->scanDuration().value())));
}

TEST_F(WindowModelTest, BannersBeginWithOne) {
    stage.result = {finding("/v/one", SafetyLevel::safe, 1)};
    stage.denied = 1;
    start();
    scanAll();
    EXPECT_TRUE(model->trash()->text().isEmpty());
    EXPECT_TRUE(model->summary()->freedText().isEmpty());
    EXPECT_TRUE(model->analysis()->uncertainText().isEmpty());
    EXPECT_EQ(model->summary()->deniedText(), QStringLiteral("1") + Texts::fixed(words().denied));
    model->actions()->moveToTrash(QStringLiteral("/v/one"));
    ASSERT_TRUE(waitUntil([&] { return !model->trash()->text().isEmpty(); }));
    EXPECT_EQ(model->trash()->text(),
              QStringLiteral("Çöp kutusunda 1 bayt bekliyor. Boşaltınca yer açılacak."));
    model->trash()->empty();
    EXPECT_TRUE(model->trash()->isEmptying());
    model->trash()->empty();
    ASSERT_TRUE(waitUntil([&] { return !model->trash()->isEmptying(); }));
    EXPECT_EQ(stage.count("empty"), 1);
    EXPECT_TRUE(model->trash()->text().isEmpty());
    EXPECT_EQ(model->summary()->freedText(), QStringLiteral("Bu oturumda 1 bayt yer açtın."));
}

TEST_F(WindowModelTest, TheListOffersABatchWhereThereIsSomethingToAsk) {
    stage.result = {finding("/c/1", SafetyLevel::caution), finding("/u/1", SafetyLevel::unknown),
                    guessed(finding("/s/1", SafetyLevel::safe))};
    start();
    scanAll();
    const auto offers = [&](std::optional<SidebarItem> level) {
        model->setSidebar(level);
        return model->list()->offersBatch();
    };
    EXPECT_FALSE(offers(SidebarItem{SafetyLevel::caution}));
    EXPECT_TRUE(offers(SidebarItem{SafetyLevel::unknown}));
    EXPECT_TRUE(offers(SidebarItem{SafetyLevel::safe}));
    EXPECT_FALSE(offers(SidebarItem{SafetyLevel::keep}));
    EXPECT_FALSE(offers(SidebarItem{}));
}

TEST_F(WindowModelTest, WithoutAModelTheListOffersNoBatch) {
    stage.status = AIStatus{.unavailable = "Model yok."};
    stage.result = {finding("/u/1", SafetyLevel::unknown)};
    start();
    scanAll();
    model->setSidebar(SidebarItem{SafetyLevel::unknown});
    EXPECT_FALSE(model->list()->offersBatch());
    EXPECT_EQ(model->analysis()->message(), QStringLiteral("Model yok."));
}

TEST_F(WindowModelTest, TheSubtitleCountsAndSumsUpOrIsNotThere) {
    stage.result = {finding("/c/1", SafetyLevel::caution, 1'500'000'000),
                    finding("/c/2", SafetyLevel::caution, 500'000'000)};
    start();
    scanAll();
    model->setSidebar(SidebarItem{SafetyLevel::caution});
    EXPECT_EQ(model->list()->subtitle(), QStringLiteral("2 öğe · 2 GB"));
    model->setSidebar(SidebarItem{SafetyLevel::keep});
    EXPECT_TRUE(model->list()->subtitle().isEmpty());
}

TEST_F(WindowModelTest, FindsRowsByTheirFirstLettersAsTurkishHasThem) {
    stage.result = {finding("/v/Isı", SafetyLevel::safe, 9), finding("/v/İndirilenler", SafetyLevel::safe, 8),
                    finding("/v/ısırgan", SafetyLevel::safe, 7)};
    start();
    scanAll();
    model->setSidebar(SidebarItem{SafetyLevel::safe});
    EXPECT_EQ(model->list()->rowBeginning(QStringLiteral("ı"), 0), 0);
    EXPECT_EQ(model->list()->rowBeginning(QStringLiteral("ı"), 1), 2);
    EXPECT_EQ(model->list()->rowBeginning(QStringLiteral("i"), 0), 1);
    EXPECT_EQ(model->list()->rowBeginning(QStringLiteral("Iİ"), 0), -1);
    EXPECT_EQ(model->list()->rowBeginning(QStringLiteral("is"), 2), -1);
    EXPECT_EQ(model->list()->rowBeginning(QStringLiteral("i"), 2), 1);  // wraps around to the first row
}

TEST_F(WindowModelTest, AMenuOfAFindingThatHasGoneOffersNothing) {
    start();
    EXPECT_EQ(model->list()->menuInfo(QStringLiteral("/gone")), RowMenuInfo());
}

TEST_F(WindowModelTest, OfTwoFindingsWithOneIdTheFirstIsTheSelectedOne) {
    stage.result = {finding("/v/a", SafetyLevel::safe, 2), finding("/v/a", SafetyLevel::safe, 1),
                    finding("/v/b", SafetyLevel::safe, 1)};
    start();
    scanAll();
    model->setSidebar(SidebarItem{SafetyLevel::safe});
    model->list()->selection()->set({"/v/a"});
    EXPECT_EQ(model->detailKind(), WindowModel::DetailKind::One);
    EXPECT_EQ(model->detail()->sizeText(), QStringLiteral("2 bayt"));
    model->list()->selection()->set({"/v/a", "/v/b", "/v/gone"});
    EXPECT_EQ(model->several()->countText(), QStringLiteral("2 öğe seçili"));
}

TEST_F(WindowModelTest, OnlyTheSafeLevelHasAShorterTitle) {
    start();
    for (const SafetyLevel level : allSafetyLevels) {
        const LevelInfo about = LevelInfo::of(level);
        const QString title = Texts::fixed(info(level).title);
        EXPECT_EQ(about.title, title);
        EXPECT_EQ(about.shortTitle, level == SafetyLevel::safe ? QStringLiteral("Güvenli") : title);
    }
}

TEST_F(WindowModelTest, NothingCanBeSelectedInTheSidebar) {
    start();
    model->setSidebar(SidebarItem{SafetyLevel::safe});
    model->setSidebar(std::nullopt);
    EXPECT_TRUE(model->isOverview());
    EXPECT_EQ(model->sidebar(), std::nullopt);
}

}  // namespace
}  // namespace ulvak
