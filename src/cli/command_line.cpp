#include "cli/command_line.h"

namespace ulvak {
namespace {

bool isForTheWindow(std::string_view argument) {
    return argument == "--autoscan" || argument == "--select-first" || argument == "--reduced-motion" ||
           argument.starts_with("--level=");
}

}  // namespace

CommandLine CommandLine::parse(std::span<const char* const> arguments) {
    CommandLine line;
    for (const std::string_view argument : arguments) {
        if (argument == "--dump")
            line.dump = true;
        else if (argument == "--ai")
            line.ai = true;
        else if (argument == "--help" || argument == "-h")
            line.help = true;
        else if (argument == "--version")
            line.version = true;
        else if (!isForTheWindow(argument))
            line.unknown.emplace_back(argument);
    }
    return line;
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
