#include "platform/macos/mac_words.h"

#include <gtest/gtest.h>

namespace ulvak::platform {
namespace {

TEST(MacWords, NameWhatAMacHas) {
    EXPECT_EQ(macWords.model, "Apple Intelligence");
    EXPECT_EQ(macWords.ofModel, "Apple Intelligence'ın");
    EXPECT_EQ(macWords.withModel, "Apple Intelligence ile");
    EXPECT_EQ(macWords.withModelFirst, macWords.withModel);
    EXPECT_EQ(macWords.withModelOnButton, macWords.withModel);
    EXPECT_EQ(macWords.inFileManager, "Finder'da");
    EXPECT_EQ(macWords.showInFileManager, "Finder'da Göster");
    EXPECT_EQ(macWords.unknownSummary, "Ne olduğu belli değil. Apple Intelligence ile analiz edebilirsin.");
    EXPECT_EQ(macWords.cleaningDoes, "Dosyalar çöp kutusuna taşınır, simülatörler silinir.");
    EXPECT_EQ(macWords.modelAbsence[0], "Bu Mac Apple Intelligence'ı desteklemiyor.");
    EXPECT_EQ(macWords.modelAbsence[1],
              "Apple Intelligence kapalı. Sistem Ayarları > Apple Intelligence ve Siri'den açabilirsin.");
    EXPECT_EQ(macWords.modelAbsence[2],
              "Apple Intelligence modeli henüz hazır değil (indiriliyor olabilir). Biraz sonra tekrar dene.");
    EXPECT_EQ(macWords.modelAbsence[3], "Apple Intelligence şu an kullanılamıyor.");
}

}  // namespace
}  // namespace ulvak::platform
