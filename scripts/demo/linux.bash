# shellcheck shell=bash
# A home as Linux users have it: eight kinds of them in one, with Turkish folder names, and with the traps: folders
# that are called "build", "cache" or "tmp" and hold what nobody can make again. Sourced by scripts/demo-home, which
# explains the lines.

layout() {
    personal_folders
    web_developer
    systems_developer
    data_scientist
    android_developer
    gamer
    film_maker
    office_worker
    administrator
    desktop
    unknown_programs
    odd_names Belgeler Videolar
    temporary_folder
    user_folders
    trash_note
    program_names
}

# The evidence follows the item that it belongs to.

personal_folders() {
    item 309 'Belgeler/Tez/'
    item 150 'Belgeler/cache/'
    evidence 'Belgeler/cache' 'eski sözleşmeler.pdf' liste.xlsx
    item 310 'İndirilenler/linux-kurulum-13.iso'
    evidence 'İndirilenler' linux-kurulum-13.iso
    item 20 'İndirilenler/ofis-paketi_24.8_amd64.deb'
    item 20 'Müzik/Kayıtlar/konser.flac'
    item 120 'Resimler/2024 Yaz/DSC_0412.NEF'
    item 120 'Resimler/2024 Yaz/DSC_0413.NEF'
    item 110 'Resimler/2024 Yaz/DSC_0417.NEF'
    item 150 'Resimler/2019 Düğün/'
    item 660 'Videolar/Tatil 2024.mkv'
    item 20 'Masaüstü/sunum-son.odp'
}

web_developer() {
    item 180 '.npm/_cacache/content-v2/'
    item 90 '.cache/yarn/v6/'
    item 150 '.local/share/pnpm/store/v10/'
    item 80 '.bun/install/cache/'
    item 120 '.nvm/versions/node/v22.11.0/'
    evidence '.nvm/versions/node/v22.11.0/bin' node
    item 110 '.cache/ms-playwright/chromium-1140/'
    item 160 '.vscode/extensions/'
    item 110 '.config/Code/CachedData/'
    item 120 '.config/Code/User/workspaceStorage/'
    item 60 '.config/Code/User/History/'
    evidence '.config/Code/User' settings.json
    item 420 'Projeler/mağaza/node_modules/'
    item 120 'Projeler/mağaza/.next/cache/'
    evidence 'Projeler/mağaza' package.json package-lock.json .next/BUILD_ID .next/build-manifest.json
    item 160 'Projeler/panel/node_modules/'
    item 60 'Projeler/panel/dist/'
    evidence 'Projeler/panel' package.json angular.json dist/index.html
    item 105 'Projeler/kafe-sitesi/vendor/'
    evidence 'Projeler/kafe-sitesi' composer.json composer.lock vendor/autoload.php
    # A repository that is called as builds are.
    item 304 'Projeler/build/src/'
    evidence 'Projeler/build' .git/HEAD .git/config README.md
    # Without its project beside it, this is an ordinary folder.
    item 100 'Projeler/kopya/node_modules/'
}

systems_developer() {
    item 130 '.cargo/registry/cache/'
    evidence '.cargo/registry' CACHEDIR.TAG
    item 180 '.rustup/toolchains/stable-x86_64-unknown-linux-gnu/'
    item 110 '.cache/ccache/'
    evidence '.cache/ccache' ccache.conf CACHEDIR.TAG
    item 120 '.cache/go-build/'
    item 130 'go/pkg/mod/'
    item 260 'Projeler/ağ-izleyici/target/'
    evidence 'Projeler/ağ-izleyici' Cargo.toml Cargo.lock target/CACHEDIR.TAG target/.rustc_info.json
    item 220 'Projeler/oyun-motoru/build/'
    evidence 'Projeler/oyun-motoru' CMakeLists.txt build/CMakeCache.txt build/Makefile
    # A Yocto build keeps its settings and its results together.
    item 312 'gömülü/build/tmp/'
    evidence 'gömülü/build' conf/local.conf conf/bblayers.conf
    item 150 'gömülü/sstate-cache/'
    # A target that somebody aims at.
    item 100 'Projeler/nisan/target/'
    evidence 'Projeler/nisan/target' README.md ölçüm-2024.csv kalibrasyon.dat
    item 60 '.local/state/nvim/undo/'
    item 301 'Mail/liste/cur/'
    evidence 'Mail/liste' new/ tmp/
}

