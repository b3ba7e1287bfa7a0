#include "platform/words.h"

#include <gtest/gtest.h>

#include <string>

namespace ulvak::platform {
namespace {

TEST(Words, NameNothingThatOnlyAMacHas) {
    const Words& ours = words();
    std::string all;
    for (const auto word :
         {ours.model, ours.ofModel, ours.withModel, ours.withModelFirst, ours.withModelOnButton,
          ours.inFileManager, ours.showInFileManager, ours.unknownSummary, ours.cleaningDoes, ours.denied,
          ours.modelAbsence[0], ours.modelAbsence[1], ours.modelAbsence[2], ours.modelAbsence[3]}) {
        EXPECT_FALSE(word.empty());
        all.append(word).append("\n");
    }
    for (const char* foreign : {"Apple", "Finder", "Mac", "Siri", "Sistem Ayarları", "simülatör", "Tam Disk"})
        EXPECT_FALSE(all.contains(foreign)) << foreign;
}

TEST(Words, AreTheseWhereverTheyAreShown) {
    EXPECT_EQ(words().model, "Dil modeli");
    EXPECT_EQ(words().showInFileManager, "Dosya Yöneticisinde Göster");
    EXPECT_EQ(words().unknownSummary, "Ne olduğu belli değil. Dil modeliyle analiz edebilirsin.");
    EXPECT_EQ(words().denied, " klasöre erişilemedi; içlerindekiler toplamlarda yok.");
    EXPECT_EQ(words().cleaningDoes, "Dosyalar çöp kutusuna taşınır.");
}

}  // namespace
}  // namespace ulvak::platform
