#include "classify/linux/rule_tables.h"

namespace ulvak::RuleBook {
namespace {

// Beyond the home folder nothing is actionable: it belongs to the package manager or to a service, and to
// root. The catch-all rows are units, so that no name rule is looked for inside them.
// clang-format off
constexpr Row rows[] = {
    // Caches of the system.
    {.path = "/var/cache", .container = ScanContext::system},
    {.path = "/var/cache/{rsnapshot,backuppc,dirvish,burp}", .level = SafetyLevel::keep, .title = "Yedekler: {name}", .explanation = "Yedekleme programının tuttuğu yedekler. Adı önbellek olsa da geri gelmez.", .actionable = false},
    {.path = "/var/cache/{zoneminder,git}", .level = SafetyLevel::keep, .title = "Hizmet verisi: {name}", .explanation = "Kamera kayıtları ya da git depoları. Adı önbellek olsa da geri gelmez.", .actionable = false},
    {.path = "/var/cache/bind", .level = SafetyLevel::caution, .title = "DNS sunucusu verisi", .explanation = "DNS sunucusunun bölge dosyaları. Başka sunucudan alınanlar yenilenir; burada tutulan kendi bölgelerin geri gelmez.", .processes = {"named"}, .actionable = false},
    {.path = "/var/cache/*", .level = SafetyLevel::regenerable, .title = "Sistem önbelleği: {name}", .explanation = "Bir sistem hizmetinin önbelleği. Hizmet gerektikçe yeniden oluşturur; silmek için yönetici olman gerekir.", .actionable = false},
    {.path = "/var/cache/apt", .container = ScanContext::system},
    {.path = "/var/cache/apt/*", .level = SafetyLevel::regenerable, .title = "APT önbelleği: {name}", .explanation = "APT'nin paket listesi önbelleği. `sudo apt-get clean` temizler; gerektiğinde yeniden oluşur.", .processes = {"apt", "apt-get", "dpkg"}, .command = "sudo apt-get clean", .actionable = false},
    {.path = "/var/cache/apt/archives", .level = SafetyLevel::safe, .title = "İndirilmiş Debian paketleri", .explanation = "Kurulmuş paketlerin indirme dosyaları. `sudo apt-get clean` hepsini siler; gerekirse tekrar indirilirler.", .processes = {"apt", "apt-get", "dpkg"}, .command = "sudo apt-get clean", .actionable = false},
    {.path = "/var/cache/{dnf,libdnf5}", .level = SafetyLevel::regenerable, .title = "DNF önbelleği", .explanation = "İndirilmiş paketler ve paket listeleri. `sudo dnf clean all` siler; bir sonraki kurulumda listeler tekrar iner.", .processes = {"dnf", "dnf5"}, .command = "sudo dnf clean all", .actionable = false},
    {.path = "/var/cache/yum", .level = SafetyLevel::regenerable, .title = "YUM önbelleği", .explanation = "İndirilmiş paketler ve paket listeleri. `sudo yum clean all` siler; bir sonraki kurulumda listeler tekrar iner.", .processes = {"yum"}, .command = "sudo yum clean all", .actionable = false},
    {.path = "/var/cache/zypp", .level = SafetyLevel::regenerable, .title = "Zypper önbelleği", .explanation = "İndirilmiş paketler ve paket listeleri. `sudo zypper clean --all` siler; bir sonraki kurulumda listeler tekrar iner.", .processes = {"zypper", "packagekitd"}, .command = "sudo zypper clean --all", .actionable = false},
    {.path = "/var/cache/pacman", .container = ScanContext::system},
    {.path = "/var/cache/pacman/pkg", .level = SafetyLevel::regenerable, .title = "İndirilmiş pacman paketleri", .explanation = "Kurulu paketlerin ve eski sürümlerinin indirme dosyaları. `sudo paccache -rk1` her paketten yalnızca birini bırakır; eskileri giderse önceki sürüme dönmek zorlaşır.", .processes = {"pacman"}, .command = "sudo paccache -rk1", .actionable = false},
    {.path = "/var/cache/PackageKit", .level = SafetyLevel::regenerable, .title = "PackageKit önbelleği", .explanation = "Yazılım merkezinin indirdiği paketler ve listeler. Güncellemeler kurulunca küçülür, gerektiğinde tekrar iner.", .processes = {"packagekitd"}, .actionable = false},
    {.path = "/var/cache/xbps", .level = SafetyLevel::regenerable, .title = "İndirilmiş XBPS paketleri", .explanation = "Paketlerin indirme dosyaları. `sudo xbps-remove -O` eskimiş olanları siler.", .command = "sudo xbps-remove -O", .actionable = false},
    {.path = "/var/cache/apk", .level = SafetyLevel::regenerable, .title = "apk önbelleği", .explanation = "Paketlerin indirme dosyaları. `sudo apk cache clean` eskimiş olanları siler.", .command = "sudo apk cache clean", .actionable = false},
    {.path = "/var/cache/distfiles", .level = SafetyLevel::regenerable, .title = "Portage kaynak dosyaları", .explanation = "Derlenmek için indirilmiş kaynaklar. `sudo eclean-dist` gereksizleri siler; gerekirse tekrar iner.", .command = "sudo eclean-dist", .actionable = false},
    {.path = "/var/cache/binpkgs", .level = SafetyLevel::caution, .title = "Portage ikili paketleri", .explanation = "Derlenip saklanmış paketler. `sudo eclean-pkg` gereksizleri siler; yeniden derlemek uzun sürer.", .command = "sudo eclean-pkg", .actionable = false},
    {.path = "/var/cache/deb-get", .level = SafetyLevel::regenerable, .title = "deb-get indirmeleri", .explanation = "deb-get'in indirdiği paketler. `sudo deb-get clean` siler.", .command = "sudo deb-get clean", .actionable = false},
    {.path = "/var/cache/{swcatalog,app-info}", .level = SafetyLevel::regenerable, .title = "Yazılım kataloğu", .explanation = "Yazılım merkezinin uygulama listesi ve simgeleri. Yeniden oluşur.", .actionable = false},
    {.path = "/var/cache/man", .level = SafetyLevel::regenerable, .title = "Kılavuz sayfaları dizini", .explanation = "`man` sayfalarının arama dizini. `sudo mandb --create` yeniden oluşturur.", .actionable = false},
    {.path = "/var/cache/snapd", .level = SafetyLevel::regenerable, .title = "snapd önbelleği", .explanation = "Snap mağazasının komut ve paket listesi. Yeniden oluşur.", .processes = {"snapd"}, .actionable = false},
    {.path = "/var/cache/{mock,akmods,lxc,pbuilder}", .level = SafetyLevel::caution, .title = "Derleme ortamı: {name}", .explanation = "Paket derlemek için hazırlanmış ortamlar; derlenmiş paketler de olabilir. Yeniden hazırlamak uzun sürer.", .actionable = false},
    {.path = "/var/cache/{davfs2,netdata}", .level = SafetyLevel::caution, .title = "{name} verisi", .explanation = "Adı önbellek olsa da henüz gönderilmemiş dosyalar ya da ölçüm geçmişi içerebilir. Silersen geri gelmez.", .actionable = false},
    {.path = "/var/cache/private", .level = SafetyLevel::caution, .title = "Hizmetlerin önbelleği", .explanation = "Yalıtılmış hizmetlerin önbellekleri. Gerektiğinde yeniden oluşurlar.", .actionable = false},
    {.path = "/var/cache/{debconf,dictionaries-common}", .level = SafetyLevel::keep, .title = "Paket ayarları: {name}", .explanation = "Paketlerin kurulumda sorduğu soruların yanıtları. Silersen paket güncellemeleri bozulabilir.", .actionable = false},

    // Logs.
    {.path = "/var/log", .container = ScanContext::system},
    {.path = "/var/log/*", .level = SafetyLevel::caution, .title = "Sistem günlüğü: {name}", .explanation = "Bir sistem hizmetinin günlükleri. Sistem eskileri kendisi döndürüp siler; bir sorunu araştırıyorsan gerekebilir.", .actionable = false},
    {.path = "/var/log/journal", .level = SafetyLevel::safe, .title = "Sistem günlüğü (journal)", .explanation = "systemd'nin günlükleri. `sudo journalctl --vacuum-size=100M` eskileri siler, son 100 MB kalır.", .processes = {"systemd-journal"}, .command = "sudo journalctl --vacuum-size=100M", .actionable = false},
    {.path = "/var/log/{syslog,kern.log,daemon.log,user.log,debug,messages,mail.log,maillog,cron.log,cron,boot.log,dpkg.log,alternatives.log,fontconfig.log,Xorg.*}*", .level = SafetyLevel::safe, .title = "Sistem günlüğü: {name}", .explanation = "Sistem günlükleri. Sistem eskileri kendisi döndürür; `sudo logrotate --force /etc/logrotate.conf` hemen döndürür.", .group = "system-log", .command = "sudo logrotate --force /etc/logrotate.conf", .actionable = false},
    {.path = "/var/log/*.{gz,xz,zst,bz2,old}", .level = SafetyLevel::safe, .title = "Eski günlükler", .explanation = "Döndürülmüş eski günlükler. Sistem sırası gelince kendisi siler.", .group = "rotated-log", .actionable = false},
    {.path = "/var/log/{apache2,httpd,nginx,cups,samba,gdm3,gdm,lightdm,sddm,libvirt,containers,pods,apt,unattended-upgrades,zypp,YaST2,dnf,postgresql,mongodb,redis,elasticsearch,tomcat9,tomcat10,atop,sysstat,sa,hp,sssd,speech-dispatcher,installer,anaconda}", .level = SafetyLevel::safe, .title = "Günlükler: {name}", .explanation = "Bir hizmetin günlükleri. Sistem eskileri kendisi döndürüp siler. Bir sorunu araştırmıyorsan gereksizdir.", .actionable = false},
    {.path = "/var/log/{audit,secure,auth.log,btmp,wtmp,lastlog,faillog,tallylog}*", .level = SafetyLevel::caution, .title = "Güvenlik günlüğü: {name}", .explanation = "Oturum açma ve denetim kayıtları. Silersen geri gelmez; bir sızıntıyı araştırırken gerekir.", .actionable = false},
    {.path = "/var/log/{mysql,mariadb}", .level = SafetyLevel::caution, .title = "{name} günlükleri", .explanation = "Veritabanının günlükleri; çoğaltma ve geri dönüş için gereken ikili günlükler de olabilir. Elle silme.", .actionable = false},

    // What services keep.
    {.path = "/var/lib", .container = ScanContext::system},
    {.path = "/var/lib/*", .level = SafetyLevel::keep, .title = "Hizmet verisi: {name}", .explanation = "Bir sistem hizmetinin verileri. Elle silme; gerekmiyorsa hizmeti paket yöneticisiyle kaldır.", .actionable = false},
    {.path = "/var/lib/apt", .container = ScanContext::system},
    {.path = "/var/lib/apt/*", .level = SafetyLevel::keep, .title = "APT verisi: {name}", .explanation = "APT'nin kayıtları. Elle silme.", .actionable = false},
    {.path = "/var/lib/apt/lists", .level = SafetyLevel::regenerable, .title = "APT paket listeleri", .explanation = "Depoların paket listeleri. `sudo apt-get update` yeniden indirir; silmek pek yer kazandırmaz.", .processes = {"apt", "apt-get"}, .actionable = false},
    {.path = "/var/lib/{dpkg,rpm,dnf,zypp,PackageKit,portage,xbps,rpm-state}", .level = SafetyLevel::keep, .title = "Paket veritabanı: {name}", .explanation = "Hangi paketlerin kurulu olduğunun kaydı. Silersen sistem güncellenemez.", .actionable = false},
    {.path = "/var/lib/pacman", .container = ScanContext::system},
    {.path = "/var/lib/pacman/*", .level = SafetyLevel::keep, .title = "Paket veritabanı: pacman/{name}", .explanation = "Hangi paketlerin kurulu olduğunun kaydı. Silersen sistem güncellenemez.", .actionable = false},
    {.path = "/var/lib/pacman/sync", .level = SafetyLevel::regenerable, .title = "pacman paket listeleri", .explanation = "Depoların paket listeleri. `sudo pacman -Syu` yeniden indirir.", .processes = {"pacman"}, .actionable = false},
    {.path = "/var/lib/flatpak", .level = SafetyLevel::keep, .title = "Flatpak uygulamaları", .explanation = "Sistem için kurulmuş Flatpak uygulamaları ve çalışma ortamları. `flatpak uninstall --unused` kullanılmayan ortamları kaldırır.", .processes = {"flatpak"}, .command = "flatpak uninstall --unused", .actionable = false},
    {.path = "/var/lib/snapd", .container = ScanContext::system},
    {.path = "/var/lib/snapd/*", .level = SafetyLevel::keep, .title = "snapd: {name}", .explanation = "Snap hizmetinin verileri. Elle silme.", .actionable = false},
    {.path = "/var/lib/snapd/snaps", .level = SafetyLevel::keep, .title = "Snap paketleri", .explanation = "Kurulu Snap paketleri ve eski sürümleri. `sudo snap set system refresh.retain=2` her paketten yalnızca iki sürüm tutulmasını sağlar.", .processes = {"snapd"}, .command = "sudo snap set system refresh.retain=2", .actionable = false},
    {.path = "/var/lib/snapd/snapshots", .level = SafetyLevel::caution, .title = "Snap yedekleri", .explanation = "Kaldırdığın Snap uygulamalarının verilerinin yedekleri. `snap saved` listeler, `sudo snap forget` siler; silinen geri gelmez.", .processes = {"snapd"}, .command = "snap saved", .actionable = false},
    {.path = "/var/lib/snapd/cache", .level = SafetyLevel::regenerable, .title = "Snap indirmeleri", .explanation = "İndirilmiş Snap paketlerinin kopyaları; kurulu paketlerle aynı dosyalar olabilir. snapd eskiyince kendisi siler.", .processes = {"snapd"}, .actionable = false},
    {.path = "/var/lib/docker", .level = SafetyLevel::keep, .title = "Docker verisi", .explanation = "Docker'ın imajları, konteynerleri ve birimleri. Elle silme; `docker system prune -a` kullanılmayan imajları ve durmuş konteynerleri siler.", .processes = {"dockerd"}, .command = "docker system prune -a", .actionable = false},
    {.path = "/var/lib/containerd", .level = SafetyLevel::keep, .title = "containerd verisi", .explanation = "Konteyner imajları ve konteynerler. Elle silme; Docker kullanıyorsan `docker system prune -a` kullanılmayan imajları ve durmuş konteynerleri siler.", .processes = {"containerd"}, .command = "docker system prune -a", .actionable = false},
    {.path = "/var/lib/containers", .level = SafetyLevel::keep, .title = "Podman verisi (sistem)", .explanation = "Sistem Podman'ının imajları, konteynerleri ve birimleri. `sudo podman image prune -a` hiçbir konteynerin kullanmadığı imajları siler.", .processes = {"podman", "conmon", "crio"}, .command = "sudo podman image prune -a", .actionable = false},
    {.path = "/var/lib/{kubelet,etcd,rancher,k0s,minikube,calico,cni}", .level = SafetyLevel::keep, .title = "Kubernetes: {name}", .explanation = "Kubernetes kümesinin verileri. Elle silme.", .actionable = false},
    {.path = "/var/lib/libvirt", .container = ScanContext::system},
    {.path = "/var/lib/libvirt/*", .level = SafetyLevel::keep, .title = "libvirt: {name}", .explanation = "Sanal makinelerin verileri. Elle silme.", .processes = {"libvirtd", "virtqemud", "qemu-system-*"}, .actionable = false},
    {.path = "/var/lib/libvirt/images", .level = SafetyLevel::keep, .title = "Sanal makine diskleri", .explanation = "Sanal makinelerin diskleri. Silersen içindekiler geri gelmez; gerekmeyeni Sanal Makine Yöneticisi'nden ya da `virsh vol-delete` ile sil.", .processes = {"libvirtd", "virtqemud", "qemu-system-*"}, .actionable = false},
    {.path = "/var/lib/{lxc,lxd,incus}", .level = SafetyLevel::keep, .title = "Konteynerler: {name}", .explanation = "Sistem konteynerlerin ve içlerindeki her şey. Gerekmeyeni kendi aracıyla kaldır.", .actionable = false},
    {.path = "/var/lib/machines", .level = SafetyLevel::keep, .title = "systemd-nspawn makineleri", .explanation = "Konteyner imajların. `machinectl list-images` listeler, `sudo machinectl remove` kaldırır.", .command = "machinectl list-images", .actionable = false},
    {.path = "/var/lib/waydroid", .level = SafetyLevel::caution, .title = "Waydroid sistem imajı", .explanation = "Waydroid'in Android sistemi. Silersen `sudo waydroid init` tekrar indirir; Android uygulamaların ev klasöründedir.", .processes = {"waydroid"}, .actionable = false},
    {.path = "/var/lib/systemd", .container = ScanContext::system},
    {.path = "/var/lib/systemd/*", .level = SafetyLevel::keep, .title = "systemd: {name}", .explanation = "systemd'nin verileri. Elle silme.", .actionable = false},
    {.path = "/var/lib/systemd/coredump", .level = SafetyLevel::safe, .title = "Çökme dökümleri", .explanation = "Çöken programların bellek dökümleri. `coredumpctl list` listeler; sistem eskileri kendisi siler. Hata ayıklamıyorsan gereksizdir.", .command = "coredumpctl list", .actionable = false},
    {.path = "/var/lib/apport", .container = ScanContext::system},
    {.path = "/var/lib/apport/coredump", .level = SafetyLevel::safe, .title = "Çökme dökümleri", .explanation = "Çöken programların bellek dökümleri. Sistem eskileri kendisi siler. Hata ayıklamıyorsan gereksizdir.", .actionable = false},
    {.path = "/var/lib/{mlocate,plocate}", .level = SafetyLevel::regenerable, .title = "Dosya arama dizini", .explanation = "`locate` komutunun dizini. `sudo updatedb` yeniden oluşturur.", .actionable = false},
    {.path = "/var/lib/{command-not-found,apt-xapian-index,swcatalog,app-info}", .level = SafetyLevel::regenerable, .title = "Paket dizini: {name}", .explanation = "Paketlerin arama dizini. `sudo apt-get update` sonrasında yeniden oluşur.", .actionable = false},
    {.path = "/var/lib/clamav", .level = SafetyLevel::regenerable, .title = "ClamAV virüs tanımları", .explanation = "İndirilmiş virüs tanımları. `sudo freshclam` yeniden indirir.", .processes = {"clamd", "freshclam"}, .actionable = false},
    {.path = "/var/lib/mock", .level = SafetyLevel::caution, .title = "mock derleme ortamları", .explanation = "Paket derleme ortamları ve derlenmiş paketler. `mock --scrub=all` siler; ortamlar bir sonraki derlemede yeniden kurulur.", .processes = {"mock"}, .command = "mock --scrub=all", .actionable = false},
    {.path = "/var/lib/{archbuild,sbuild,schroot}", .level = SafetyLevel::caution, .title = "Derleme ortamı: {name}", .explanation = "Paket derlemek için kurulmuş ortamlar. Yeniden kurmak uzun sürer.", .actionable = false},
    {.path = "/var/lib/ollama", .level = SafetyLevel::caution, .title = "Ollama modelleri (sistem)", .explanation = "İndirilmiş yapay zeka modelleri. `ollama list` listeler, `ollama rm` siler; tekrar indirmek uzun sürer.", .processes = {"ollama"}, .command = "ollama list", .actionable = false},
    {.path = "/usr/share/ollama", .level = SafetyLevel::caution, .title = "Ollama modelleri (sistem)", .explanation = "İndirilmiş yapay zeka modelleri. `ollama list` listeler, `ollama rm` siler; tekrar indirmek uzun sürer.", .processes = {"ollama"}, .command = "ollama list", .actionable = false},
    {.path = "/var/lib/{mysql,mariadb,postgresql,pgsql,mongodb,mongo,redis,elasticsearch,opensearch,influxdb,clickhouse,cassandra,neo4j,couchdb,rabbitmq,prometheus,grafana,loki}", .level = SafetyLevel::keep, .title = "Veritabanı: {name}", .explanation = "Bir veritabanının verileri. Silersen geri gelmez.", .actionable = false},

    // Temporary files, spools and crash reports of the system.
    {.path = "/var/tmp", .container = ScanContext::system},
    {.path = "/var/tmp/flatpak-cache-*", .level = SafetyLevel::safe, .title = "Flatpak indirme artıkları", .explanation = "Yarım kalmış Flatpak indirmelerinin artıkları. Yeni sürümler bunları açılışta siler.", .group = "flatpak-cache", .processes = {"flatpak"}, .actionable = false},
    {.path = "/var/tmp/systemd-private-*", .level = SafetyLevel::keep, .title = "Hizmetlerin geçici dosyaları", .explanation = "Çalışan hizmetlerin geçici klasörleri. Hizmet durunca kendiliğinden silinir.", .group = "systemd-private", .actionable = false},
    {.path = "/var/tmp/pamac-build-*", .level = SafetyLevel::regenerable, .title = "pamac derleme klasörleri", .explanation = "AUR paketlerinin derleme dosyaları. Gerektiğinde yeniden derlenir.", .processes = {"pamac*", "makepkg"}, .actionable = false},
    {.path = "/var/tmp/portage", .level = SafetyLevel::regenerable, .title = "Portage derleme klasörü", .explanation = "Derlenen paketlerin ara dosyaları. Derleme sürmüyorsa gereksizdir.", .processes = {"emerge"}, .actionable = false},
    {.path = "/var/tmp/{kdecache-*,.guestfs-*,dnf-*}", .level = SafetyLevel::regenerable, .title = "Önbellek: {name}", .explanation = "Bir programın önbelleği. Gerektiğinde yeniden oluşur.", .actionable = false},
    {.path = "/var/tmp/{dracut.*,mkinitramfs*}", .level = SafetyLevel::safe, .title = "Açılış imajı artıkları", .explanation = "Açılış imajı hazırlanırken kalmış geçici dosyalar. Güncelleme sürmüyorsa gereksizdir.", .group = "initramfs", .actionable = false},
    {.path = "/var/tmp/{container_images_storage*,storage*,buildah*,libpod*}", .level = SafetyLevel::caution, .title = "Konteyner indirme artıkları", .explanation = "Podman ya da Buildah'ın geçici dosyaları. Süren bir indirme ya da derleme yoksa gereksizdir.", .group = "container-temp", .processes = {"podman", "buildah", "skopeo"}, .actionable = false},
    {.path = "/var/crash", .level = SafetyLevel::safe, .title = "Çökme raporları", .explanation = "Çöken programların raporları. Hata bildirmeyeceksen gereksizdir.", .actionable = false},
    {.path = "/var/spool/abrt", .level = SafetyLevel::safe, .title = "Çökme raporları", .explanation = "Çöken programların raporları. Hata bildirmeyeceksen gereksizdir.", .actionable = false},
    {.path = "/var/tmp/abrt", .level = SafetyLevel::safe, .title = "Çökme raporları", .explanation = "Çöken programların raporları. Hata bildirmeyeceksen gereksizdir.", .actionable = false},
    {.path = "/var/snap", .level = SafetyLevel::keep, .title = "Snap hizmetlerinin verisi", .explanation = "Snap ile kurulu hizmetlerin verileri (sanal makineler ve kümeler de olabilir). Elle silme.", .actionable = false},

    // Programs installed beside the package manager.
    {.path = "/opt", .container = ScanContext::system},
    {.path = "/opt/*", .level = SafetyLevel::keep, .title = "Kurulu program: {name}", .explanation = "Sisteme kurulmuş bir program. Elle silme; kullanmıyorsan onu kuran araçla (apt, dnf, pacman ya da kendi kaldırıcısı) kaldır.", .actionable = false},
    {.path = "/usr/local", .container = ScanContext::system},
    {.path = "/usr/local/*", .level = SafetyLevel::keep, .title = "Elle kurulmuş programlar: {name}", .explanation = "Paket yöneticisi dışında kurulmuş programlar. Elle silme; kullanmıyorsan onu kuran araçla kaldır.", .actionable = false},
    {.path = "/usr/local/cuda*", .level = SafetyLevel::keep, .title = "CUDA araç takımı: {name}", .explanation = "NVIDIA'nın geliştirme araçları. Kullanmadığın eski sürümü paket yöneticisiyle ya da içindeki `bin/cuda-uninstaller` ile kaldır.", .actionable = false},
    {.path = "/usr/local/texlive", .container = ScanContext::system},
    {.path = "/usr/local/texlive/*", .level = SafetyLevel::keep, .title = "TeX Live {name}", .explanation = "Kurulu TeX dağıtımı. Yeni yıla geçtiysen eski yıl gereksizdir; elle kurduysan klasörünü yönetici olarak silebilirsin.", .actionable = false},
    {.path = "/home/linuxbrew", .container = ScanContext::system},
    {.path = "/home/linuxbrew/.linuxbrew", .level = SafetyLevel::caution, .title = "Homebrew", .explanation = "Homebrew ile kurduğun paketler. Doğrudan silme; `brew cleanup` eski sürümleri ve indirmeleri, `brew autoremove` gereksiz bağımlılıkları temizler.", .processes = {"brew"}, .command = "brew cleanup", .actionable = false},
    {.path = "/nix", .container = ScanContext::system},
    {.path = "/nix/store", .level = SafetyLevel::keep, .title = "Nix deposu", .explanation = "Nix ile kurulu paketler ve eski sürümleri. Elle silme; `nix-collect-garbage -d` kullanılmayanları siler (eski sürümlere dönülemez).", .processes = {"nix-daemon"}, .command = "nix-collect-garbage -d", .actionable = false},
    {.path = "/gnu/store", .level = SafetyLevel::keep, .title = "Guix deposu", .explanation = "Guix ile kurulu paketler. Elle silme; `guix gc` kullanılmayanları siler.", .processes = {"guix-daemon"}, .command = "guix gc", .actionable = false},

    // Snapshots and swap.
    {.path = "/timeshift", .level = SafetyLevel::keep, .title = "Timeshift anlık görüntüleri", .explanation = "Sistemi geri almak için saklanan kopyalar. Gerekmeyenleri Timeshift'ten ya da `sudo timeshift --delete` ile sil.", .quitApps = {"Timeshift"}, .command = "sudo timeshift --delete", .actionable = false},
    {.path = "/run/timeshift", .level = SafetyLevel::keep, .title = "Timeshift anlık görüntüleri", .explanation = "Sistemi geri almak için saklanan kopyalar. Gerekmeyenleri Timeshift'ten ya da `sudo timeshift --delete` ile sil.", .quitApps = {"Timeshift"}, .command = "sudo timeshift --delete", .actionable = false},
    {.path = "/.snapshots", .level = SafetyLevel::keep, .title = "Snapper anlık görüntüleri", .explanation = "Sistemi geri almak için saklanan kopyalar. `sudo snapper list` listeler, `sudo snapper delete` siler.", .command = "sudo snapper list", .actionable = false},
    {.path = "/{swapfile,swap.img,swap}", .level = SafetyLevel::keep, .title = "Sanal bellek (takas)", .explanation = "Bellek yetmediğinde kullanılan takas alanı. Sistem yönetir.", .actionable = false},

    // What package managers keep in the home folder.
    {.path = "$data/flatpak", .level = SafetyLevel::caution, .title = "Flatpak uygulamaları (senin)", .explanation = "Yalnızca senin için kurulmuş Flatpak uygulamaları ve çalışma ortamları. Elle silme; `flatpak uninstall --user --unused` kullanılmayan ortamları kaldırır.", .processes = {"flatpak"}, .command = "flatpak uninstall --user --unused", .actionable = false},
    {.name = ".flatpak-builder", .siblings = {"*.json", "*.yaml", "*.yml"}, .level = SafetyLevel::regenerable, .title = "{parent} · .flatpak-builder", .explanation = "flatpak-builder'ın indirmeleri ve derleme önbelleği. Bir sonraki derlemede yeniden oluşur.", .processes = {"flatpak-builder"}},
    {.path = "$cache/Homebrew", .level = SafetyLevel::regenerable, .title = "Homebrew indirmeleri", .explanation = "İndirilmiş paketler. Silinirse gerektiğinde tekrar iner. İpucu: `brew cleanup --prune=all`.", .processes = {"brew"}, .command = "brew cleanup --prune=all"},
    {.path = "~/.linuxbrew", .level = SafetyLevel::caution, .title = "Homebrew", .explanation = "Homebrew ile kurduğun paketler. Doğrudan silme; `brew cleanup` eski sürümleri ve indirmeleri temizler.", .processes = {"brew"}, .command = "brew cleanup", .actionable = false},
    {.path = "$cache/yay", .level = SafetyLevel::regenerable, .title = "yay derleme klasörleri", .explanation = "AUR paketlerinin kaynakları ve derleme dosyaları. Silinirse güncellemede tekrar iner; PKGBUILD'lerde yaptığın değişiklikler gider. İpucu: `yay -Sc`.", .processes = {"yay", "makepkg"}, .command = "yay -Sc"},
    {.path = "$cache/paru", .level = SafetyLevel::regenerable, .title = "paru derleme klasörleri", .explanation = "AUR paketlerinin kaynakları ve derleme dosyaları. Silinirse güncellemede tekrar iner; PKGBUILD'lerde yaptığın değişiklikler gider. İpucu: `paru -Sc`.", .processes = {"paru", "makepkg"}, .command = "paru -Sc"},
    {.path = "$cache/{pikaur,trizen,aurutils,aura}", .level = SafetyLevel::regenerable, .title = "{name} derleme klasörleri", .explanation = "AUR paketlerinin kaynakları ve derleme dosyaları. Silinirse güncellemede tekrar iner; PKGBUILD'lerde yaptığın değişiklikler gider.", .processes = {"pikaur", "trizen", "aura", "pamac*", "makepkg"}},
    {.path = "$data/pikaur/aur_repos", .level = SafetyLevel::regenerable, .title = "pikaur AUR depoları", .explanation = "AUR paketlerinin kaynak depoları. Silinirse güncellemede tekrar iner.", .processes = {"pikaur", "makepkg"}},
    {.path = "$cache/{dnf,libdnf5}", .level = SafetyLevel::regenerable, .title = "DNF önbelleği", .explanation = "Senin adına indirilmiş paket listeleri. Silinirse tekrar iner. İpucu: `dnf clean all`.", .processes = {"dnf", "dnf5"}, .command = "dnf clean all"},
    {.path = "$cache/zypp", .level = SafetyLevel::regenerable, .title = "Zypper önbelleği", .explanation = "Senin adına indirilmiş paket listeleri. Silinirse tekrar iner.", .processes = {"zypper"}},
    {.path = "$cache/{nix,guix,bauh,pacstall,topgrade}", .level = SafetyLevel::regenerable, .title = "{name} önbelleği", .explanation = "Bir paket aracının indirmeleri ve listeleri. Silinirse gerektiğinde tekrar iner."},
    {.path = "$state/nix", .level = SafetyLevel::keep, .title = "Nix profilleri", .explanation = "Nix ile kurduğun paketlerin profilleri. Silersen programlar kaybolur.", .actionable = false},
    {.path = "~/.nix-{profile,defexpr,channels}", .level = SafetyLevel::keep, .title = "Nix profilleri", .explanation = "Nix ile kurduğun paketlerin profilleri. Silersen programlar kaybolur.", .actionable = false},
    {.path = "~/rpmbuild/BUILDROOT", .level = SafetyLevel::regenerable, .title = "RPM derleme kökü", .explanation = "Paket derlerken kurulan geçici ağaç. Bir sonraki derlemede yeniden oluşur.", .processes = {"rpmbuild"}},
    {.path = "~/rpmbuild/BUILD", .level = SafetyLevel::caution, .title = "RPM derleme klasörü", .explanation = "Açılmış kaynaklar ve derleme dosyaları. Bir sonraki derlemede yeniden oluşur; buradaki kaynaklarda yaptığın değişiklikler gider.", .processes = {"rpmbuild"}},
    {.path = "~/Applications/*.AppImage", .level = SafetyLevel::caution, .title = "{name}", .explanation = "AppImage olarak indirilmiş bir uygulama. Kullanmıyorsan silebilirsin; geri istersen yeniden indirmen gerekir."},
    {.path = "~/AppImages/*.AppImage", .level = SafetyLevel::caution, .title = "{name}", .explanation = "AppImage olarak indirilmiş bir uygulama. Kullanmıyorsan silebilirsin; geri istersen yeniden indirmen gerekir."},
};
// clang-format on

}  // namespace

Rows systemRows() {
    return rows;
}

}  // namespace ulvak::RuleBook