data_scientist() {
    item 600 '.cache/huggingface/hub/models--ornek--dil-modeli-7b/blobs/'
    evidence '.cache/huggingface/hub/models--ornek--dil-modeli-7b' refs/main
    # A login beside what is downloaded again.
    evidence '.cache/huggingface' token stored_tokens
    item 160 '.cache/torch/hub/checkpoints/'
    item 90 '.cache/pip/'
    item 140 '.cache/uv/archive-v0/'
    evidence '.cache/uv' CACHEDIR.TAG .lock
    item 130 '.cache/pypoetry/virtualenvs/tahmin-8Jx2kQ1d-py3.11/lib/'
    evidence '.cache/pypoetry/virtualenvs/tahmin-8Jx2kQ1d-py3.11' pyvenv.cfg bin/python
    item 380 '.ollama/models/blobs/'
    evidence '.ollama' id_ed25519
    item 180 'miniforge3/envs/derin-öğrenme/lib/'
    evidence 'miniforge3' conda-meta/history envs/derin-öğrenme/conda-meta/history envs/derin-öğrenme/bin/python
    item 150 'miniforge3/pkgs/'
    item 190 'Projeler/tahmin/.venv/lib/'
    item 180 'Projeler/tahmin/data/raw/'
    item 140 'Projeler/tahmin/data/cache/'
    evidence 'Projeler/tahmin' pyproject.toml uv.lock .venv/pyvenv.cfg .venv/bin/python data/cache/OKU.md
    item 120 'Projeler/tahmin/wandb/'
    evidence 'Projeler/tahmin/wandb/run-20251011_101512-a1b2c3' run-a1b2c3.wandb
}

android_developer() {
    item 280 '.android/avd/Pixel_8_API_35.avd/'
    evidence '.android/avd' Pixel_8_API_35.avd/config.ini Pixel_8_API_35.ini
    evidence '.android' debug.keystore
    item 170 'Android/Sdk/system-images/android-35/'
    item 180 'Android/Sdk/ndk/27.2.12479018/'
    evidence 'Android/Sdk' platform-tools/source.properties platform-tools/adb \
        system-images/android-35/source.properties ndk/27.2.12479018/source.properties
    item 210 '.gradle/caches/modules-2/'
    evidence '.gradle/caches' CACHEDIR.TAG
    item 120 '.gradle/wrapper/dists/gradle-8.10.2-bin/'
    item 60 '.gradle/daemon/8.10.2/'
    item 150 '.m2/repository/'
    # The key to the passwords in the settings.
    evidence '.m2' settings.xml settings-security.xml
    item 90 '.jdks/temurin-21.0.5/'
    evidence '.jdks/temurin-21.0.5' release bin/java
    item 150 '.cache/JetBrains/IntelliJIdea2025.2/index/'
    item 110 '.cache/JetBrains/IntelliJIdea2025.2/caches/'
    # The only copy of what was changed since the last commit.
    item 80 '.cache/JetBrains/IntelliJIdea2025.2/LocalHistory/'
    evidence '.cache/JetBrains/IntelliJIdea2025.2' LocalHistory/changes.storageData
    item 170 'AndroidStudioProjects/Yemek/app/build/'
    evidence 'AndroidStudioProjects/Yemek' settings.gradle.kts gradlew app/build.gradle.kts \
        app/build/intermediates/ app/build/outputs/
    item 100 'Projeler/kargo/build/'
    evidence 'Projeler/kargo' pubspec.yaml
    item 110 'Projeler/banka-sunucu/target/classes/'
    evidence 'Projeler/banka-sunucu' pom.xml target/maven-status/
}

