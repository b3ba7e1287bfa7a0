#include "cli/command_line.h"

namespace ulvak {

void CommandLine::add(std::string_view argument) {
    constexpr std::string_view levelIs = "--level=";
    if (argument == "--dump")
        dump = true;
    else if (argument == "--ai")
        ai = true;
    else if (argument == "--help" || argument == "-h")
        help = true;
    else if (argument == "--version")
        version = true;
    else if (argument == "--autoscan")
        autoscan = true;
    else if (argument == "--select-first")
        selectFirst = true;
    else if (argument == "--reduced-motion")
        reducedMotion = true;
    else if (!argument.starts_with(levelIs))
        unknown.emplace_back(argument);
    else if (!level)
        level = argument.substr(levelIs.size());
}

std::string_view helpText() {
    return R"(Kullanım: ulvak [SEÇENEK]...

Diskte yer kaplayan klasörleri bulur; her birinin ne olduğunu ve silinirse neyin
kaybolacağını beş düzeyde söyler: Güvenle silinebilir, Yeniden oluşur, Dikkat,
Bilinmiyor, Dokunma. Seçeneksiz çalıştırılınca penceresini açar.

Seçenekler:
  --dump           pencere açmadan bir kez tara, bulguları yazdır ve çık;
                   hiçbir şeyi silmez ve değiştirmez
  --ai             --dump ile: ne olduğu belli olmayan bulguları bu
                   bilgisayardaki dil modeline sor
  --autoscan       pencere açılınca taramayı başlat
  --level=DÜZEY    pencereyi bir düzeyin listesiyle aç: safe, regenerable,
                   caution, unknown ya da keep
  --select-first   tarama bitince listenin ilk öğesini seç
  --reduced-motion pencerenin geçişleri zaman almasın
  -h, --help       bu yardımı göster
  --version        sürümü göster

Taranan yerler: ev klasörü, geçici klasör, sistem önbelleği, /Applications,
/Library, /private/var/vm, /opt/homebrew, /Users/Shared.

Ortam değişkenleri:
  HOME         ev klasörü
  TMPDIR       geçici klasör (yoksa /tmp)
  XDG_DATA_HOME
               etiketlerin klasörü (yoksa ~/.local/share)
  ULVAK_MODEL_URL, ULVAK_MODEL
               bu bilgisayardaki model sunucusunun adresi, modelin adı
  ULVAK_MODEL_OFF
               boş ya da 0 değilse dil modeli kapalı
  ULVAK_REDUCED_MOTION
               boş ya da 0 değilse --reduced-motion ile aynı
)";
}

std::string_view versionText() {
    return "ulvak " ULVAK_VERSION "\n";
}

}  // namespace ulvak
