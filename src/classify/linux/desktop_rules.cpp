#include <string_view>

#include "classify/linux/rule_tables.h"

namespace ulvak::RuleBook {
namespace {

// clang-format off
// Texts that several rows share.
constexpr std::string_view credentials = "Hesaplara ve sunuculara girişini sağlayan anahtarlar, parolalar ya da oturum bilgileri. Silersen erişimini kaybedersin. Asla silme.";
constexpr std::string_view passwords = "Parolaların ve kasaların. Başka bir yerde kopyası yoksa geri gelmez. Asla silme.";
constexpr std::string_view wallet = "Kripto para cüzdanı. Anahtarları başka bir yerde yedekli değilse para da gider. Asla silme.";
constexpr std::string_view chain = "İndirilmiş blok zinciri. Cüzdanı etkilemez, ama yeniden indirip doğrulaması günler sürebilir. Silmeden önce düğüm programını kapat.";
constexpr std::string_view theme = "Kendin kurduğun görünüm ve eklenti paketleri. Silersen yeniden kurman gerekir; kullanılanlar varsayılana döner.";
constexpr std::string_view learned = "Klavye giriş yönteminin ayarları ve senden öğrendiği sözcükler. Silinirse öğrendikleri geri gelmez.";
constexpr std::string_view shaders = "Ekran kartı için derlenmiş gölgelendiriciler. Silinirse yeniden derlenir; oyunlar ilk açılışta biraz takılabilir. Oturumu kapatıp açtıktan sonra yenilenir.";
constexpr std::string_view clipboard = "Kopyaladığın metin ve resimlerin geçmişi. Silinirse geçmiş gider, geri gelmez.";
constexpr std::string_view encrypted = "Şifrelenmiş dosyaların kendisi. Kasa kapalıyken okunmaz görünürler, ama silinirse içindeki belgeler de gider.";

// One row per line, so that rows can be compared.
constexpr Row rows[] = {
    // Known on every system, but not told like this.
    {.path = "$T/*", .level = SafetyLevel::safe, .title = "Geçici dosya: {name}", .explanation = "Uygulamaların geçici çalışma alanı. Açık bir uygulama şu an kullanıyor olabilir; emin değilsen ilgili uygulamayı kapattıktan sonra sil. Sistem bunların eskilerini kendisi de temizler."},

    // Where applications keep their settings, data and state. What nothing else names in there is kept.
    // Known at its usual place on every system; these are for one that was moved, and inside sandboxes.
    {.path = "$cache", .container = ScanContext::normal},
    {.path = "$cache/*", .level = SafetyLevel::regenerable, .title = "{name} önbelleği", .explanation = "Bir uygulamanın önbelleği. Silinirse uygulama gerektiğinde yeniden oluşturur ya da indirir; açıksa önce kapat."},
    {.path = "$data/Trash", .level = SafetyLevel::safe, .title = "Çöp Kutusu", .explanation = "Çöp kutusuna attığın dosyalar. Boşaltana kadar yer kaplamaya devam ederler. Dosya yöneticinden boşaltabilirsin.", .actionable = false},
    // Work and keys that do not belong in a cache, whoever put them there: the cache around is looked into.
    {.path = "$cache/*/{autosave,autosaves,auto-save,auto-save-list,autosaved,recovery,recover,recovered,unsaved,swap,undo,undodir,backup,backups,drafts,outbox,LocalHistory}", .level = SafetyLevel::keep, .title = "{parent} · kurtarma kopyaları", .explanation = "Kaydedilmemiş ya da eski çalışmalarının kopyaları. Önbellek klasöründe durur ama geri gelmez.", .actionable = false},
    {.path = "$cache/*/*/{autosave,autosaves,auto-save,auto-save-list,autosaved,unsaved,drafts,outbox,SessionData,LocalHistory}", .level = SafetyLevel::keep, .title = "{parent} · kurtarma kopyaları", .explanation = "Kaydedilmemiş ya da eski çalışmalarının kopyaları. Önbellek klasöründe durur ama geri gelmez.", .actionable = false},
    {.path = "$cache/{*,*/*}/{saves,savegame,savegames,save games,recordings,conversations,chats,wallets,keystore,private-keys-v1.d,drive_c}", .level = SafetyLevel::keep, .title = "{parent} · {name}", .explanation = "Önbellek klasöründe durur ama adı başka şey söylüyor: kayıtlı oyunlar, kayıtlar, sohbetler ya da anahtarlar. Silinirse geri gelmez.", .actionable = false},
    {.path = "$cache/*/{history,sessions,notes,SessionData}", .level = SafetyLevel::keep, .title = "{parent} · {name}", .explanation = "Önbellek klasöründe durur ama adı başka şey söylüyor: geçmişin, oturumların ya da notların. Silinirse geri gelmez.", .actionable = false},
    {.path = "$cache/{*,*/*}/{queue,spool,unsent,rawstaging}", .level = SafetyLevel::keep, .title = "{parent} · gönderilmeyi bekleyenler", .explanation = "Henüz gönderilmemiş iletiler ya da dosyalar olabilir; yalnızca burada dururlar. Önce gönderilmelerini bekle.", .actionable = false},
    {.path = "$cache/*/{token,tokens,stored_tokens,credentials,credentials.json,credentials.toml,credentials.db,auth.json,access_token,secrets}", .level = SafetyLevel::keep, .title = "{parent} girişi", .explanation = "Bir hesaba giriş anahtarların. Silersen yeniden giriş yapman gerekir.", .actionable = false},
    {.path = "$config", .container = ScanContext::normal},
    {.path = "$config/*", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "{name} ayarları", .explanation = "Bir uygulamanın ayarları ve oturum bilgileri. Silinirse uygulama ilk kurulduğu hâline döner. Uygulamayı artık kullanmıyorsan silebilirsin."},
    {.path = "$data", .container = ScanContext::normal},
    {.path = "$data/*", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "{name} verileri", .explanation = "Bir uygulamanın senin için sakladığı veriler. Silinirse geri gelmeyebilir. Uygulamayı artık kullanmıyorsan önce içine bak."},
    {.path = "$state", .container = ScanContext::normal},
    {.path = "$state/*", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "{name} durum bilgileri", .explanation = "Bir uygulamanın geçmişi, geri alma kayıtları ve son durumu. Silinirse bunlar gider."},
    {.path = "~/.local", .container = ScanContext::normal},
    {.path = "~/.local/*", .container = ScanContext::application, .level = SafetyLevel::caution, .title = "Ana klasöre kurulmuş: {name}", .explanation = "Yalnızca senin için kurulmuş programlar ve onların dosyaları; kendi yazdığın betikler de burada olabilir. Silersen yeniden kurman gerekir."},
    {.path = "~/.*", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "{name} verileri", .explanation = "Bir programın ayarlarını ve verilerini tuttuğu gizli bir klasör ya da dosya. Programı artık kullanmıyorsan silebilirsin; emin değilsen bırak."},

    // Flatpak applications.
    {.path = "~/.var", .container = ScanContext::normal},
    {.path = "~/.var/app", .container = ScanContext::normal},
    {.path = "~/.var/app/*", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "{name} verileri", .explanation = "Bir Flatpak uygulamasının ayarları ve verileri. Uygulama kaldırılınca da kalır; ikisini birlikte `flatpak uninstall --delete-data` ile kaldırabilirsin.", .resolver = Rule::Resolver::application},
    {.path = "~/.var/app/*/{config,data,.local,.local/share,.local/state,.config}", .container = ScanContext::normal},
    {.path = "~/.var/app/*/{cache,.cache}", .container = ScanContext::normal},
    {.path = "~/.var/app/*/{cache,.cache}/*", .level = SafetyLevel::regenerable, .title = "{name} önbelleği", .explanation = "Bir Flatpak uygulamasının önbelleği. Silinirse uygulama gerektiğinde yeniden oluşturur; açıksa önce kapat."},
    // What the application sees as /var/tmp: recordings and projects that were not saved yet can lie here.
    {.path = "~/.var/app/*/cache/tmp", .level = SafetyLevel::caution, .title = "Flatpak uygulamasının geçici dosyaları", .explanation = "Bir Flatpak uygulamasının geçici çalışma alanı. Henüz kaydedilmemiş işler burada olabilir; uygulamayı kapatmadan ve kaydetmeden silme."},
    {.path = "~/.var/app/*/data/flatpak", .level = SafetyLevel::caution, .title = "Flatpak içindeki Flatpak uygulamaları", .explanation = "Bir Flatpak uygulamasının kendi içine kurduğu uygulamalar. Silinirse yeniden kurmak gerekir.", .actionable = false},

    // Snaps. A revision has a folder of its own beside the common one.
    {.path = "~/snap", .container = ScanContext::normal},
    {.path = "~/snap/*", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "{name} verileri", .explanation = "Bir Snap uygulamasının ayarları ve verileri; `common` ortak, sayılı klasörler sürümlere ait. Eski sürümleri `snap list --all` gösterir, `snap remove AD --revision=SAYI` verileriyle kaldırır.", .resolver = Rule::Resolver::application, .actionable = false},
    {.path = "~/snap/*/*", .container = ScanContext::normal},
    {.path = "~/snap/*/*/{.config,.local,.local/share,.local/state,.var}", .container = ScanContext::normal},
    {.path = "~/snap/*/*/.cache", .container = ScanContext::normal},
    {.path = "~/snap/*/*/.cache/*", .level = SafetyLevel::regenerable, .title = "{name} önbelleği", .explanation = "Bir Snap uygulamasının önbelleği. Silinirse uygulama gerektiğinde yeniden oluşturur; açıksa önce kapat."},

    // Caches that are none, or not only.
    {.path = "$cache/doc", .level = SafetyLevel::keep, .title = "Açık belgelerin bağlantı noktası", .explanation = "Yalıtılmış uygulamaların açtığı belgeler burada görünür. Önbellek değil: silmek belgelerin kendisini siler.", .actionable = false},
    {.path = "~/.gvfs", .level = SafetyLevel::keep, .title = "Bağlı ağ klasörleri", .explanation = "Dosya yöneticisinde bağlanan ağ klasörleri burada görünür. Silmek sunucudaki dosyaları siler.", .actionable = false},
    {.path = "$cache/{ibus,libpinyin}", .level = SafetyLevel::keep, .title = "Klavye giriş yönteminin sözlüğü", .explanation = learned, .actionable = false},
    {.path = "$cache/{gnome-control-center,wallpaper}", .level = SafetyLevel::keep, .title = "Arka plan resimleri", .explanation = "Ayarlar'da seçtiğin arka plan resimlerinin kopyaları. Asılları silindiyse tek kopya bunlardır.", .actionable = false},
    {.path = "$cache/obexd", .level = SafetyLevel::keep, .title = "Bluetooth ile gelen dosyalar", .explanation = "Bluetooth ile alınmış dosyalar. İndirilenler klasörüne taşınmadılarsa tek kopya bunlardır.", .actionable = false},
    {.path = "$cache/sessions", .level = SafetyLevel::caution, .title = "Kayıtlı masaüstü oturumu", .explanation = "Oturum kapanırken açık olan pencerelerin kaydı. Silinirse masaüstü bir sonraki açılışta boş başlar."},
    {.path = "$cache/{cliphist,clipse,clipcat,parcellite,clipboard-indicator@tudmotu.com}", .level = SafetyLevel::caution, .title = "Pano geçmişi", .explanation = clipboard},
    {.path = "$cache/xfce4", .container = ScanContext::normal},
    {.path = "$cache/xfce4/clipman", .level = SafetyLevel::caution, .title = "Pano geçmişi", .explanation = clipboard},
    {.path = "$cache/xfce4/*", .level = SafetyLevel::regenerable, .title = "Xfce önbelleği: {name}", .explanation = "Masaüstünün küçük dosyaları. Silinirse yeniden oluşturulur."},

    {.path = "$cache/simple-scan/autosaves", .level = SafetyLevel::caution, .title = "Kaydedilmemiş taramalar", .explanation = "Belge tarayıcıda taranmış ama kaydedilmemiş sayfalar. Önce programı açıp kurtarılacak bir şey var mı bak.", .quitApps = {"Document Scanner", "Simple Scan"}, .processes = {"simple-scan"}},
    {.path = "$cache/simple-scan/*", .level = SafetyLevel::regenerable, .title = "Belge tarayıcı önbelleği: {name}", .explanation = "Belge tarayıcının önbelleği. Silinirse yeniden oluşturulur.", .quitApps = {"Document Scanner", "Simple Scan"}, .processes = {"simple-scan"}},
    {.path = "$cache/kioexec", .level = SafetyLevel::caution, .title = "Uzaktan açılmış dosyalar", .explanation = "KDE'nin uzak bir klasörden açıp geçici olarak buraya indirdiği dosyalar. Değiştirip geri yüklemediklerin yalnızca burada durur."},

    // What the desktop makes again by itself.
    {.path = "{$cache/thumbnails,~/.thumbnails}", .level = SafetyLevel::regenerable, .title = "Küçük resimler", .explanation = "Dosya yöneticisinin resim ve videolar için hazırladığı küçük önizlemeler. Silinirse klasörler açıldıkça yeniden oluşturulur."},
    {.path = "{$cache/fontconfig,~/.fontconfig}", .level = SafetyLevel::regenerable, .title = "Yazı tipi dizini", .explanation = "Kurulu yazı tiplerinin dizini. Silinirse kendiliğinden ya da `fc-cache` ile yeniden oluşturulur."},
    {.path = "$cache/{mesa_shader_cache,mesa_shader_cache_db,mesa_shader_cache_sf,radv_builtin_shaders*,qtshadercache-*,AMD}", .level = SafetyLevel::regenerable, .title = "Gölgelendirici önbelleği", .explanation = shaders},
    {.path = "$cache/nvidia", .container = ScanContext::normal},
    {.path = "$cache/nvidia/*", .level = SafetyLevel::regenerable, .title = "NVIDIA önbelleği: {name}", .explanation = shaders},
    {.path = "~/.nv", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "NVIDIA ayarları", .explanation = "NVIDIA sürücüsünün uygulama ayarları."},
    {.path = "~/.nv/GLCache", .level = SafetyLevel::regenerable, .title = "NVIDIA gölgelendirici önbelleği", .explanation = shaders},
    {.path = "~/.nv/ComputeCache", .level = SafetyLevel::regenerable, .title = "CUDA derleme önbelleği", .explanation = "CUDA programlarının bu ekran kartı için derlenmiş parçaları. Silinirse ilk çalıştırmada yeniden derlenir."},
    {.path = "$cache/{gstreamer-1.0,gtk-4.0,gtksourceview*,icon-cache.kcache,ksycoca*,plasma*,plasmashell,krunner,dolphin,nautilus,nemo,cinnamon,mate,lxqt*,folks,event-sound-cache*,babl,gegl-*,upstart,gdm,lightdm}", .level = SafetyLevel::regenerable, .title = "Masaüstü önbelleği: {name}", .explanation = "Masaüstünün ve kitaplıklarının önbelleği. Silinirse gerektiğinde yeniden oluşturulur."},
    {.path = "$cache/{gnome-software,discover,PackageKit,appstream,mintinstall,pamac,flatpak}", .level = SafetyLevel::regenerable, .title = "Yazılım mağazası önbelleği: {name}", .explanation = "Uygulama listeleri, ekran görüntüleri ve simgeler. Silinirse mağaza açılınca yeniden indirilir."},

    // Indexes of the user's files.
    {.path = "$data/baloo", .level = SafetyLevel::regenerable, .title = "KDE dosya dizini", .explanation = "KDE'nin dosya aramasında kullandığı dizin. En temizi `balooctl6 purge` (eski sürümlerde `balooctl purge`): dizin silinir ve arka planda yeniden kurulur.", .processes = {"baloo_file"}, .command = "balooctl6 purge"},
    {.path = "$cache/{tracker3,tracker}", .level = SafetyLevel::regenerable, .title = "GNOME dosya dizini", .explanation = "GNOME'un dosya aramasında kullandığı dizin. En temizi `localsearch reset --filesystem` (eski sürümlerde `tracker3 reset --filesystem`): dizin silinir ve yeniden kurulur.", .processes = {"localsearch-3", "tracker-miner-f"}, .command = "localsearch reset --filesystem"},
    {.path = "$data/tracker", .level = SafetyLevel::caution, .title = "GNOME dosya dizini (eski)", .explanation = "Eski GNOME sürümlerinin dosya dizini. Dosyalar yeniden taranabilir, ama verdiğin etiketler burada durur ve geri gelmez."},
    {.path = "~/.recoll/xapiandb", .level = SafetyLevel::regenerable, .title = "Recoll arama dizini", .explanation = "Belgelerinin tam metin arama dizini. Silinirse `recollindex` ile yeniden kurulur; büyük arşivlerde uzun sürebilir.", .quitApps = {"Recoll"}, .processes = {"recoll", "recollindex"}},
    {.path = "$cache/zeitgeist", .level = SafetyLevel::regenerable, .title = "Etkinlik dizini önbelleği", .explanation = "Etkinlik geçmişi servisinin önbelleği. Silinirse yeniden oluşturulur."},
    {.path = "$data/zeitgeist", .level = SafetyLevel::caution, .title = "Etkinlik geçmişi", .explanation = "Hangi dosyayı ne zaman açtığının kaydı. Silinirse son kullanılanlar ve öneriler boşalır; dosyalarına bir şey olmaz."},
    {.path = "$data/kactivitymanagerd", .level = SafetyLevel::caution, .title = "KDE etkinlik geçmişi", .explanation = "KDE'nin etkinliklerin ve son açılan dosyalar için tuttuğu kayıt. Silinirse son kullanılanlar ve öneriler boşalır."},
    {.path = "$data/gvfs-metadata", .level = SafetyLevel::caution, .title = "Dosya yöneticisi notları", .explanation = "Klasör görünümleri, simge yerleri, amblemler ve güvenilen başlatıcılar. Silinirse bunlar varsayılana döner; dosyalarına bir şey olmaz."},
    {.path = "$data/{klipper,gpaste,diodon,copyq,clipit,parcellite}", .level = SafetyLevel::caution, .title = "Pano geçmişi", .explanation = clipboard},
    {.path = "$config/copyq", .level = SafetyLevel::keep, .title = "CopyQ panosu", .explanation = "CopyQ'nun ayarları ve sakladığın pano öğeleri. Silinirse geri gelmez.", .quitApps = {"CopyQ"}, .processes = {"copyq"}, .actionable = false},

    // Logs of the session.
    {.path = "~/{.xsession-errors,.xsession-errors.old}", .level = SafetyLevel::safe, .title = "Oturum kayıtları (log)", .explanation = "Masaüstü oturumunun günlük dosyaları. Silmek güvenli; açık olan dosyanın yeri oturum kapanınca boşalır.", .group = "xsession-errors"},
    // Called logs, but somebody wrote or measured them.
    {.name = "logs", .holds = {"#*", "*.weechatlog", "*.irclog", "*.adi", "*.adif", "*.kismet", "*.pcap", "*.pcapng", "*.bag", "*.nmea", "*.gpx", "*.sqlite", "*.db"}, .level = SafetyLevel::keep, .title = "{parent} · {name}", .explanation = "Adı günlük olsa da yazışmalar, ölçümler ya da yakalanmış veriler. Silinirse geri gelmez.", .actionable = false},
    {.path = "$data/{xorg,sddm}", .level = SafetyLevel::safe, .title = "Görüntü sunucusu kayıtları", .explanation = "X ve Wayland oturumlarının günlük dosyaları. Hata ayıklamıyorsan silmek güvenli."},
    {.path = "~/.xorgxrdp.*.log*", .level = SafetyLevel::safe, .title = "Uzak oturum kayıtları", .explanation = "Uzak masaüstü oturumlarının günlük dosyaları. Silmek güvenli.", .group = "xorgxrdp"},
    {.path = "~/.vnc/*.log", .level = SafetyLevel::safe, .title = "VNC kayıtları", .explanation = "VNC oturumlarının günlük dosyaları. Silmek güvenli.", .group = "vnc-log"},

    // What the user added to the desktop.
    {.path = "{$data/fonts,~/.fonts}", .level = SafetyLevel::keep, .title = "Yazı tiplerin", .explanation = "Kendin kurduğun yazı tipleri. Satın aldıkların da burada olabilir; silinirse belgelerin başka yazı tipiyle açılır.", .actionable = false},
    {.path = "$data/{backgrounds,wallpapers}", .level = SafetyLevel::keep, .title = "Arka plan resimleri", .explanation = "Ayarlar'dan eklediğin ya da indirdiğin arka plan resimleri. Asılları silindiyse tek kopya bunlardır.", .actionable = false},
    {.path = "$config/variety", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "Variety ayarları", .explanation = "Variety'nin ayarları ve ayırdığın arka plan resimleri.", .quitApps = {"Variety"}, .actionable = false},
    {.path = "$config/variety/Downloaded", .level = SafetyLevel::caution, .title = "Variety'nin indirdiği resimler", .explanation = "Arka plan için indirilmiş resimler. Yenileri iner, ama aynıları geri gelmeyebilir; beğendiklerini önce ayır.", .quitApps = {"Variety"}},
    {.path = "{$data/icons,$data/themes,~/.icons,~/.themes,$data/aurorae,$data/plasma,$data/gnome-shell/extensions,$data/cinnamon,$data/kwin}", .level = SafetyLevel::caution, .title = "Temalar ve eklentiler: {name}", .explanation = theme},
    {.path = "{$config/ibus,$config/fcitx,$config/fcitx5,$config/mozc,$config/libkkc,$data/fcitx5,$data/ibus-table,$data/ibus-typing-booster,$data/sunpinyin,~/.ibus,~/.mozc,~/.anthy,~/.uim.d}", .level = SafetyLevel::keep, .title = "Klavye giriş yöntemi", .explanation = learned, .actionable = false},
    {.path = "~/{.kde,.kde4}", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "Eski KDE verileri", .explanation = "KDE 3 ve 4 programlarının ayarları ve verileri; postalar ve sohbetler de burada olabilir.", .actionable = false},
    {.path = "~/{.kde,.kde4}/share", .container = ScanContext::normal},
    {.path = "~/{.kde,.kde4}/share/apps", .container = ScanContext::normal},
    {.path = "~/.kde/share/apps/{kmail,kopete,konversation,korganizer,kwallet,kgpg}", .level = SafetyLevel::keep, .title = "Eski KDE verileri: {name}", .explanation = "Eski KDE sürümlerinden kalan postalar, sohbetler, takvimler ya da parolalar. Yeni programa aktarmadıysan tek kopya bunlardır.", .actionable = false},
    {.path = "~/.kde4/share/apps/{kmail,kopete,konversation,korganizer,kwallet,kgpg}", .level = SafetyLevel::keep, .title = "Eski KDE verileri: {name}", .explanation = "Eski KDE sürümlerinden kalan postalar, sohbetler, takvimler ya da parolalar. Yeni programa aktarmadıysan tek kopya bunlardır.", .actionable = false},
    {.path = "~/{.kde,.kde4}/share/apps/nepomuk", .level = SafetyLevel::caution, .title = "Eski KDE dosya dizini", .explanation = "KDE 4'ün artık kullanılmayan dosya dizini. Dosyalara verdiğin etiketler ve puanlar yalnızca burada durur."},

    // The shell and its tools.
    {.path = "{~/.oh-my-zsh,~/.oh-my-bash,~/.zinit,~/.zplug,~/.zprezto,~/.antigen,~/.antidote,~/.fzf,$data/zinit,$data/sheldon,$data/antidote,~/.tmux/plugins,$config/tmux/plugins}", .level = SafetyLevel::caution, .title = "Kabuk eklentileri: {name}", .explanation = "Kabuğun için indirilmiş temalar ve eklentiler; kendi eklediklerin de burada olabilir. Silersen yeniden kurman gerekir."},
    {.path = "~/.debug", .level = SafetyLevel::caution, .title = "perf sembol önbelleği", .explanation = "`perf` kayıtlarının okunması için saklanan program kopyaları. Silinirse yeni kayıtlarda yeniden oluşur, ama eski kayıtlar okunmayabilir.", .processes = {"perf"}},
    {.path = "~/.debuginfod_client_cache", .level = SafetyLevel::regenerable, .title = "Hata ayıklama sembolleri", .explanation = "Hata ayıklayıcının sunucudan indirdiği semboller. Silinirse gerektiğinde yeniden indirilir.", .processes = {"gdb"}},

    // Office programs. LibreOffice keeps installed extensions in a folder called "cache".
    {.path = "$config/libreoffice", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "LibreOffice ayarları", .explanation = "Ayarların, şablonların, sözlüklerin ve kurtarma kopyaların. Silinirse LibreOffice ilk kurulduğu hâline döner.", .quitApps = {"LibreOffice"}, .processes = {"soffice.bin", "oosplash"}, .actionable = false},
    {.path = "$config/libreoffice/*/user/{uno_packages,extensions}", .level = SafetyLevel::caution, .title = "LibreOffice eklentileri", .explanation = "Kendin kurduğun LibreOffice eklentileri. Silersen yeniden kurman gerekir; eklentileri LibreOffice'in Araçlar menüsünden kaldır.", .quitApps = {"LibreOffice"}, .processes = {"soffice.bin", "oosplash"}},
    {.path = "$config/libreoffice/*/user/backup", .level = SafetyLevel::keep, .title = "LibreOffice kurtarma kopyaları", .explanation = "Kaydedilmeden kapanan belgelerin kopyaları. Önce LibreOffice'i açıp kurtarılacak bir şey var mı bak.", .quitApps = {"LibreOffice"}, .processes = {"soffice.bin", "oosplash"}, .actionable = false},
    {.path = "$data/onlyoffice", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "ONLYOFFICE verileri", .explanation = "Ayarların, bağlı bulut hesapların ve kurtarma kopyaların.", .quitApps = {"ONLYOFFICE", "ONLYOFFICE Desktop Editors"}, .processes = {"DesktopEditors", "editors"}, .actionable = false},
    {.path = "$data/onlyoffice/desktopeditors/data/cache", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "ONLYOFFICE oturumu", .explanation = "Adına karşın önbellek değil: eklentilerin ayarları ve bağlı bulut hesaplarının oturumu burada.", .quitApps = {"ONLYOFFICE", "ONLYOFFICE Desktop Editors"}, .processes = {"DesktopEditors", "editors"}, .actionable = false},
    {.path = "{$data/Kingsoft,$config/Kingsoft}", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "WPS Office verileri", .explanation = "Ayarların, şablonların ve otomatik kayıtlar. Kaydedilmemiş belgelerin kopyaları burada olabilir.", .quitApps = {"WPS Writer", "WPS Spreadsheets", "WPS Presentation", "WPS Office"}, .processes = {"wps", "et", "wpp", "wpsoffice"}, .actionable = false},

    // Maps and dictionaries.
    {.path = "$data/OMaps", .level = SafetyLevel::caution, .title = "Organic Maps haritaları", .explanation = "Çevrimdışı kullanmak için indirdiğin haritalar ve işaretlediğin yerler. Haritalar yeniden iner, işaretlerin geri gelmez.", .quitApps = {"Organic Maps"}},
    {.path = "{~/.goldendict/index,$data/goldendict/index}", .level = SafetyLevel::regenerable, .title = "GoldenDict dizini", .explanation = "Sözlüklerin arama dizini. Silinirse program açılınca yeniden kurar.", .quitApps = {"GoldenDict"}, .processes = {"goldendict"}},
    {.path = "$data/{kiwix,kiwix-desktop}", .level = SafetyLevel::caution, .title = "Kiwix arşivleri", .explanation = "Çevrimdışı okumak için indirdiğin ansiklopediler. Yeniden indirilebilir ama büyüktür.", .quitApps = {"Kiwix"}, .processes = {"kiwix-desktop"}},

    // Java Web Start.
    {.path = "~/.java", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "Java ayarları", .explanation = "Java programlarının ayarları, sertifikaları ve yazı tipi listeleri.", .actionable = false},
    {.path = "~/.java/deployment", .container = ScanContext::normal},
    {.path = "{~/.java/deployment/cache,~/.icedtea/cache,$cache/icedtea-web}", .level = SafetyLevel::regenerable, .title = "Java Web Start önbelleği", .explanation = "Web'den başlatılan Java uygulamalarının indirilen dosyaları. Silinirse uygulama açılınca yeniden indirilir."},

    // Keys, passwords and logins.
    {.path = "~/.ssh", .level = SafetyLevel::keep, .title = "SSH anahtarları", .explanation = credentials, .actionable = false},
    {.path = "~/.gnupg", .level = SafetyLevel::keep, .title = "GnuPG anahtarları", .explanation = "Şifreleme ve imza anahtarların. Silersen şifrelediğin hiçbir şeyi açamazsın. Asla silme.", .actionable = false},
    {.path = "{~/.password-store,$data/gopass,$config/gopass}", .level = SafetyLevel::keep, .title = "Parola deposu", .explanation = passwords, .actionable = false},
    {.path = "{$data/keyrings,$data/kwalletd,~/.gnome2/keyrings}", .level = SafetyLevel::keep, .title = "Masaüstü anahtarlığı", .explanation = "Uygulamaların kaydettiği parolalar. Asla silme.", .actionable = false},
    {.path = "{~/.pki,$data/pki,~/.cert,$data/networkmanagement,~/.step,~/.acme.sh,~/.tsh,~/.mitmproxy,~/.yubico,$config/Yubico,~/.globus}", .level = SafetyLevel::keep, .title = "Sertifikalar ve anahtarlar", .explanation = credentials, .actionable = false},
    {.path = "{~/.aws,~/.oci,~/.bluemix,~/.aliyun,~/.s3cfg,~/.boto,$config/doctl,$config/hcloud,$config/scw,$config/linode-cli,$config/gh,$config/hub,$config/glab-cli,$config/op,$config/sops,$config/age,~/.vault-token,~/.netrc,~/.pgpass,~/.git-credentials,~/.putty,$config/putty}", .level = SafetyLevel::keep, .title = "Oturum ve erişim bilgileri: {name}", .explanation = credentials, .actionable = false},
    {.path = "$config/gcloud", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "Google Cloud oturumu", .explanation = credentials, .actionable = false},
    {.path = "~/.azure", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "Azure oturumu", .explanation = credentials, .actionable = false},
    {.path = "~/.azure/cliextensions", .level = SafetyLevel::caution, .title = "Azure CLI eklentileri", .explanation = "Kurulu Azure CLI eklentileri. Silersen `az extension add` ile yeniden kurman gerekir."},
    {.path = "$config/gcloud/logs", .level = SafetyLevel::safe, .title = "Google Cloud kayıtları", .explanation = "`gcloud` komutlarının günlük dosyaları. Silmek güvenli."},
    {.path = "{$config/keepassxc,$config/KeePass,$config/Bitwarden,$config/1Password,$config/Enpass,$config/Proton Pass,$config/Buttercup-nodejs,$config/ente Auth,$config/ente,$data/Enpass,$data/authenticator,$config/Authy Desktop,$config/LastPass,$config/Dashlane,$config/NordPass,$config/Keeper Password Manager,$config/Padloc,$config/Passky}", .level = SafetyLevel::keep, .title = "Parola yöneticisi: {name}", .explanation = passwords, .actionable = false},
    {.path = "$cache/keepassxc", .level = SafetyLevel::caution, .title = "KeePassXC yerel ayarları", .explanation = "Son açılan kasaların listesi ve pencere ayarları. Kasalara bir şey olmaz, ama bu ayarlar geri gelmez.", .quitApps = {"KeePassXC"}, .processes = {"keepassxc"}},
    {.path = "{~/.Private,~/.ecryptfs,$data/plasma-vault,$data/vaults,~/.encfs6.xml,~/.SiriKali}", .level = SafetyLevel::keep, .title = "Şifreli kasa", .explanation = encrypted, .actionable = false},

    // Wallets, and the chains beside them.
    {.path = "~/{.bitcoin,.litecoin,.dogecoin,.dashcore,.zcash,.ethereum,.bitmonero,.electrum,.electrum-ltc,.lnd,.lightning,.eclair,.sparrow,.walletwasabi,.armory,.coinomi,.chia,.chia_keys,.namecoin,.vertcoin,.ravencoin,.near-credentials}", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "Kripto para cüzdanı: {name}", .explanation = wallet, .actionable = false},
    {.path = "{$config/Exodus,$config/Ledger Live,$config/atomic,$config/Guarda,$config/@trezor,$config/solana,$config/Jaxx Liberty,$config/MyCrypto,$config/Frame,$data/Bisq,$data/Bisq2,$data/Daedalus,$data/Monero,$data/feather,$config/feather,$data/polkadot,$config/monero-project}", .container = ScanContext::application, .level = SafetyLevel::keep, .title = "Kripto para cüzdanı: {name}", .explanation = wallet, .actionable = false},
    {.path = "~/{.bitcoin,.litecoin,.dogecoin,.dashcore,.zcash,.namecoin,.vertcoin,.ravencoin}/wallets", .level = SafetyLevel::keep, .title = "Kripto para cüzdanı", .explanation = wallet, .actionable = false},
    {.path = "~/{.bitcoin,.litecoin,.dogecoin,.dashcore,.zcash,.namecoin,.vertcoin,.ravencoin}/blocks", .level = SafetyLevel::caution, .title = "Blok zinciri: {name}", .explanation = chain, .processes = {"bitcoind", "bitcoin-qt", "litecoind", "litecoin-qt", "dogecoind", "dogecoin-qt", "dashd", "dash-qt", "zcashd"}},
    {.path = "~/{.bitcoin,.litecoin,.dogecoin,.dashcore,.zcash,.namecoin,.vertcoin,.ravencoin}/chainstate", .level = SafetyLevel::caution, .title = "Blok zinciri: {name}", .explanation = chain, .processes = {"bitcoind", "bitcoin-qt", "litecoind", "litecoin-qt", "dogecoind", "dogecoin-qt", "dashd", "dash-qt", "zcashd"}},
    {.path = "~/{.bitcoin,.litecoin,.dogecoin,.dashcore,.zcash,.namecoin,.vertcoin,.ravencoin}/indexes", .level = SafetyLevel::caution, .title = "Blok zinciri: {name}", .explanation = chain, .processes = {"bitcoind", "bitcoin-qt", "litecoind", "litecoin-qt", "dogecoind", "dogecoin-qt", "dashd", "dash-qt", "zcashd"}},
    {.path = "~/.bitcoin/{testnet3,testnet4,signet,regtest}", .container = ScanContext::normal},
    {.path = "~/.bitcoin/{testnet3,testnet4,signet,regtest}/blocks", .level = SafetyLevel::caution, .title = "Blok zinciri: {name}", .explanation = chain, .processes = {"bitcoind", "bitcoin-qt"}},
    {.path = "~/.bitcoin/{testnet3,testnet4,signet,regtest}/chainstate", .level = SafetyLevel::caution, .title = "Blok zinciri: {name}", .explanation = chain, .processes = {"bitcoind", "bitcoin-qt"}},
    {.path = "~/.bitcoin/{testnet3,testnet4,signet,regtest}/indexes", .level = SafetyLevel::caution, .title = "Blok zinciri: {name}", .explanation = chain, .processes = {"bitcoind", "bitcoin-qt"}},
    {.path = "~/.zcash-params", .level = SafetyLevel::regenerable, .title = "Zcash parametreleri", .explanation = "Zcash'in herkes için aynı olan parametre dosyaları. Silinirse yeniden indirilir; cüzdanı etkilemez.", .processes = {"zcashd"}},
    {.path = "~/.ethereum/keystore", .level = SafetyLevel::keep, .title = "Ethereum anahtarları", .explanation = wallet, .actionable = false},
    {.path = "~/.ethereum/geth", .container = ScanContext::normal},
    {.path = "~/.ethereum/geth/{chaindata,lightchaindata,triecache}", .level = SafetyLevel::caution, .title = "Ethereum zinciri: {name}", .explanation = chain, .processes = {"geth"}},
    {.path = "~/.ethash", .level = SafetyLevel::regenerable, .title = "Ethereum madencilik verisi", .explanation = "Madencilik için hesaplanmış dosyalar. Silinirse gerektiğinde yeniden hesaplanır."},
    {.path = "~/.bitmonero/lmdb", .level = SafetyLevel::caution, .title = "Monero zinciri", .explanation = chain, .processes = {"monerod"}},
    {.path = "~/.electrum/wallets", .level = SafetyLevel::keep, .title = "Electrum cüzdanları", .explanation = wallet, .actionable = false},
    {.path = "~/.chia/mainnet", .container = ScanContext::normal},
    {.path = "~/.chia/mainnet/db", .level = SafetyLevel::caution, .title = "Chia zinciri", .explanation = chain, .processes = {"chia_full_node"}},
    {.path = "$data/Daedalus/mainnet", .container = ScanContext::normal},
    {.path = "$data/Daedalus/mainnet/chain", .level = SafetyLevel::caution, .title = "Cardano zinciri", .explanation = chain, .quitApps = {"Daedalus"}},
};
// clang-format on

}  // namespace

Rows desktopRows() {
    return rows;
}

}  // namespace ulvak::RuleBook
