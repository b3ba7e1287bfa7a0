#pragma once

#include "platform/words.h"

namespace ulvak::platform {

inline constexpr Words macWords{
    .model = "Apple Intelligence",
    .ofModel = "Apple Intelligence'ın",
    .withModel = "Apple Intelligence ile",
    .withModelFirst = "Apple Intelligence ile",
    .withModelOnButton = "Apple Intelligence ile",
    .inFileManager = "Finder'da",
    .showInFileManager = "Finder'da Göster",
    .unknownSummary = "Ne olduğu belli değil. Apple Intelligence ile analiz edebilirsin.",
    .cleaningDoes = "Dosyalar çöp kutusuna taşınır, simülatörler silinir.",
    .denied = " klasöre erişilemedi. Tam tablo için Ulvak'a Tam Disk Erişimi ver ve yeniden tara.",
    .modelAbsence =
        {"Bu Mac Apple Intelligence'ı desteklemiyor.",
         "Apple Intelligence kapalı. Sistem Ayarları > Apple Intelligence ve Siri'den açabilirsin.",
         "Apple Intelligence modeli henüz hazır değil (indiriliyor olabilir). Biraz sonra tekrar dene.",
         "Apple Intelligence şu an kullanılamıyor."},
};

}  // namespace ulvak::platform
