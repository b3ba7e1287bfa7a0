#include "classify/heuristics.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "support/turkish_locale.h"

namespace ulvak {
namespace {

using Heuristics::guess;

/// The row, counted from 1, that guesses a name; 0 for none.
std::size_t rowOf(std::string_view name) {
    const auto found = guess(name);
    const auto& table = Heuristics::table();
    for (std::size_t i = 0; found && i < table.size(); ++i) {
        if (table[i].guess == *found)
            return i + 1;
    }
    return 0;
}

TEST(Heuristics, HasTheseRowsInThisOrder) {
    using enum SafetyLevel;
    const Heuristics::Row expected[] = {
        {{"cache", "caches", "cached", ".cache"},
         {regenerable, "{name} (önbellek)",
          "Adı önbellek olduğunu düşündürüyor; genelde yeniden oluşturulur.", false}},
        {{"log", "logs", "trace", "traces", "tmp", "temp", "crash", "crashes", "diagnostics", "crashreports"},
         {safe, "{name} (kayıt/geçici)",
          "Adı kayıt, iz ya da geçici dosya olduğunu düşündürüyor; bunlar genelde silinebilir.", false}},
        {{"bench", "benchmark", "benchmarks", "build", "builds", "out", "output", "outputs", "artifacts",
          "derived", "intermediates", "obj"},
         {regenerable, "{name} (üretilmiş çıktı)",
          "Adı derleme ya da ölçüm çıktısı olduğunu düşündürüyor; genelde yeniden üretilebilir.", false}},
        {{"download", "downloads", "installers", "updates", "update", "packages"},
         {caution, "{name} (indirmeler)",
          "İndirilmiş dosyalar olabilir; tekrar indirilebilir ama bazıları artık bulunamayabilir.", false}},
        {{"backup", "backups", "snapshots", "archive", "archives", "yedek", "yedekler"},
         {caution, "{name} (yedek)",
          "Yedek ya da arşiv olabilir; silmeden önce başka bir kopyası olduğundan emin ol.", true}},
        {{"bottles", "bottle", "vms", "vm", "machines", "disks", "prefixes", "wineprefix", "containers"},
         {caution, "{name} (sanal ortam)",
          "Sanal makine ya da uygulama ortamı olabilir; içinde kurulu programlar ve kayıtlı veriler "
          "bulunabilir.",
          true}},
        {{"models", "weights", "checkpoints"},
         {caution, "{name} (modeller)",
          "Yapay zeka modelleri olabilir; tekrar indirilebilir ama büyük ve zaman alıcı.", true}},
        {{"runtimes", "runtime", "sdk", "sdks", "toolchains", "toolchain"},
         {caution, "{name} (çalışma ortamı)",
          "Bir uygulamanın indirdiği çalışma ortamı olabilir; silinirse uygulama tekrar indirmek zorunda "
          "kalır.",
          true}},
    };
    const auto& table = Heuristics::table();
    ASSERT_EQ(table.size(), std::size(expected));
    for (std::size_t i = 0; i < table.size(); ++i) {
        EXPECT_EQ(table[i].keywords, expected[i].keywords) << i + 1;
        EXPECT_EQ(table[i].guess, expected[i].guess) << i + 1;
    }
}

TEST(Heuristics, EveryKeywordGivesItsRowWhateverItsCase) {
    std::set<std::string> seen;
    for (std::size_t i = 0; i < Heuristics::table().size(); ++i) {
        for (const std::string& keyword : Heuristics::table()[i].keywords) {
            EXPECT_TRUE(seen.insert(keyword).second) << "in two rows: " << keyword;
            std::string capitals = keyword;
            for (char& c : capitals)
                c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
            EXPECT_EQ(rowOf(keyword), i + 1) << keyword;
            EXPECT_EQ(rowOf(capitals), i + 1) << capitals;
            const bool isBackup = keyword.contains("backup") || keyword.contains("yedek");
            EXPECT_EQ(rowOf(keyword + "2"), isBackup ? 5U : 0U) << "nearly " << keyword;
            EXPECT_EQ(rowOf("my" + keyword), isBackup ? 5U : 0U) << "nearly " << keyword;
        }
    }
}

TEST(Heuristics, CachesOfAnyLetterCaseAreCachesButCache2IsNot) {
    EXPECT_EQ(rowOf("Caches"), 1U);
    EXPECT_EQ(rowOf("CACHE"), 1U);
    EXPECT_EQ(rowOf(".cache"), 1U);
    EXPECT_EQ(rowOf("cache2"), 0U);
    EXPECT_EQ(rowOf("mycache"), 0U);
    EXPECT_EQ(rowOf("cache "), 0U);
}

TEST(Heuristics, ABackupIsRecognisedByAPartOfTheName) {
    EXPECT_EQ(rowOf("My Backups 2023"), 5U);
    EXPECT_EQ(rowOf("eski_yedek"), 5U);
    EXPECT_EQ(rowOf("YEDEKLERİM"), 5U);
    EXPECT_EQ(rowOf("backup"), 5U);
    EXPECT_EQ(rowOf("back up"), 0U);
}

TEST(Heuristics, LogsAreSafeAndOutIsAnOutput) {
    EXPECT_EQ(rowOf("Logs"), 2U);
    EXPECT_EQ(guess("Logs")->level, SafetyLevel::safe);
    EXPECT_EQ(rowOf("out"), 3U);
}

TEST(Heuristics, ABackupWinsOverEveryOtherRow) {
    EXPECT_EQ(rowOf("tmp-backup"), 5U);
    EXPECT_EQ(rowOf("build-backup"), 5U);
    EXPECT_EQ(rowOf("modelsbackup"), 5U);
}

TEST(Heuristics, AnEmptyNameGivesNothing) {
    EXPECT_EQ(guess(""), std::nullopt);
}

TEST(Heuristics, OtherNamesGiveNothing) {
    for (const std::string name :
         {".", "..", "/", "{name}", "önbellek", "log.txt", "logs/", "ı", "dısks", "DİSKS"})
        EXPECT_EQ(guess(name), std::nullopt) << name;
}

TEST(Heuristics, NamesThatAreNotUtf8AreGuessedToo) {
    EXPECT_EQ(rowOf("\xff backup"), 5U);
    EXPECT_EQ(rowOf("logs\xff"), 0U);
    EXPECT_EQ(rowOf("\xc3"), 0U);
}

TEST(Heuristics, TurkishFoldsNothingElse) {
    const test::TurkishLocale locale;
    if (const auto reason = locale.whyNot())
        GTEST_SKIP() << *reason;
    EXPECT_EQ(rowOf("DISKS"), 6U);
    EXPECT_EQ(rowOf("ARCHIVE"), 5U);
    EXPECT_EQ(rowOf("DIAGNOSTICS"), 2U);
    EXPECT_EQ(rowOf("dısks"), 0U);
}

}  // namespace
}  // namespace ulvak
