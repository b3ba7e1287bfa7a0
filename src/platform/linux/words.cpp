#include "platform/words.h"

namespace ulvak::platform {

const Words& words() {
    static constexpr Words ours{
        .model = "Dil modeli",
        .ofModel = "Dil modelinin",
        .withModel = "dil modeliyle",
        .withModelFirst = "Dil modeliyle",
        .withModelOnButton = "Dil Modeliyle",
        .inFileManager = "dosya yöneticisinde",
        .showInFileManager = "Dosya Yöneticisinde Göster",
        .unknownSummary = "Ne olduğu belli değil. Dil modeliyle analiz edebilirsin.",
        .cleaningDoes = "Dosyalar çöp kutusuna taşınır.",
        .denied = " klasöre erişilemedi; içlerindekiler toplamlarda yok.",
        .modelAbsence = {"Bu bilgisayardaki dil modeli kullanılamıyor.", "Dil modeli kapalı.",
                         "Dil modeli henüz hazır değil (yükleniyor olabilir). Biraz sonra tekrar dene.",
                         "Dil modeli şu an kullanılamıyor."},
    };
    return ours;
}

}  // namespace ulvak::platform
