#include "classify/rule_book.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "classify/platform_rows.h"
#include "classify/rule_row.h"
#include "classify/specificity.h"

namespace ulvak::RuleBook {
namespace {

// One row per line, so that rows can be compared.
// clang-format off
constexpr Row rows[] = {
    // Temporary files and the system's cache.
    {.path = "$T", .container = ScanContext::normal},
    {.path = "$T/instruments*.ktrace", .level = SafetyLevel::safe, .title = "Instruments kayıtları", .explanation = "Xcode'un Instruments aracı bir profil kaydı yaptığında bu dosyaları oluşturur. Kayıt kapandıktan sonra işe yaramazlar, ama dosyalar geride kalıyor. Silmek tamamen güvenli.", .group = "instruments", .quitApps = {"Instruments"}},
    {.path = "$T/xrgpu_*", .level = SafetyLevel::safe, .title = "GPU izleme kayıtları", .explanation = "Xcode/Instruments GPU yakalamasından kalan geçici dosyalar. Silmek güvenli.", .group = "xrgpu", .quitApps = {"Instruments", "Xcode"}},
    {.path = "$T/*", .level = SafetyLevel::safe, .title = "Geçici dosya: {name}", .explanation = "Uygulamaların geçici çalışma alanı. Açık bir uygulama şu an kullanıyor olabilir; emin değilsen ilgili uygulamayı kapattıktan sonra sil. macOS yeniden başlatmada bunların bir kısmını zaten temizler."},
    {.path = "$C", .container = ScanContext::normal},
    {.path = "$C/com.apple.dt.InstrumentsCLI", .level = SafetyLevel::safe, .title = "Instruments önbelleği", .explanation = "Instruments'ın sembol ve kayıt önbelleği. Silinirse bir sonraki profil oturumunda yeniden oluşturulur.", .quitApps = {"Instruments"}},
    {.path = "$C/*", .level = SafetyLevel::regenerable, .title = "Sistem önbelleği: {name}", .explanation = "Bir uygulamanın düşük seviye önbelleği. Silinirse uygulama ihtiyaç duydukça yeniden oluşturur; ilk açılış biraz yavaş olabilir."},

    // The home folder, and what developer tools leave in it.
    {.path = "~", .container = ScanContext::normal},
    {.path = "~/.Trash", .level = SafetyLevel::safe, .title = "Çöp Kutusu", .explanation = "Çöp kutusuna attığın dosyalar. Boşaltana kadar yer kaplamaya devam ederler."},
    {.path = "~/Library", .container = ScanContext::normal},
    {.path = "~/Library/Developer", .container = ScanContext::normal},
    {.path = "~/Library/Developer/Xcode", .container = ScanContext::normal},
    {.path = "~/Library/Developer/Xcode/DerivedData", .container = ScanContext::normal},
    {.path = "~/Library/Developer/Xcode/DerivedData/ModuleCache.noindex", .level = SafetyLevel::regenerable, .title = "Xcode modül önbelleği", .explanation = "Derlenmiş modül önbelleği. Silinirse bir sonraki derlemede yeniden oluşur.", .quitApps = {"Xcode"}},
    {.path = "~/Library/Developer/Xcode/DerivedData/*", .level = SafetyLevel::regenerable, .title = "{name} derleme verisi", .explanation = "Xcode'un bu proje için tuttuğu derleme çıktıları ve indeks. Silinirse proje bir sonraki açılışta sıfırdan derlenir, hepsi bu.", .quitApps = {"Xcode"}, .resolver = Rule::Resolver::derivedData},
    {.path = "~/Library/Developer/Xcode/*DeviceSupport", .container = ScanContext::normal},
    {.path = "~/Library/Developer/Xcode/*DeviceSupport/*", .level = SafetyLevel::regenerable, .title = "Cihaz sembolleri: {name}", .explanation = "Gerçek bir cihaz bağladığında Xcode'un indirdiği hata ayıklama sembolleri. Eski iOS sürümlerine ait olanlar güvenle silinebilir; o sürümde bir cihaz bağlarsan tekrar hazırlanır.", .resolver = Rule::Resolver::deviceSupport},
    {.path = "~/Library/Developer/Xcode/Archives", .level = SafetyLevel::caution, .title = "Xcode arşivleri", .explanation = "App Store'a gönderdiğin sürümlerin arşivleri. Eski sürümlerin çökme kayıtlarını okumak (dSYM) için gerekebilir. Yayınlanmış uygulaman varsa eskilerini seçerek sil."},
    {.path = "~/Library/Developer/CoreSimulator", .container = ScanContext::normal},
    {.path = "~/Library/Developer/CoreSimulator/Devices", .container = ScanContext::normal},
    {.path = "~/Library/Developer/CoreSimulator/Devices/*", .level = SafetyLevel::caution, .title = "Simülatör", .explanation = "", .resolver = Rule::Resolver::simulator},
    {.path = "~/Library/Developer/CoreSimulator/Caches", .level = SafetyLevel::regenerable, .title = "Simülatör önbelleği", .explanation = "Simülatörlerin paylaşılan önbelleği. Silmek güvenli.", .quitApps = {"Simulator"}},
    {.path = "~/Library/Android", .container = ScanContext::normal},
    {.path = "~/Library/Android/sdk", .container = ScanContext::normal},
    {.path = "~/Library/Android/sdk/system-images", .level = SafetyLevel::caution, .title = "Android emülatör imajları", .explanation = "Emülatörlerin kullandığı Android sistem imajları. Silersen emülatörler açılmaz; Android Studio'dan tekrar indirebilirsin (birkaç GB)."},
    {.path = "~/Library/Android/sdk/ndk", .container = ScanContext::normal},
    {.path = "~/Library/Android/sdk/ndk/*", .level = SafetyLevel::caution, .title = "Android NDK {name}", .explanation = "Yerel (C/C++) kod derlemek için NDK sürümü. Projelerin belirli bir sürüm istiyorsa gerekir; kullanılmayan eski sürümleri silebilirsin."},
    {.path = "~/.android", .container = ScanContext::normal},
    {.path = "~/.android/avd", .container = ScanContext::normal},
    {.path = "~/.android/avd/*.avd", .level = SafetyLevel::caution, .title = "Android emülatörü: {name}", .explanation = "Bir Android emülatörü ve içindeki tüm uygulamalar, veriler. Kullanmıyorsan silebilirsin; Android Studio'dan yenisini oluşturmak birkaç dakika sürer.", .resolver = Rule::Resolver::avd},
    {.path = "~/.android/cache", .level = SafetyLevel::regenerable, .title = "Android önbelleği", .explanation = "Android araçlarının önbelleği."},
    {.path = "~/.npm", .level = SafetyLevel::regenerable, .title = "npm önbelleği", .explanation = "npm'in indirdiği paketlerin kopyaları ve npx ile çalıştırılan araçlar. Silinirse paketler gerektiğinde tekrar indirilir. İpucu: `npm cache clean --force`."},
    {.path = "~/Library/pnpm", .container = ScanContext::normal},
    {.path = "~/Library/pnpm/store", .level = SafetyLevel::regenerable, .title = "pnpm paket deposu", .explanation = "pnpm'in tüm projelerde paylaştığı paket deposu. En iyisi `pnpm store prune` ile kullanılmayanları temizlemek; tamamen silersen paketler tekrar indirilir."},
    {.path = "~/.gradle", .container = ScanContext::normal},
    {.path = "~/.gradle/caches", .level = SafetyLevel::regenerable, .title = "Gradle önbelleği", .explanation = "Android/Java projelerinin bağımlılıkları ve derleme önbelleği. Silinirse bir sonraki derlemede tekrar indirilir.", .quitApps = {"Android Studio"}},
    {.path = "~/.gradle/wrapper", .level = SafetyLevel::regenerable, .title = "Gradle sürümleri", .explanation = "İndirilmiş Gradle sürümleri. Projeler ihtiyaç duyduğunda tekrar indirir."},
    {.path = "~/.cache", .container = ScanContext::normal},
    {.path = "~/.cache/*", .level = SafetyLevel::regenerable, .title = "{name} önbelleği", .explanation = "Komut satırı araçlarının önbelleği. Silinirse araç ihtiyaç duyduğunda yeniden oluşturur ya da indirir."},
    {.path = "~/.cocoapods", .level = SafetyLevel::regenerable, .title = "CocoaPods deposu", .explanation = "CocoaPods'un yerel spec deposu ve önbelleği. Silinirse `pod install` tekrar indirir."},
    {.path = "~/.m2", .level = SafetyLevel::regenerable, .title = "Maven deposu", .explanation = "Java bağımlılıkları. Silinirse derlemede tekrar indirilir."},
    {.path = "~/.cargo", .container = ScanContext::normal},
    {.path = "~/.cargo/registry", .level = SafetyLevel::regenerable, .title = "Cargo paket önbelleği", .explanation = "Rust bağımlılıkları. Silinirse derlemede tekrar indirilir."},
    {.path = "~/.cargo/git", .level = SafetyLevel::regenerable, .title = "Cargo git önbelleği", .explanation = "Git üzerinden çekilen Rust bağımlılıkları."},
    {.path = "~/.rustup", .level = SafetyLevel::caution, .title = "Rust araç zincirleri", .explanation = "Kurulu Rust sürümleri. Silersen `rustup` ile yeniden kurman gerekir."},
    {.path = "~/go/pkg/mod", .level = SafetyLevel::regenerable, .title = "Go modül önbelleği", .explanation = "Silinirse derlemede tekrar indirilir. İpucu: `go clean -modcache`."},
    {.path = "~/.bun", .container = ScanContext::normal},
    {.path = "~/.bun/install/cache", .level = SafetyLevel::regenerable, .title = "Bun önbelleği", .explanation = "Bun'ın paket önbelleği."},
    {.path = "~/.expo", .level = SafetyLevel::regenerable, .title = "Expo önbelleği", .explanation = "Expo CLI'ın indirdiği dosyalar ve önbellek."},
    {.path = "~/.nuget/packages", .level = SafetyLevel::regenerable, .title = "NuGet paketleri", .explanation = ".NET bağımlılıkları. Silinirse tekrar indirilir."},
    {.path = "~/.pub-cache", .level = SafetyLevel::regenerable, .title = "Dart/Flutter paket önbelleği", .explanation = "Silinirse `flutter pub get` tekrar indirir."},
    {.path = "~/.vscode", .level = SafetyLevel::caution, .title = "VS Code eklentileri", .explanation = "Kurulu VS Code eklentileri. Silersen eklentileri yeniden kurman gerekir."},
    {.path = "~/.cursor", .level = SafetyLevel::caution, .title = "Cursor eklentileri", .explanation = "Kurulu Cursor eklentileri. Silersen eklentileri yeniden kurman gerekir."},
    {.path = "~/.ollama/models", .level = SafetyLevel::caution, .title = "Ollama modelleri", .explanation = "İndirilmiş yerel yapay zeka modelleri. Silersen tekrar indirmen gerekir (her biri birkaç GB)."},
    {.path = "~/.docker", .level = SafetyLevel::caution, .title = "Docker ayarları", .explanation = "Docker yapılandırması ve eklentileri."},

    // What applications keep in the library.
    {.path = "~/Library/Caches", .container = ScanContext::normal},
    {.path = "~/Library/Caches/*", .level = SafetyLevel::regenerable, .title = "{name} önbelleği", .explanation = "Uygulama önbelleği. Silinirse uygulama gerektiğinde yeniden oluşturur; açık uygulamalar için kapattıktan sonra silmek daha iyi."},
    {.path = "~/Library/Logs", .level = SafetyLevel::safe, .title = "Uygulama kayıtları (log)", .explanation = "Uygulamaların günlük dosyaları. Hata ayıklamıyorsan silmek güvenli."},
    {.path = "~/Library/Application Support", .container = ScanContext::normal},
    {.path = "~/Library/Application Support/Claude", .container = ScanContext::normal},
    {.path = "~/Library/Application Support/Claude/vm_bundles", .level = SafetyLevel::regenerable, .title = "Claude sanal makine imajı", .explanation = "Claude uygulamasının kod çalıştırmak için kullandığı sanal makine imajı. Silinirse gerektiğinde tekrar indirilir.", .quitApps = {"Claude"}},
    {.path = "~/Library/Application Support/MobileSync/Backup", .level = SafetyLevel::caution, .title = "iPhone/iPad yedekleri", .explanation = "Bu Mac'e alınmış cihaz yedekleri. iCloud yedeğin güncelse eski yedekleri Finder > cihaz > Yedekleri Yönet'ten silebilirsin."},
    {.path = "~/Library/Application Support/Google", .container = ScanContext::normal},
    {.path = "~/Library/Application Support/Google/Chrome", .container = ScanContext::normal},
    {.path = "~/Library/Application Support/Google/Chrome/OptGuideOnDeviceModel", .level = SafetyLevel::regenerable, .title = "Chrome'un cihaz içi AI modeli", .explanation = "Chrome'un yerel yapay zeka özellikleri için indirdiği model. Silinirse Chrome gerektiğinde tekrar indirir. Kalıcı olarak kapatmak için chrome://settings/ai adresinden özelliği kapat.", .quitApps = {"Google Chrome"}},
    {.path = "~/Library/Application Support/Google/Chrome/*", .level = SafetyLevel::keep, .title = "Chrome profili: {name}", .explanation = "Yer imlerin, geçmişin, şifrelerin ve eklentilerin. Yer açmak için Chrome > Ayarlar > Tarama verilerini sil'i kullan.", .actionable = false},
    {.path = "~/Library/Containers", .container = ScanContext::normal},
    {.path = "~/Library/Containers/com.docker.docker", .level = SafetyLevel::caution, .title = "Docker disk imajı", .explanation = "Docker'ın tüm imajlarını ve konteynerlerini tutan sanal disk. Doğrudan silmek yerine `docker system prune -a` ile kullanılmayanları temizle.", .quitApps = {"Docker"}, .actionable = false},
    {.path = "~/Library/Group Containers", .container = ScanContext::normal},
    {.path = "~/Library/Group Containers/group.net.whatsapp.WhatsApp.shared", .level = SafetyLevel::caution, .title = "WhatsApp verisi", .explanation = "Sohbet geçmişin ve medya dosyaların. Doğrudan silme; WhatsApp > Ayarlar > Depolama'dan büyük medyaları temizle.", .actionable = false},
    {.path = "~/Library/Mail", .level = SafetyLevel::keep, .title = "Mail arşivi", .explanation = "E-postaların ve ekleri. Mail uygulamasından yönet.", .actionable = false},
    {.path = "~/Library/Messages", .level = SafetyLevel::keep, .title = "Mesajlar", .explanation = "iMessage geçmişi ve ekleri. Mesajlar > Ayarlar'dan eski mesajları otomatik silebilirsin.", .actionable = false},
    {.path = "~/Library/Photos", .level = SafetyLevel::keep, .title = "Fotoğraflar verisi", .explanation = "Fotoğraflar uygulamasının verileri.", .actionable = false},
    {.path = "~/Library/Keychains", .level = SafetyLevel::keep, .title = "Anahtar Zinciri", .explanation = "Parolaların. Asla silme.", .actionable = false},
    {.path = "~/Pictures/*.photoslibrary", .level = SafetyLevel::keep, .title = "Fotoğraf arşivi", .explanation = "Fotoğraflar kitaplığın. Yer açmak için Fotoğraflar > Ayarlar > iCloud > Mac depolama alanını optimize et seçeneğini kullan.", .actionable = false},

    // Whatever else lies in the home folder is personal.
    {.path = "~/[!.]*", .container = ScanContext::personal},

    // Outside the home folder.
    {.path = "/Applications", .container = ScanContext::normal},
    {.path = "/Applications/*.app", .level = SafetyLevel::caution, .title = "{name}", .explanation = "Kurulu bir uygulama. Kullanmıyorsan kaldırabilirsin; ayarları ve verileri ~/Library içinde ayrıca kalabilir.", .resolver = Rule::Resolver::app},
    {.path = "/Library", .container = ScanContext::system},
    {.path = "/Library/Developer/CommandLineTools", .level = SafetyLevel::caution, .title = "Xcode Komut Satırı Araçları", .explanation = "git, clang gibi araçlar. Xcode kuruluysa çoğu zaman gereksizdir ama bazı araçlar buna bakabilir.", .actionable = false},
    {.path = "/private/var/vm", .level = SafetyLevel::keep, .title = "Sanal bellek (swap)", .explanation = "macOS'un RAM yetmediğinde kullandığı takas dosyaları. Sistem yönetir; yeniden başlatınca küçülür.", .actionable = false},
    {.path = "/opt/homebrew", .level = SafetyLevel::caution, .title = "Homebrew", .explanation = "Homebrew ile kurduğun paketler. Doğrudan silme; `brew cleanup` eski sürümleri ve indirmeleri temizler.", .actionable = false},
    {.path = "/Users/Shared", .container = ScanContext::personal},

    // Build output, dependencies and caches by name, wherever they lie.
    {.name = "node_modules", .siblings = {"package.json"}, .level = SafetyLevel::regenerable, .title = "{parent} · node_modules", .explanation = "JavaScript bağımlılıkları. Silinirse projede `npm install` (veya pnpm/yarn/bun) ile geri gelir. pnpm kullanıyorsan dosyalar depoyla paylaşıldığı için gerçek kazanç daha az olabilir."},
    {.name = "Pods", .siblings = {"Podfile"}, .level = SafetyLevel::regenerable, .title = "{parent} · Pods", .explanation = "CocoaPods bağımlılıkları. `pod install` ile geri gelir."},
    {.name = ".build", .siblings = {"Package.swift"}, .level = SafetyLevel::regenerable, .title = "{parent} · .build", .explanation = "Swift Package derleme çıktıları. Bir sonraki derlemede yeniden oluşur."},
    {.name = "build", .siblings = {"build.gradle", "build.gradle.kts", "CMakeLists.txt", "package.json", "pubspec.yaml", "Makefile", "*.xcodeproj", "*.xcworkspace", "project.yml", "Package.swift", "Podfile"}, .level = SafetyLevel::regenerable, .title = "{parent} · build", .explanation = "Derleme çıktıları. Bir sonraki derlemede yeniden oluşur."},
    {.name = ".gradle", .siblings = {"settings.gradle", "settings.gradle.kts", "gradlew"}, .level = SafetyLevel::regenerable, .title = "{parent} · .gradle", .explanation = "Projenin Gradle önbelleği."},
    {.name = ".next", .siblings = {"package.json"}, .level = SafetyLevel::regenerable, .title = "{parent} · .next", .explanation = "Next.js derleme önbelleği."},
    {.name = ".nuxt", .siblings = {"package.json"}, .level = SafetyLevel::regenerable, .title = "{parent} · .nuxt", .explanation = "Nuxt derleme önbelleği."},
    {.name = ".turbo", .siblings = {"package.json"}, .level = SafetyLevel::regenerable, .title = "{parent} · .turbo", .explanation = "Turborepo önbelleği."},
    {.name = ".parcel-cache", .siblings = {"package.json"}, .level = SafetyLevel::regenerable, .title = "{parent} · .parcel-cache", .explanation = "Parcel önbelleği."},
    {.name = ".expo", .siblings = {"package.json", "app.json"}, .level = SafetyLevel::regenerable, .title = "{parent} · .expo", .explanation = "Expo proje önbelleği."},
    {.name = "dist", .siblings = {"package.json"}, .level = SafetyLevel::regenerable, .title = "{parent} · dist", .explanation = "Derlenmiş çıktı. `npm run build` ile yeniden oluşur."},
    {.name = "target", .siblings = {"Cargo.toml"}, .level = SafetyLevel::regenerable, .title = "{parent} · target", .explanation = "Rust derleme çıktıları. `cargo build` ile yeniden oluşur."},
    {.name = ".venv", .level = SafetyLevel::regenerable, .title = "{parent} · .venv", .explanation = "Python sanal ortamı. requirements dosyasından yeniden kurulabilir."},
    {.name = "venv", .siblings = {"requirements.txt", "pyproject.toml", "setup.py"}, .level = SafetyLevel::regenerable, .title = "{parent} · venv", .explanation = "Python sanal ortamı. requirements dosyasından yeniden kurulabilir."},
    {.name = "*.trace", .level = SafetyLevel::regenerable, .title = "Instruments kaydı: {name}", .explanation = "Kaydedilmiş bir Instruments profil kaydı. Yeniden kayıt alınabilir; karşılaştırma için sakladıysan silmeden önce bir bak."},
    {.name = "DerivedData", .level = SafetyLevel::regenerable, .title = "{parent} · DerivedData", .explanation = "Xcode derleme verisi. Yeniden oluşur."},
    {.name = "Cache", .level = SafetyLevel::regenerable, .title = "{parent} · önbellek", .explanation = "Uygulama önbelleği. Silinirse gerektiğinde yeniden oluşturulur.", .inPersonal = false},
    {.name = "Caches", .level = SafetyLevel::regenerable, .title = "{parent} · önbellek", .explanation = "Uygulama önbelleği. Silinirse gerektiğinde yeniden oluşturulur.", .inPersonal = false},
    {.name = "CachedData", .level = SafetyLevel::regenerable, .title = "{parent} · önbellek", .explanation = "Electron uygulama önbelleği. Silinirse yeniden oluşturulur.", .inPersonal = false},
    {.name = "Code Cache", .level = SafetyLevel::regenerable, .title = "{parent} · kod önbelleği", .explanation = "Tarayıcı motorunun derlenmiş JavaScript önbelleği.", .inPersonal = false},
    {.name = "GPUCache", .level = SafetyLevel::regenerable, .title = "{parent} · GPU önbelleği", .explanation = "Grafik önbelleği.", .inPersonal = false},
    {.name = "ShaderCache", .level = SafetyLevel::regenerable, .title = "{parent} · shader önbelleği", .explanation = "Grafik önbelleği.", .inPersonal = false},
    {.name = "CachedExtensionVSIXs", .level = SafetyLevel::regenerable, .title = "{parent} · eklenti indirmeleri", .explanation = "Eklentilerin indirilen kurulum dosyaları.", .inPersonal = false},
    {.name = "Service Worker", .level = SafetyLevel::regenerable, .title = "{parent} · web önbelleği", .explanation = "Web sayfalarının çevrimdışı önbelleği.", .inPersonal = false},
    {.name = "logs", .level = SafetyLevel::safe, .title = "{parent} · kayıtlar", .explanation = "Günlük dosyaları. Hata ayıklamıyorsan silmek güvenli.", .inPersonal = false},
    {.name = "Crashpad", .level = SafetyLevel::safe, .title = "{parent} · çökme raporları", .explanation = "Çökme raporları. Silmek güvenli.", .inPersonal = false},
};
// clang-format on

std::vector<std::string> listed(const Names& names) {
    std::vector<std::string> result;
    for (const std::string_view name : names) {
        if (!name.empty())
            result.emplace_back(name);
    }
    return result;
}

Rule::Match match(const Row& row, std::string pattern) {
    if (row.name.empty())
        return Rule::Path{std::move(pattern)};
    return Rule::Name{.pattern = std::move(pattern),
                      .siblings = listed(row.siblings),
                      .holds = listed(row.holds),
                      .outside = {}};
}

Rule::Kind kind(const Row& row) {
    if (row.container)
        return Rule::Container{*row.container};
    return Rule::Unit{};
}

Rule rule(const Row& row, std::string pattern, bool isRanked) {
    return {.match = match(row, std::move(pattern)),
            .kind = kind(row),
            .level = row.level,
            .title = std::string(row.title),
            .explanation = std::string(row.explanation),
            .group = row.group.empty() ? std::nullopt : std::optional(std::string(row.group)),
            .quitApps = listed(row.quitApps),
            .processes = listed(row.processes),
            .command = std::string(row.command),
            .resolver = row.resolver,
            .actionable = row.actionable,
            .inPersonal = row.inPersonal,
            .isRanked = isRanked};
}

/// The position of the "}" that closes the "{" at `open`, and of the commas between.
std::vector<std::size_t> braceStops(std::string_view pattern, std::size_t open) {
    std::vector<std::size_t> stops;
    int depth = 0;
    for (std::size_t i = open; i < pattern.size(); ++i) {
        if (pattern[i] == '{')
            ++depth;
        else if (pattern[i] == '}' && --depth == 0) {
            stops.push_back(i);
            return stops;
        } else if (pattern[i] == ',' && depth == 1)
            stops.push_back(i);
    }
    return {};
}

void expandBraces(std::string_view pattern, std::vector<std::string>& expanded) {
    const std::size_t open = pattern.find('{');
    const auto stops =
        open == std::string_view::npos ? std::vector<std::size_t>() : braceStops(pattern, open);
    if (stops.empty()) {
        expanded.emplace_back(pattern);
        return;
    }
    std::size_t begin = open + 1;
    for (const std::size_t stop : stops) {
        std::string one(pattern.substr(0, open));
        one.append(pattern.substr(begin, stop - begin)).append(pattern.substr(stops.back() + 1));
        expandBraces(one, expanded);
        begin = stop + 1;
    }
}

/// A ranked rule with what decides when it is asked.
struct Ranked {
    Rule rule;
    bool isPath = false;
    Specificity specificity;
};

Ranked ranked(const Row& row, std::string pattern) {
    Specificity specificity = ulvak::specificity(pattern);
    return {.rule = rule(row, std::move(pattern), true),
            .isPath = row.name.empty(),
            .specificity = std::move(specificity)};
}

/// Paths before names; then the more specific pattern, of names the deeper one. Equal ones keep their order.
bool isAskedBefore(const Ranked& one, const Ranked& other) {
    if (one.isPath != other.isPath)
        return one.isPath;
    if (!one.isPath && one.specificity.size() != other.specificity.size())
        return one.specificity.size() > other.specificity.size();
    return one.specificity > other.specificity;
}

/// With room for those that follow.
std::vector<Rule> ranked(std::span<const Rows> tables, std::size_t further) {
    std::vector<Ranked> all;
    std::vector<std::string> patterns;
    for (const Rows written : tables) {
        for (const Row& row : written) {
            patterns.clear();
            expandBraces(row.name.empty() ? row.path : row.name, patterns);
            for (std::string& pattern : patterns)
                all.push_back(ranked(row, std::move(pattern)));
        }
    }
    // A rule is big: sorted by reference.
    std::vector<Ranked*> order;
    std::ranges::transform(all, std::back_inserter(order), [](Ranked& one) { return &one; });
    std::ranges::stable_sort(order, isAskedBefore, [](const Ranked* one) -> const Ranked& { return *one; });
    std::vector<Rule> built;
    built.reserve(order.size() + further);
    for (Ranked* one : order)
        built.push_back(std::move(one->rule));
    return built;
}

}  // namespace

std::vector<Rule> ranked(std::span<const Row> written) {
    const std::array tables{Rows(written)};
    return ranked(tables, 0);
}

const std::vector<Rule>& reference() {
    static const std::vector<Rule> rules = [] {
        std::vector<Rule> built;
        for (const Row& row : rows)
            built.push_back(rule(row, std::string(row.name.empty() ? row.path : row.name), false));
        return built;
    }();
    return rules;
}

const std::vector<Rule>& all() {
    static const std::vector<Rule> rules = [] {
        std::vector<Rule> built = ranked(platformRows(), reference().size());
        std::ranges::copy(reference(), std::back_inserter(built));
        return built;
    }();
    return rules;
}

}  // namespace ulvak::RuleBook