gamer() {
    local library='.local/share/Steam/steamapps'
    item 1500 "$library/common/Galata Yarışı/"
    item 400 "$library/common/Kayıp Ada/"
    item 180 "$library/common/Proton - Experimental/"
    item 140 "$library/compatdata/1086940/pfx/drive_c/"
    item 230 "$library/shadercache/1086940/"
    item 90 "$library/downloading/2358720/"
    evidence "$library" libraryfolders.vdf appmanifest_1086940.acf appmanifest_294100.acf appmanifest_1493710.acf \
        compatdata/1086940/version compatdata/1086940/pfx/system.reg 'common/Proton - Experimental/proton'
    item 80 '.local/share/Steam/userdata/1/'
    item 60 '.local/share/Steam/appcache/'
    item 60 '.local/share/Steam/logs/'
    item 100 '.local/share/Steam/ubuntu12_32/'
    item 110 '.cache/mesa_shader_cache_db/'
    item 130 '.wine/drive_c/Program Files/'
    item 90 '.wine/drive_c/windows/temp/'
    # What was written in a Windows program.
    item 60 '.wine/drive_c/users/deniz/Documents/'
    evidence '.wine' system.reg user.reg
    item 140 'Oyunlar/Eski Oyun/drive_c/'
    evidence 'Oyunlar/Eski Oyun' system.reg user.reg
    item 90 '.minecraft/saves/Yeni Dünya/'
    evidence '.minecraft/saves/Yeni Dünya' level.dat
    item 110 '.minecraft/assets/'
    evidence '.minecraft' launcher_profiles.json
}

film_maker() {
    item 330 'Videolar/Belgesel/ham/DJI_0042.MP4'
    item 110 'Videolar/Belgesel/proxy/'
    evidence 'Videolar/Belgesel' Belgesel.kdenlive
    item 310 'Videolar/OBS/2025-10-12 21-04-11.mkv'
    item 160 '.cache/kdenlive/1697000000000/videothumbs/'
    # What survives a crash.
    item 60 '.local/share/kdenlive/.backup/'
    item 130 '.cache/darktable/mipmaps-0a1b2c.d/'
    item 70 '.config/darktable/'
    evidence '.config/darktable' darktablerc library.db
    item 303 'Projeler/animasyon/render/'
    evidence 'Projeler/animasyon' sahne.blend
    item 90 '.cache/thumbnails/x-large/'
}

office_worker() {
    local profile='.thunderbird/k2v8x1qd.default-release'
    item 190 "$profile/ImapMail/imap.ornek.org/INBOX"
    item 90 "$profile/global-messages-db.sqlite"
    evidence '.thunderbird' profiles.ini k2v8x1qd.default-release/prefs.js
    item 60 '.cache/thunderbird/k2v8x1qd.default-release/'
    item 150 '.mozilla/firefox/x7y6.default-release/storage/'
    evidence '.mozilla/firefox' profiles.ini x7y6.default-release/prefs.js x7y6.default-release/places.sqlite
    item 170 '.cache/mozilla/firefox/x7y6.default-release/cache2/entries/'
    item 120 '.config/chromium/Default/IndexedDB/'
    item 90 '.config/chromium/Default/Service Worker/CacheStorage/'
    evidence '.config/chromium' 'Local State' Default/Preferences Default/Cookies
    item 140 '.cache/chromium/Default/Cache/Cache_Data/'
    item 60 '.config/libreoffice/4/user/backup/'
    item 150 'Zotero/storage/'
    evidence 'Zotero' zotero.sqlite
    item 160 '.config/Signal/attachments.noindex/'
    evidence '.config/Signal' config.json sql/db.sqlite
    # A document that was scanned and not saved.
    item 60 '.cache/simple-scan/autosaves/'
    evidence '.cache/simple-scan/autosaves' autosave.db
}

