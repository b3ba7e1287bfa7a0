#include "classify/rule_book.h"

#include <utility>

namespace ulvak::RuleBook {
namespace {

/// A place that only leads to others.
Rule container(std::string pattern, ScanContext context = ScanContext::normal) {
    return {.match = Rule::Path{std::move(pattern)}, .kind = Rule::Container{context}, .title = "{name}"};
}

// One row a line, so that rows can be read against each other.
// clang-format off
std::vector<Rule> table() {
    return {
        // Temporary files and the system's cache.
        container("$T"),
        {.match = Rule::Path{"$T/instruments*.ktrace"}, .kind = Rule::Unit{}, .level = SafetyLevel::safe, .title = "Instruments kayıtları", .explanation = "Xcode'un Instruments aracı bir profil kaydı yaptığında bu dosyaları oluşturur. Kayıt kapandıktan sonra işe yaramazlar, ama dosyalar geride kalıyor. Silmek tamamen güvenli.", .group = "instruments", .quitApps = {"Instruments"}},
        {.match = Rule::Path{"$T/xrgpu_*"}, .kind = Rule::Unit{}, .level = SafetyLevel::safe, .title = "GPU izleme kayıtları", .explanation = "Xcode/Instruments GPU yakalamasından kalan geçici dosyalar. Silmek güvenli.", .group = "xrgpu", .quitApps = {"Instruments", "Xcode"}},
        {.match = Rule::Path{"$T/*"}, .kind = Rule::Unit{}, .level = SafetyLevel::safe, .title = "Geçici dosya: {name}", .explanation = "Uygulamaların geçici çalışma alanı. Açık bir uygulama şu an kullanıyor olabilir; emin değilsen ilgili uygulamayı kapattıktan sonra sil. macOS yeniden başlatmada bunların bir kısmını zaten temizler."},
        container("$C"),
        {.match = Rule::Path{"$C/com.apple.dt.InstrumentsCLI"}, .kind = Rule::Unit{}, .level = SafetyLevel::safe, .title = "Instruments önbelleği", .explanation = "Instruments'ın sembol ve kayıt önbelleği. Silinirse bir sonraki profil oturumunda yeniden oluşturulur.", .quitApps = {"Instruments"}},
        {.match = Rule::Path{"$C/*"}, .kind = Rule::Unit{}, .level = SafetyLevel::regenerable, .title = "Sistem önbelleği: {name}", .explanation = "Bir uygulamanın düşük seviye önbelleği. Silinirse uygulama ihtiyaç duydukça yeniden oluşturur; ilk açılış biraz yavaş olabilir."},

        // The home folder, and what developer tools leave in it.
        container("~"),
        {.match = Rule::Path{"~/.Trash"}, .kind = Rule::Unit{}, .level = SafetyLevel::safe, .title = "Çöp Kutusu", .explanation = "Çöp kutusuna attığın dosyalar. Boşaltana kadar yer kaplamaya devam ederler."},
        container("~/Library"),
        container("~/Library/Developer"),
        container("~/Library/Developer/Xcode"),
        container("~/Library/Developer/Xcode/DerivedData"),
        {.match = Rule::Path{"~/Library/Developer/Xcode/DerivedData/ModuleCache.noindex"}, .kind = Rule::Unit{}, .level = SafetyLevel::regenerable, .title = "Xcode modül önbelleği", .explanation = "Derlenmiş modül önbelleği. Silinirse bir sonraki derlemede yeniden oluşur.", .quitApps = {"Xcode"}},
        {.match = Rule::Path{"~/Library/Developer/Xcode/DerivedData/*"}, .kind = Rule::Unit{}, .level = SafetyLevel::regenerable, .title = "{name} derleme verisi", .explanation = "Xcode'un bu proje için tuttuğu derleme çıktıları ve indeks. Silinirse proje bir sonraki açılışta sıfırdan derlenir, hepsi bu.", .quitApps = {"Xcode"}, .resolver = Rule::Resolver::derivedData},
        container("~/Library/Developer/Xcode/*DeviceSupport"),
        {.match = Rule::Path{"~/Library/Developer/Xcode/*DeviceSupport/*"}, .kind = Rule::Unit{}, .level = SafetyLevel::regenerable, .title = "Cihaz sembolleri: {name}", .explanation = "Gerçek bir cihaz bağladığında Xcode'un indirdiği hata ayıklama sembolleri. Eski iOS sürümlerine ait olanlar güvenle silinebilir; o sürümde bir cihaz bağlarsan tekrar hazırlanır.", .resolver = Rule::Resolver::deviceSupport},
        {.match = Rule::Path{"~/Library/Developer/Xcode/Archives"}, .kind = Rule::Unit{}, .level = SafetyLevel::caution, .title = "Xcode arşivleri", .explanation = "App Store'a gönderdiğin sürümlerin arşivleri. Eski sürümlerin çökme kayıtlarını okumak (dSYM) için gerekebilir. Yayınlanmış uygulaman varsa eskilerini seçerek sil."},
        container("~/Library/Developer/CoreSimulator"),
        container("~/Library/Developer/CoreSimulator/Devices"),
        {.match = Rule::Path{"~/Library/Developer/CoreSimulator/Devices/*"}, .kind = Rule::Unit{}, .level = SafetyLevel::caution, .title = "Simülatör", .explanation = "", .resolver = Rule::Resolver::simulator},
        {.match = Rule::Path{"~/Library/Developer/CoreSimulator/Caches"}, .kind = Rule::Unit{}, .level = SafetyLevel::regenerable, .title = "Simülatör önbelleği", .explanation = "Simülatörlerin paylaşılan önbelleği. Silmek güvenli.", .quitApps = {"Simulator"}},
        container("~/Library/Android"),
        container("~/Library/Android/sdk"),
        {.match = Rule::Path{"~/Library/Android/sdk/system-images"}, .kind = Rule::Unit{}, .level = SafetyLevel::caution, .title = "Android emülatör imajları", .explanation = "Emülatörlerin kullandığı Android sistem imajları. Silersen emülatörler açılmaz; Android Studio'dan tekrar indirebilirsin (birkaç GB)."},
        container("~/Library/Android/sdk/ndk"),
        {.match = Rule::Path{"~/Library/Android/sdk/ndk/*"}, .kind = Rule::Unit{}, .level = SafetyLevel::caution, .title = "Android NDK {name}", .explanation = "Yerel (C/C++) kod derlemek için NDK sürümü. Projelerin belirli bir sürüm istiyorsa gerekir; kullanılmayan eski sürümleri silebilirsin."},
        container("~/.android"),
        container("~/.android/avd"),
        {.match = Rule::Path{"~/.android/avd/*.avd"}, .kind = Rule::Unit{}, .level = SafetyLevel::caution, .title = "Android emülatörü: {name}", .explanation = "Bir Android emülatörü ve içindeki tüm uygulamalar, veriler. Kullanmıyorsan silebilirsin; Android Studio'dan yenisini oluşturmak birkaç dakika sürer.", .resolver = Rule::Resolver::avd},
        {.match = Rule::Path{"~/.android/cache"}, .kind = Rule::Unit{}, .level = SafetyLevel::regenerable, .title = "Android önbelleği", .explanation = "Android araçlarının önbelleği."},
        {.match = Rule::Path{"~/.npm"}, .kind = Rule::Unit{}, .level = SafetyLevel::regenerable, .title = "npm önbelleği", .explanation = "npm'in indirdiği paketlerin kopyaları ve npx ile çalıştırılan araçlar. Silinirse paketler gerektiğinde tekrar indirilir. İpucu: `npm cache clean --force`."},
        container("~/Library/pnpm"),
        {.match = Rule::Path{"~/Library/pnpm/store"}, .kind = Rule::Unit{}, .level = SafetyLevel::regenerable, .title = "pnpm paket deposu", .explanation = "pnpm'in tüm projelerde paylaştığı paket deposu. En iyisi `pnpm store prune` ile kullanılmayanları temizlemek; tamamen silersen paketler tekrar indirilir."},
        container("~/.gradle"),
        {.match = Rule::Path{"~/.gradle/caches"}, .kind = Rule::Unit{}, .level = SafetyLevel::regenerable, .title = "Gradle önbelleği", .explanation = "Android/Java projelerinin bağımlılıkları ve derleme önbelleği. Silinirse bir sonraki derlemede tekrar indirilir.", .quitApps = {"Android Studio"}},
        {.match = Rule::Path{"~/.gradle/wrapper"}, .kind = Rule::Unit{}, .level = SafetyLevel::regenerable, .title = "Gradle sürümleri", .explanation = "İndirilmiş Gradle sürümleri. Projeler ihtiyaç duyduğunda tekrar indirir."},
        container("~/.cache"),
        {.match = Rule::Path{"~/.cache/*"}, .kind = Rule::Unit{}, .level = SafetyLevel::regenerable, .title = "{name} önbelleği", .explanation = "Komut satırı araçlarının önbelleği. Silinirse araç ihtiyaç duyduğunda yeniden oluşturur ya da indirir."},
        {.match = Rule::Path{"~/.cocoapods"}, .kind = Rule::Unit{}, .level = SafetyLevel::regenerable, .title = "CocoaPods deposu", .explanation = "CocoaPods'un yerel spec deposu ve önbelleği. Silinirse `pod install` tekrar indirir."},
        {.match = Rule::Path{"~/.m2"}, .kind = Rule::Unit{}, .level = SafetyLevel::regenerable, .title = "Maven deposu", .explanation = "Java bağımlılıkları. Silinirse derlemede tekrar indirilir."},
        container("~/.cargo"),
        {.match = Rule::Path{"~/.cargo/registry"}, .kind = Rule::Unit{}, .level = SafetyLevel::regenerable, .title = "Cargo paket önbelleği", .explanation = "Rust bağımlılıkları. Silinirse derlemede tekrar indirilir."},
        {.match = Rule::Path{"~/.cargo/git"}, .kind = Rule::Unit{}, .level = SafetyLevel::regenerable, .title = "Cargo git önbelleği", .explanation = "Git üzerinden çekilen Rust bağımlılıkları."},
        {.match = Rule::Path{"~/.rustup"}, .kind = Rule::Unit{}, .level = SafetyLevel::caution, .title = "Rust araç zincirleri", .explanation = "Kurulu Rust sürümleri. Silersen `rustup` ile yeniden kurman gerekir."},
        {.match = Rule::Path{"~/go/pkg/mod"}, .kind = Rule::Unit{}, .level = SafetyLevel::regenerable, .title = "Go modül önbelleği", .explanation = "Silinirse derlemede tekrar indirilir. İpucu: `go clean -modcache`."},
        container("~/.bun"),
        {.match = Rule::Path{"~/.bun/install/cache"}, .kind = Rule::Unit{}, .level = SafetyLevel::regenerable, .title = "Bun önbelleği", .explanation = "Bun'ın paket önbelleği."},
        {.match = Rule::Path{"~/.expo"}, .kind = Rule::Unit{}, .level = SafetyLevel::regenerable, .title = "Expo önbelleği", .explanation = "Expo CLI'ın indirdiği dosyalar ve önbellek."},
        {.match = Rule::Path{"~/.nuget/packages"}, .kind = Rule::Unit{}, .level = SafetyLevel::regenerable, .title = "NuGet paketleri", .explanation = ".NET bağımlılıkları. Silinirse tekrar indirilir."},
        {.match = Rule::Path{"~/.pub-cache"}, .kind = Rule::Unit{}, .level = SafetyLevel::regenerable, .title = "Dart/Flutter paket önbelleği", .explanation = "Silinirse `flutter pub get` tekrar indirir."},
        {.match = Rule::Path{"~/.vscode"}, .kind = Rule::Unit{}, .level = SafetyLevel::caution, .title = "VS Code eklentileri", .explanation = "Kurulu VS Code eklentileri. Silersen eklentileri yeniden kurman gerekir."},
        {.match = Rule::Path{"~/.cursor"}, .kind = Rule::Unit{}, .level = SafetyLevel::caution, .title = "Cursor eklentileri", .explanation = "Kurulu Cursor eklentileri. Silersen eklentileri yeniden kurman gerekir."},
        {.match = Rule::Path{"~/.ollama/models"}, .kind = Rule::Unit{}, .level = SafetyLevel::caution, .title = "Ollama modelleri", .explanation = "İndirilmiş yerel yapay zeka modelleri. Silersen tekrar indirmen gerekir (her biri birkaç GB)."},
        {.match = Rule::Path{"~/.docker"}, .kind = Rule::Unit{}, .level = SafetyLevel::caution, .title = "Docker ayarları", .explanation = "Docker yapılandırması ve eklentileri."},

        // What applications keep in the library.
        container("~/Library/Caches"),
        {.match = Rule::Path{"~/Library/Caches/*"}, .kind = Rule::Unit{}, .level = SafetyLevel::regenerable, .title = "{name} önbelleği", .explanation = "Uygulama önbelleği. Silinirse uygulama gerektiğinde yeniden oluşturur; açık uygulamalar için kapattıktan sonra silmek daha iyi."},
        {.match = Rule::Path{"~/Library/Logs"}, .kind = Rule::Unit{}, .level = SafetyLevel::safe, .title = "Uygulama kayıtları (log)", .explanation = "Uygulamaların günlük dosyaları. Hata ayıklamıyorsan silmek güvenli."},
        container("~/Library/Application Support"),
        container("~/Library/Application Support/Claude"),
        {.match = Rule::Path{"~/Library/Application Support/Claude/vm_bundles"}, .kind = Rule::Unit{}, .level = SafetyLevel::regenerable, .title = "Claude sanal makine imajı", .explanation = "Claude uygulamasının kod çalıştırmak için kullandığı sanal makine imajı. Silinirse gerektiğinde tekrar indirilir.", .quitApps = {"Claude"}},
        {.match = Rule::Path{"~/Library/Application Support/MobileSync/Backup"}, .kind = Rule::Unit{}, .level = SafetyLevel::caution, .title = "iPhone/iPad yedekleri", .explanation = "Bu Mac'e alınmış cihaz yedekleri. iCloud yedeğin güncelse eski yedekleri Finder > cihaz > Yedekleri Yönet'ten silebilirsin."},
        container("~/Library/Application Support/Google"),
        container("~/Library/Application Support/Google/Chrome"),
        {.match = Rule::Path{"~/Library/Application Support/Google/Chrome/OptGuideOnDeviceModel"}, .kind = Rule::Unit{}, .level = SafetyLevel::regenerable, .title = "Chrome'un cihaz içi AI modeli", .explanation = "Chrome'un yerel yapay zeka özellikleri için indirdiği model. Silinirse Chrome gerektiğinde tekrar indirir. Kalıcı olarak kapatmak için chrome://settings/ai adresinden özelliği kapat.", .quitApps = {"Google Chrome"}},
        {.match = Rule::Path{"~/Library/Application Support/Google/Chrome/*"}, .kind = Rule::Unit{}, .level = SafetyLevel::keep, .title = "Chrome profili: {name}", .explanation = "Yer imlerin, geçmişin, şifrelerin ve eklentilerin. Yer açmak için Chrome > Ayarlar > Tarama verilerini sil'i kullan.", .actionable = false},
        container("~/Library/Containers"),
        {.match = Rule::Path{"~/Library/Containers/com.docker.docker"}, .kind = Rule::Unit{}, .level = SafetyLevel::caution, .title = "Docker disk imajı", .explanation = "Docker'ın tüm imajlarını ve konteynerlerini tutan sanal disk. Doğrudan silmek yerine `docker system prune -a` ile kullanılmayanları temizle.", .quitApps = {"Docker"}, .actionable = false},
        container("~/Library/Group Containers"),
        {.match = Rule::Path{"~/Library/Group Containers/group.net.whatsapp.WhatsApp.shared"}, .kind = Rule::Unit{}, .level = SafetyLevel::caution, .title = "WhatsApp verisi", .explanation = "Sohbet geçmişin ve medya dosyaların. Doğrudan silme; WhatsApp > Ayarlar > Depolama'dan büyük medyaları temizle.", .actionable = false},
        {.match = Rule::Path{"~/Library/Mail"}, .kind = Rule::Unit{}, .level = SafetyLevel::keep, .title = "Mail arşivi", .explanation = "E-postaların ve ekleri. Mail uygulamasından yönet.", .actionable = false},
        {.match = Rule::Path{"~/Library/Messages"}, .kind = Rule::Unit{}, .level = SafetyLevel::keep, .title = "Mesajlar", .explanation = "iMessage geçmişi ve ekleri. Mesajlar > Ayarlar'dan eski mesajları otomatik silebilirsin.", .actionable = false},
        {.match = Rule::Path{"~/Library/Photos"}, .kind = Rule::Unit{}, .level = SafetyLevel::keep, .title = "Fotoğraflar verisi", .explanation = "Fotoğraflar uygulamasının verileri.", .actionable = false},
        {.match = Rule::Path{"~/Library/Keychains"}, .kind = Rule::Unit{}, .level = SafetyLevel::keep, .title = "Anahtar Zinciri", .explanation = "Parolaların. Asla silme.", .actionable = false},
        {.match = Rule::Path{"~/Pictures/*.photoslibrary"}, .kind = Rule::Unit{}, .level = SafetyLevel::keep, .title = "Fotoğraf arşivi", .explanation = "Fotoğraflar kitaplığın. Yer açmak için Fotoğraflar > Ayarlar > iCloud > Mac depolama alanını optimize et seçeneğini kullan.", .actionable = false},

        // Whatever else lies in the home folder is personal.
        container("~/[!.]*", ScanContext::personal),

        // Outside the home folder.
        container("/Applications"),
        {.match = Rule::Path{"/Applications/*.app"}, .kind = Rule::Unit{}, .level = SafetyLevel::caution, .title = "{name}", .explanation = "Kurulu bir uygulama. Kullanmıyorsan kaldırabilirsin; ayarları ve verileri ~/Library içinde ayrıca kalabilir.", .resolver = Rule::Resolver::app},
        container("/Library", ScanContext::system),
        {.match = Rule::Path{"/Library/Developer/CommandLineTools"}, .kind = Rule::Unit{}, .level = SafetyLevel::caution, .title = "Xcode Komut Satırı Araçları", .explanation = "git, clang gibi araçlar. Xcode kuruluysa çoğu zaman gereksizdir ama bazı araçlar buna bakabilir.", .actionable = false},
        {.match = Rule::Path{"/private/var/vm"}, .kind = Rule::Unit{}, .level = SafetyLevel::keep, .title = "Sanal bellek (swap)", .explanation = "macOS'un RAM yetmediğinde kullandığı takas dosyaları. Sistem yönetir; yeniden başlatınca küçülür.", .actionable = false},
        {.match = Rule::Path{"/opt/homebrew"}, .kind = Rule::Unit{}, .level = SafetyLevel::caution, .title = "Homebrew", .explanation = "Homebrew ile kurduğun paketler. Doğrudan silme; `brew cleanup` eski sürümleri ve indirmeleri temizler.", .actionable = false},
        container("/Users/Shared", ScanContext::personal),

        // Build output, dependencies and caches by name, wherever they lie.
        {.match = Rule::Name{"node_modules", {"package.json"}, {}}, .kind = Rule::Unit{}, .level = SafetyLevel::regenerable, .title = "{parent} · node_modules", .explanation = "JavaScript bağımlılıkları. Silinirse projede `npm install` (veya pnpm/yarn/bun) ile geri gelir. pnpm kullanıyorsan dosyalar depoyla paylaşıldığı için gerçek kazanç daha az olabilir."},
        {.match = Rule::Name{"Pods", {"Podfile"}, {}}, .kind = Rule::Unit{}, .level = SafetyLevel::regenerable, .title = "{parent} · Pods", .explanation = "CocoaPods bağımlılıkları. `pod install` ile geri gelir."},
        {.match = Rule::Name{".build", {"Package.swift"}, {}}, .kind = Rule::Unit{}, .level = SafetyLevel::regenerable, .title = "{parent} · .build", .explanation = "Swift Package derleme çıktıları. Bir sonraki derlemede yeniden oluşur."},
        {.match = Rule::Name{"build", {"build.gradle", "build.gradle.kts", "CMakeLists.txt", "package.json", "pubspec.yaml", "Makefile", "*.xcodeproj", "*.xcworkspace", "project.yml", "Package.swift", "Podfile"}, {}}, .kind = Rule::Unit{}, .level = SafetyLevel::regenerable, .title = "{parent} · build", .explanation = "Derleme çıktıları. Bir sonraki derlemede yeniden oluşur."},
        {.match = Rule::Name{".gradle", {"settings.gradle", "settings.gradle.kts", "gradlew"}, {}}, .kind = Rule::Unit{}, .level = SafetyLevel::regenerable, .title = "{parent} · .gradle", .explanation = "Projenin Gradle önbelleği."},
        {.match = Rule::Name{".next", {"package.json"}, {}}, .kind = Rule::Unit{}, .level = SafetyLevel::regenerable, .title = "{parent} · .next", .explanation = "Next.js derleme önbelleği."},
        {.match = Rule::Name{".nuxt", {"package.json"}, {}}, .kind = Rule::Unit{}, .level = SafetyLevel::regenerable, .title = "{parent} · .nuxt", .explanation = "Nuxt derleme önbelleği."},
        {.match = Rule::Name{".turbo", {"package.json"}, {}}, .kind = Rule::Unit{}, .level = SafetyLevel::regenerable, .title = "{parent} · .turbo", .explanation = "Turborepo önbelleği."},
        {.match = Rule::Name{".parcel-cache", {"package.json"}, {}}, .kind = Rule::Unit{}, .level = SafetyLevel::regenerable, .title = "{parent} · .parcel-cache", .explanation = "Parcel önbelleği."},
        {.match = Rule::Name{".expo", {"package.json", "app.json"}, {}}, .kind = Rule::Unit{}, .level = SafetyLevel::regenerable, .title = "{parent} · .expo", .explanation = "Expo proje önbelleği."},
        {.match = Rule::Name{"dist", {"package.json"}, {}}, .kind = Rule::Unit{}, .level = SafetyLevel::regenerable, .title = "{parent} · dist", .explanation = "Derlenmiş çıktı. `npm run build` ile yeniden oluşur."},
        {.match = Rule::Name{"target", {"Cargo.toml"}, {}}, .kind = Rule::Unit{}, .level = SafetyLevel::regenerable, .title = "{parent} · target", .explanation = "Rust derleme çıktıları. `cargo build` ile yeniden oluşur."},
        {.match = Rule::Name{".venv", {}, {}}, .kind = Rule::Unit{}, .level = SafetyLevel::regenerable, .title = "{parent} · .venv", .explanation = "Python sanal ortamı. requirements dosyasından yeniden kurulabilir."},
        {.match = Rule::Name{"venv", {"requirements.txt", "pyproject.toml", "setup.py"}, {}}, .kind = Rule::Unit{}, .level = SafetyLevel::regenerable, .title = "{parent} · venv", .explanation = "Python sanal ortamı. requirements dosyasından yeniden kurulabilir."},
        {.match = Rule::Name{"*.trace", {}, {}}, .kind = Rule::Unit{}, .level = SafetyLevel::regenerable, .title = "Instruments kaydı: {name}", .explanation = "Kaydedilmiş bir Instruments profil kaydı. Yeniden kayıt alınabilir; karşılaştırma için sakladıysan silmeden önce bir bak."},
        {.match = Rule::Name{"DerivedData", {}, {}}, .kind = Rule::Unit{}, .level = SafetyLevel::regenerable, .title = "{parent} · DerivedData", .explanation = "Xcode derleme verisi. Yeniden oluşur."},
        {.match = Rule::Name{"Cache", {}, {}}, .kind = Rule::Unit{}, .level = SafetyLevel::regenerable, .title = "{parent} · önbellek", .explanation = "Uygulama önbelleği. Silinirse gerektiğinde yeniden oluşturulur.", .inPersonal = false},
        {.match = Rule::Name{"Caches", {}, {}}, .kind = Rule::Unit{}, .level = SafetyLevel::regenerable, .title = "{parent} · önbellek", .explanation = "Uygulama önbelleği. Silinirse gerektiğinde yeniden oluşturulur.", .inPersonal = false},
        {.match = Rule::Name{"CachedData", {}, {}}, .kind = Rule::Unit{}, .level = SafetyLevel::regenerable, .title = "{parent} · önbellek", .explanation = "Electron uygulama önbelleği. Silinirse yeniden oluşturulur.", .inPersonal = false},
        {.match = Rule::Name{"Code Cache", {}, {}}, .kind = Rule::Unit{}, .level = SafetyLevel::regenerable, .title = "{parent} · kod önbelleği", .explanation = "Tarayıcı motorunun derlenmiş JavaScript önbelleği.", .inPersonal = false},
        {.match = Rule::Name{"GPUCache", {}, {}}, .kind = Rule::Unit{}, .level = SafetyLevel::regenerable, .title = "{parent} · GPU önbelleği", .explanation = "Grafik önbelleği.", .inPersonal = false},
        {.match = Rule::Name{"ShaderCache", {}, {}}, .kind = Rule::Unit{}, .level = SafetyLevel::regenerable, .title = "{parent} · shader önbelleği", .explanation = "Grafik önbelleği.", .inPersonal = false},
        {.match = Rule::Name{"CachedExtensionVSIXs", {}, {}}, .kind = Rule::Unit{}, .level = SafetyLevel::regenerable, .title = "{parent} · eklenti indirmeleri", .explanation = "Eklentilerin indirilen kurulum dosyaları.", .inPersonal = false},
        {.match = Rule::Name{"Service Worker", {}, {}}, .kind = Rule::Unit{}, .level = SafetyLevel::regenerable, .title = "{parent} · web önbelleği", .explanation = "Web sayfalarının çevrimdışı önbelleği.", .inPersonal = false},
        {.match = Rule::Name{"logs", {}, {}}, .kind = Rule::Unit{}, .level = SafetyLevel::safe, .title = "{parent} · kayıtlar", .explanation = "Günlük dosyaları. Hata ayıklamıyorsan silmek güvenli.", .inPersonal = false},
        {.match = Rule::Name{"Crashpad", {}, {}}, .kind = Rule::Unit{}, .level = SafetyLevel::safe, .title = "{parent} · çökme raporları", .explanation = "Çökme raporları. Silmek güvenli.", .inPersonal = false},
    };
}
// clang-format on

}  // namespace

const std::vector<Rule>& all() {
    static const std::vector<Rule> rules = table();
    return rules;
}

}  // namespace ulvak::RuleBook
