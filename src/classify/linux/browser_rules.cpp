#include <string_view>

#include "classify/linux/rule_tables.h"

namespace ulvak::RuleBook {
namespace {

// clang-format off
// Texts that several rows share.
constexpr std::string_view pages = "Tarayıcının sakladığı sayfa ve resim kopyaları. Silinirse siteler ilk açılışta yeniden yüklenir; yer imlerin ve oturumların etkilenmez.";
constexpr std::string_view profile = "Yer imlerin, geçmişin, şifrelerin, eklentilerin ve oturumların. Yer açmak için tarayıcının ayarlarından gezinti verilerini temizle; klasörü silme.";
constexpr std::string_view chrome = "Yer imlerin, geçmişin, şifrelerin ve eklentilerin. Yer açmak için tarayıcının adres çubuğuna chrome://settings/clearBrowserData yaz.";
constexpr std::string_view firefox = "Yer imlerin, geçmişin, şifrelerin ve eklentilerin. Yer açmak için adres çubuğuna about:preferences#privacy yaz ve çerezleri, site verilerini oradan temizle.";
constexpr std::string_view component = "Tarayıcı motorunun kendisi için indirdiği bileşenler. Silinirse gerektiğinde yeniden indirilir.";
constexpr std::string_view graphics = "Grafik önbelleği. Silinirse yeniden oluşturulur.";
constexpr std::string_view model = "Tarayıcının yerel yapay zeka özellikleri için indirdiği model. Silinirse özellik açık kaldıkça yeniden indirilir.";
constexpr std::string_view siteData = "Web sitelerinin ve web uygulamalarının bu bilgisayarda tuttuğu veriler: taslaklar, çevrimdışı belgeler, oturumlar. Silinirse geri gelmeyebilir.";

// One row per line, so that rows can be compared.
constexpr Row rows[] = {
    // Firefox and its relatives: pages.
    {.path = "$cache/mozilla", .level = SafetyLevel::regenerable, .title = "Firefox önbelleği", .explanation = pages, .quitApps = {"Firefox", "Firefox ESR"}, .processes = {"firefox", "firefox-bin", "firefox-esr"}},
    {.path = "$cache/librewolf", .level = SafetyLevel::regenerable, .title = "LibreWolf önbelleği", .explanation = pages, .quitApps = {"LibreWolf"}, .processes = {"librewolf", "librewolf-bin"}},
    {.path = "$cache/waterfox", .level = SafetyLevel::regenerable, .title = "Waterfox önbelleği", .explanation = pages, .quitApps = {"Waterfox"}, .processes = {"waterfox", "waterfox-bin"}},
    {.path = "$cache/zen", .level = SafetyLevel::regenerable, .title = "Zen Browser önbelleği", .explanation = pages, .quitApps = {"Zen Browser", "Zen"}, .processes = {"zen", "zen-bin"}},
    {.path = "$cache/floorp", .level = SafetyLevel::regenerable, .title = "Floorp önbelleği", .explanation = pages, .quitApps = {"Floorp"}, .processes = {"floorp", "floorp-bin"}},
    {.path = "$cache/firedragon", .level = SafetyLevel::regenerable, .title = "FireDragon önbelleği", .explanation = pages, .quitApps = {"FireDragon"}, .processes = {"firedragon*"}},
    {.path = "$cache/moonchild productions", .level = SafetyLevel::regenerable, .title = "Pale Moon önbelleği", .explanation = pages, .quitApps = {"Pale Moon", "Basilisk"}, .processes = {"palemoon", "basilisk"}},
    {.path = "$cache/torbrowser", .level = SafetyLevel::regenerable, .title = "Tor Browser indirmeleri", .explanation = "Tor Browser'ın indirilmiş kurulum dosyaları. Silinirse gerektiğinde yeniden indirilir.", .quitApps = {"Tor Browser"}},

    // Firefox and its relatives: profiles. What they make again in there is found by name, below.
    {.path = "~/.mozilla", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "Mozilla verileri", .explanation = firefox, .quitApps = {"Firefox", "Firefox ESR"}, .processes = {"firefox", "firefox-bin", "firefox-esr"}, .actionable = false},
    {.path = "$config/mozilla", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "Mozilla verileri", .explanation = firefox, .quitApps = {"Firefox", "Firefox ESR"}, .processes = {"firefox", "firefox-bin", "firefox-esr"}, .actionable = false},
    {.path = "{~/.mozilla/firefox,~/.mozilla/firefox-esr,$config/mozilla/firefox}", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "Firefox profilleri", .explanation = firefox, .quitApps = {"Firefox", "Firefox ESR"}, .processes = {"firefox", "firefox-bin", "firefox-esr"}, .actionable = false},
    {.path = "{~/.librewolf,$config/librewolf}", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "LibreWolf profilleri", .explanation = firefox, .quitApps = {"LibreWolf"}, .processes = {"librewolf", "librewolf-bin"}, .actionable = false},
    {.path = "~/.waterfox", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "Waterfox profilleri", .explanation = firefox, .quitApps = {"Waterfox"}, .processes = {"waterfox", "waterfox-bin"}, .actionable = false},
    {.path = "{~/.zen,$config/zen}", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "Zen Browser profilleri", .explanation = firefox, .quitApps = {"Zen Browser", "Zen"}, .processes = {"zen", "zen-bin"}, .actionable = false},
    {.path = "~/.floorp", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "Floorp profilleri", .explanation = firefox, .quitApps = {"Floorp"}, .processes = {"floorp", "floorp-bin"}, .actionable = false},
    {.path = "~/.firedragon", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "FireDragon profilleri", .explanation = firefox, .quitApps = {"FireDragon"}, .processes = {"firedragon*"}, .actionable = false},
    {.path = "~/.moonchild productions", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "Pale Moon profilleri", .explanation = profile, .quitApps = {"Pale Moon", "Basilisk"}, .processes = {"palemoon", "basilisk"}, .actionable = false},
    {.path = "$data/torbrowser", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "Tor Browser", .explanation = "Tor Browser'ın kendisi, yer imlerin ve indirdiğin dosyalar. Silersen program yeniden iner, yer imleri ve indirilenler geri gelmez.", .quitApps = {"Tor Browser"}, .processes = {"firefox.real", "tor"}, .actionable = false},

    // What every profile of this family makes again. "prefs.js" beside it says that it is a profile.
    {.name = "{startupCache,shader-cache,OfflineCache,gmp,gmp-*}", .siblings = {"prefs.js"}, .level = SafetyLevel::regenerable, .title = "Profil önbelleği: {name}", .explanation = "Tarayıcının profilde yeniden oluşturduğu ya da yeniden indirdiği dosyalar. Silmeden önce tarayıcıyı kapat.", .inPersonal = false},
    {.name = "{minidumps,crashes,datareporting,saved-telemetry-pings}", .siblings = {"prefs.js"}, .level = SafetyLevel::safe, .title = "Profil kayıtları: {name}", .explanation = "Çökme raporları ve kullanım ölçümleri. Silmek güvenli.", .inPersonal = false},
    {.name = "cache2", .holds = {"entries"}, .level = SafetyLevel::regenerable, .title = "{parent} · sayfa önbelleği", .explanation = pages, .inPersonal = false},

    // Chromium and its relatives: pages.
    {.path = "$cache/{google-chrome,google-chrome-beta,google-chrome-unstable,google-chrome-canary,google-chrome-for-testing}", .level = SafetyLevel::regenerable, .title = "Chrome önbelleği", .explanation = pages, .quitApps = {"Google Chrome"}, .processes = {"chrome"}},
    {.path = "$cache/{chromium,ungoogled-chromium,thorium,iridium,cromite}", .level = SafetyLevel::regenerable, .title = "{name} önbelleği", .explanation = pages, .quitApps = {"Chromium", "Ungoogled Chromium", "Thorium Browser", "Iridium"}, .processes = {"chromium*", "chrome", "thorium*", "iridium*"}},
    {.path = "$cache/BraveSoftware", .level = SafetyLevel::regenerable, .title = "Brave önbelleği", .explanation = pages, .quitApps = {"Brave", "Brave Web Browser"}, .processes = {"brave*"}},
    {.path = "$cache/{microsoft-edge,microsoft-edge-beta,microsoft-edge-dev}", .level = SafetyLevel::regenerable, .title = "Edge önbelleği", .explanation = pages, .quitApps = {"Microsoft Edge"}, .processes = {"msedge*"}},
    {.path = "$cache/{vivaldi,vivaldi-snapshot}", .level = SafetyLevel::regenerable, .title = "Vivaldi önbelleği", .explanation = pages, .quitApps = {"Vivaldi"}, .processes = {"vivaldi*"}},
    {.path = "$cache/{opera,opera-beta,opera-developer}", .level = SafetyLevel::regenerable, .title = "Opera önbelleği", .explanation = pages, .quitApps = {"Opera"}, .processes = {"opera*"}},
    {.path = "$cache/{yandex-browser,yandex-browser-beta}", .level = SafetyLevel::regenerable, .title = "Yandex Browser önbelleği", .explanation = pages, .quitApps = {"Yandex Browser"}, .processes = {"yandex*"}},

    // Chromium and its relatives: profiles.
    {.path = "$config/{google-chrome,google-chrome-beta,google-chrome-unstable,google-chrome-canary,google-chrome-for-testing}", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "Chrome verileri", .explanation = chrome, .quitApps = {"Google Chrome"}, .processes = {"chrome"}, .actionable = false},
    {.path = "$config/google-chrome*/{Default,Profile *,Guest Profile}", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "Chrome profili: {name}", .explanation = chrome, .quitApps = {"Google Chrome"}, .processes = {"chrome"}, .actionable = false},
    {.path = "$config/google-chrome*/{OptGuideOnDeviceModel,OptGuideOnDeviceClassifierModel}", .level = SafetyLevel::regenerable, .title = "Chrome'un cihaz içi AI modeli", .explanation = "Chrome'un yerel yapay zeka özellikleri için indirdiği model. Silinirse Chrome gerektiğinde tekrar indirir. Kalıcı olarak kapatmak için chrome://settings/ai adresinden özelliği kapat.", .quitApps = {"Google Chrome"}, .processes = {"chrome"}},
    {.path = "$config/{chromium,ungoogled-chromium,thorium,iridium,cromite,net.imput.helium}", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "{name} profilleri", .explanation = chrome, .quitApps = {"Chromium", "Ungoogled Chromium", "Thorium Browser", "Iridium", "Helium"}, .processes = {"chromium*", "chrome", "thorium*", "iridium*", "helium*"}, .actionable = false},
    {.path = "~/snap/chromium/common/chromium", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "Chromium profilleri", .explanation = chrome, .quitApps = {"Chromium", "Chromium Web Browser"}, .processes = {"chrome", "chromium*"}, .actionable = false},
    {.path = "$config/BraveSoftware", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "Brave profilleri", .explanation = chrome, .quitApps = {"Brave", "Brave Web Browser"}, .processes = {"brave*"}, .actionable = false},
    {.path = "$config/{microsoft-edge,microsoft-edge-beta,microsoft-edge-dev}", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "Edge profilleri", .explanation = chrome, .quitApps = {"Microsoft Edge"}, .processes = {"msedge*"}, .actionable = false},
    {.path = "$config/{vivaldi,vivaldi-snapshot}", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "Vivaldi profilleri", .explanation = "Yer imlerin, geçmişin, şifrelerin, notların; Vivaldi'de posta kullanıyorsan postaların da burada. Klasörü silme; gezinti verilerini ayarlardan temizle.", .quitApps = {"Vivaldi"}, .processes = {"vivaldi*"}, .actionable = false},
    {.path = "$config/{opera,opera-beta,opera-developer}", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "Opera profili", .explanation = chrome, .quitApps = {"Opera"}, .processes = {"opera*"}, .actionable = false},
    {.path = "$config/{yandex-browser,yandex-browser-beta}", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "Yandex Browser profilleri", .explanation = chrome, .quitApps = {"Yandex Browser"}, .processes = {"yandex*"}, .actionable = false},

    // What a Chromium engine makes or downloads again, in browsers and in applications built upon it. "Local State"
    // beside it says that it is such a folder.
    {.name = "{component_crx_cache,extensions_crx_cache}", .siblings = {"Local State"}, .level = SafetyLevel::regenerable, .title = "{parent} · eklenti indirmeleri", .explanation = component, .inPersonal = false},
    {.name = "{screen_ai,SODA,SODALanguagePacks,WasmTtsEngine,TranslateKit,WidevineCdm,Safe Browsing,Subresource Filter,hyphen-data,ZxcvbnData,pnacl,PKIMetadata,Dictionaries}", .siblings = {"Local State"}, .level = SafetyLevel::regenerable, .title = "Tarayıcı bileşeni: {name}", .explanation = component, .inPersonal = false},
    {.name = "{OptGuideOnDeviceModel,OptGuideOnDeviceClassifierModel,OnDeviceHeadSuggestModel,optimization_guide_model_store,optimization_guide_prediction_model_downloads}", .siblings = {"Local State"}, .level = SafetyLevel::regenerable, .title = "{parent} · cihaz içi modeller", .explanation = model, .inPersonal = false},
    {.name = "BrowserMetrics", .siblings = {"Local State"}, .level = SafetyLevel::safe, .title = "{parent} · kullanım ölçümleri", .explanation = "Tarayıcının göndermek için biriktirdiği ölçümler. Silmek güvenli.", .inPersonal = false},
    {.name = "Crash Reports", .level = SafetyLevel::safe, .title = "{parent} · çökme raporları", .explanation = "Çökme raporları. Silmek güvenli.", .inPersonal = false},
    {.name = "Snapshots", .siblings = {"Local State"}, .level = SafetyLevel::caution, .title = "{parent} · profil yedekleri", .explanation = "Tarayıcının sürüm yükseltmeden önce aldığı profil kopyaları. Eski sürüme dönmeyeceksen gerekmez.", .inPersonal = false},
    {.name = "{GrShaderCache,GraphiteDawnCache,DawnCache,DawnGraphiteCache,DawnWebGPUCache}", .level = SafetyLevel::regenerable, .title = "{parent} · grafik önbelleği", .explanation = graphics, .inPersonal = false},
    {.name = "{CacheStorage,Service Worker/ScriptCache}", .level = SafetyLevel::regenerable, .title = "Web önbelleği: {name}", .explanation = "Web sayfalarının çevrimdışı önbelleği. Siteyi yeniden açınca geri gelir.", .inPersonal = false},
    // Beside a "Local Storage" these are caches also among the user's own files, in a profile of one's own making.
    {.name = "Cache", .siblings = {"Local Storage", "Network Persistent State"}, .level = SafetyLevel::regenerable, .title = "{parent} · önbellek", .explanation = "Uygulama önbelleği. Silinirse gerektiğinde yeniden oluşturulur."},
    {.name = "Code Cache", .siblings = {"Local Storage", "Network Persistent State"}, .level = SafetyLevel::regenerable, .title = "{parent} · kod önbelleği", .explanation = "Tarayıcı motorunun derlenmiş JavaScript önbelleği."},
    {.name = "GPUCache", .siblings = {"Local Storage", "Network Persistent State"}, .level = SafetyLevel::regenerable, .title = "{parent} · GPU önbelleği", .explanation = "Grafik önbelleği."},
    // Some programs call the whole profile "cache"; the logins are in it.
    {.name = "Cache", .holds = {"Local Storage", "IndexedDB", "Cookies"}, .container = ScanContext::application, .level = SafetyLevel::caution, .title = "{parent} · web oturumu", .explanation = "Uygulamanın içindeki tarayıcının önbelleği, oturumu ve site verileri birlikte. Silinirse yeniden giriş yapman gerekebilir."},
    {.name = "{Application Cache,Media Cache,PnaclTranslationCache,optimization_guide_hint_cache_store}", .siblings = {"Preferences", "Local Storage"}, .level = SafetyLevel::regenerable, .title = "{parent} · önbellek", .explanation = "Tarayıcı motorunun önbelleği. Silinirse yeniden oluşturulur.", .inPersonal = false},
    {.name = "blob_storage", .siblings = {"Local Storage"}, .level = SafetyLevel::regenerable, .title = "{parent} · geçici web verisi", .explanation = "Açık sayfaların geçici verileri. Uygulamayı kapattıktan sonra gerekmez.", .inPersonal = false},
    {.name = "{IndexedDB,Local Storage,Session Storage,File System,Local Extension Settings}", .siblings = {"Preferences", "Cookies", "Local State", "Network", "Network Persistent State"}, .level = SafetyLevel::keep, .title = "{parent} · site verileri", .explanation = siteData, .actionable = false},

    // Other engines.
    {.path = "$cache/{epiphany,org.gnome.Epiphany}", .level = SafetyLevel::regenerable, .title = "GNOME Web önbelleği", .explanation = pages, .quitApps = {"Web"}, .processes = {"epiphany*"}},
    {.path = "{$data/epiphany,$config/epiphany}", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "GNOME Web profili", .explanation = profile, .quitApps = {"Web"}, .processes = {"epiphany*"}, .actionable = false},
    {.path = "$cache/{midori,astian,falkon,konqueror,qutebrowser,luakit,surf,netsurf,nyxt,otter,Ladybird}", .level = SafetyLevel::regenerable, .title = "{name} önbelleği", .explanation = pages, .quitApps = {"Midori", "Falkon", "Konqueror", "qutebrowser", "Otter Browser", "Nyxt"}, .processes = {"midori*", "falkon", "konqueror", "qutebrowser", "luakit", "surf", "netsurf*", "nyxt", "otter-browser", "Ladybird"}},
    {.path = "{$config/midori,~/.midori,$config/falkon,$data/falkon,$data/konqueror,$data/qutebrowser,$data/luakit,$data/nyxt,$config/otter,$data/Ladybird,$data/angelfish,$config/Min,~/.surf,~/.dillo,~/.dooble,~/.lynx,~/.w3m,~/.elinks}", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "Tarayıcı profili: {name}", .explanation = profile, .actionable = false},
};
// clang-format on

}  // namespace

Rows browserRows() {
    return rows;
}

}  // namespace ulvak::RuleBook