administrator() {
    item 610 '.local/share/libvirt/images/fedora41.qcow2'
    evidence '.local/share/libvirt/images' fedora41.qcow2
    # A machine, whatever the folder is called.
    item 160 '.cache/vm/win11-deneme.qcow2'
    evidence '.cache/vm' win11-deneme.qcow2
    item 560 '.local/share/containers/storage/overlay/'
    evidence '.local/share/containers/storage' db.sql overlay-images/images.json
    item 150 'VirtualBox VMs/sunucu/sunucu.vdi'
    evidence 'VirtualBox VMs/sunucu' sunucu.vbox sunucu.vdi
    item 130 '.minikube/cache/'
    item 110 '.vagrant.d/boxes/debian-VAGRANTSLASH-trixie64/'
    # Written into a mounted drive, and not uploaded yet.
    item 110 '.cache/rclone/vfs/yedek/2025-10.tar'
    item 80 '.cache/restic/'
    evidence '.cache/restic' CACHEDIR.TAG
    item 60 '.docker/cli-plugins/'
    item 318 'yedek/tmp/veritabanı-2025-10-12.sql.gz'
    item 105 'Projeler/altyapı/.terraform/providers/'
    evidence 'Projeler/altyapı' main.tf .terraform.lock.hcl .terraform/terraform.tfstate
    evidence '.ssh' id_ed25519
}

# What the desktop keeps, and applications that it installs in sandboxes.
desktop() {
    local telegram='.var/app/org.telegram.desktop/data/TelegramDesktop/tdata'
    item 180 '.local/share/Trash/files/eski-proje/'
    item 240 '.local/share/flatpak/app/org.blender.Blender/'
    evidence '.local/share/flatpak' repo/config
    item 160 "$telegram/user_data/media_cache/"
    item 60 "$telegram/emoji/"
    evidence "$telegram" key_datas settingss
    item 110 '.var/app/org.gnome.Boxes/cache/gnome-boxes/'
    item 70 '.var/app/org.mozilla.Thunderbird/config/'
    item 130 '.var/app/org.kde.krita/data/krita/'
    item 150 'snap/spotify/common/.cache/spotify/'
    item 120 'snap/firefox/common/.cache/mozilla/'
    item 140 '.gizli-araç/veri/'
    item 60 '.local/share/baloo/'
    item 90 '.cache/tracker3/'
    item 60 '.local/lib/python3.13/'
}

# A server of the user's own below ~/.var, and what a program of many parts has beside those that are known. Some of
# their folders have telling names.
unknown_programs() {
    item 640 '.var/lib/'
    item 310 '.var/backups/2024 sonu/'
    item 310 '.var/tmp/'
    item 320 '.local/share/nomic.ai/models/konuşma/'
    item 340 '.local/share/nomic.ai/belge-dizini/'
    item 105 'snap/ses-atölyesi/common/Kitaplık/'
}

temporary_folder() {
    item 330 '.tmp/T/derleme-artığı/'
    item 90 '.tmp/T/kurulum-4f21.tar.xz'
    item 60 '.tmp/T/pip-build-7c08/'
}

user_folders() {
    local line
    line="XDG_DESKTOP_DIR=\"\$HOME/Masaüstü\"
XDG_DOCUMENTS_DIR=\"\$HOME/Belgeler\"
XDG_DOWNLOAD_DIR=\"\$HOME/İndirilenler\"
XDG_MUSIC_DIR=\"\$HOME/Müzik\"
XDG_PICTURES_DIR=\"\$HOME/Resimler\"
XDG_PUBLICSHARE_DIR=\"\$HOME/Genel\"
XDG_TEMPLATES_DIR=\"\$HOME/Şablonlar\"
XDG_VIDEOS_DIR=\"\$HOME/Videolar\""
    text .config/user-dirs.dirs "$line"
    text .config/user-dirs.locale tr_TR
}

