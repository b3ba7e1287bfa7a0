#include "app/command_line.h"

namespace ulvak {

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
        else
            line.unknown.emplace_back(argument);
    }
    return line;
}

std::string_view helpText() {
    return R"(Kullanım: ulvak [SEÇENEK]...

Diskte yer kaplayan klasörleri bulur; her birinin ne olduğunu ve silinirse neyin
kaybolacağını beş düzeyde söyler: Güvenle silinebilir, Yeniden oluşur, Dikkat,
Bilinmiyor, Dokunma.

Seçenekler:
  --dump       pencere açmadan bir kez tara, bulguları yazdır ve çık;
               hiçbir şeyi silmez ve değiştirmez
  --ai         --dump ile: ne olduğu belli olmayan bulguları bu bilgisayardaki
               dil modeline sor
  -h, --help   bu yardımı göster
  --version    sürümü göster

Taranan yerler: ev klasörü, geçici klasör, sistem önbelleği, /Applications,
/Library, /private/var/vm, /opt/homebrew, /Users/Shared.

Ortam değişkenleri:
  HOME         ev klasörü
  TMPDIR       geçici klasör (yoksa /tmp)
)";
}

std::string_view versionText() {
    return "ulvak " ULVAK_VERSION "\n";
}

}  // namespace ulvak