# Restoring needs to know where it was.
trash_note() {
    text '.local/share/Trash/info/eski-proje.trashinfo' "[Trash Info]
Path=$(percent_encoded "$PWD/Projeler/eski-proje")
DeletionDate=2025-03-08T10:12:00"
}

percent_encoded() {
    local LC_ALL=C text=$1 i
    for ((i = 0; i < ${#text}; i++)); do
        case ${text:i:1} in
            [a-zA-Z0-9/._~-]) printf '%s' "${text:i:1}" ;;
            *) printf '%%%02X' "'${text:i:1}" ;;
        esac
    done
}

# What the applications in sandboxes are called.
program_names() {
    local flatpak='.local/share/flatpak/exports/share/applications' snap='.local/share/applications'
    desktop_entry "$flatpak/org.telegram.desktop.desktop" 'Telegram'
    desktop_entry "$flatpak/org.gnome.Boxes.desktop" 'Kutular'
    desktop_entry "$flatpak/org.mozilla.Thunderbird.desktop" 'Thunderbird'
    desktop_entry "$flatpak/org.kde.krita.desktop" 'Krita'
    desktop_entry "$snap/ses-atölyesi_ses-atölyesi.desktop" 'Ses Atölyesi'
}

# desktop_entry PATH NAME
desktop_entry() {
    text "$1" "[Desktop Entry]
Type=Application
Name=$2
Exec=true"
}

# write_contents NAME
write_contents() {
    case ${1##*/} in
        CACHEDIR.TAG) printf 'Signature: 8a477f597d28d172789f06886806bc55\n' ;;
        HEAD) printf 'ref: refs/heads/main\n' ;;
        package.json) printf '{ "name": "ornek", "version": "1.0.0", "private": true }\n' ;;
        Cargo.toml) printf '[package]\nname = "ornek"\nversion = "0.1.0"\n' ;;
        CMakeLists.txt) printf 'cmake_minimum_required(VERSION 3.20)\nproject(ornek)\n' ;;
        CMakeCache.txt) printf '# This is the CMakeCache file.\nCMAKE_BUILD_TYPE:STRING=Debug\n' ;;
        pom.xml) printf '<project><modelVersion>4.0.0</modelVersion></project>\n' ;;
        pubspec.yaml) printf 'name: ornek\n' ;;
        pyproject.toml) printf '[project]\nname = "ornek"\n' ;;
        pyvenv.cfg) printf 'home = /usr/bin\nversion = 3.11.9\n' ;;
        local.conf) printf 'MACHINE ?= "qemux86-64"\n' ;;
        profiles.ini) printf '[Profile0]\nName=default-release\nIsRelative=1\n' ;;
        settings-security.xml) printf '<settingsSecurity><master>{ornek}</master></settingsSecurity>\n' ;;
        system.reg | user.reg) printf 'WINE REGISTRY Version 2\n' ;;
        appmanifest_1086940.acf) steam_manifest 1086940 'Galata Yarışı' ;;
        appmanifest_294100.acf) steam_manifest 294100 'Kayıp Ada' ;;
        appmanifest_1493710.acf) steam_manifest 1493710 'Proton - Experimental' ;;
        *.qcow2) printf 'QFI\373\0\0\0\3' ;;
        *.iso)
            head -c 32769 /dev/zero
            printf 'CD001\1'
            ;;
        *.vdi) printf '<<< Oracle VM VirtualBox Disk Image >>>\n' ;;
        *.sqlite | *.db) printf 'SQLite format 3\0' ;;
        *.json) printf '{}\n' ;;
        *) printf 'ornek\n' ;;
    esac
}

# steam_manifest ID NAME
steam_manifest() {
    printf '"AppState"\n{\n\t"appid"\t\t"%s"\n\t"name"\t\t"%s"\n\t"installdir"\t\t"%s"\n}\n' "$1" "$2" "$2"
}
