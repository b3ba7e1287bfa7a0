# shellcheck shell=bash
# A home as a Mac has it. Sourced by scripts/demo-home, which explains the lines.

layout() {
    developer_tools
    library
    app_data
    personal_folders
    projects
    odd_names Documents Movies
    temporary_folder
}

developer_tools() {
    item 310 '.Trash/eski-proje/'
    item 150 '.npm/_cacache/content-v2/'
    item 240 '.gradle/caches/modules-2/'
    item 120 '.gradle/wrapper/dists/gradle-8.5/'
    item 90 '.cache/pip/'
    item 260 '.cache/huggingface/hub/'
    item 70 '.cocoapods/repos/'
    item 70 '.m2/repository/'
    item 90 '.cargo/registry/cache/'
    item 70 '.cargo/git/db/'
    item 320 '.rustup/toolchains/stable/'
    item 70 'go/pkg/mod/'
    item 110 '.bun/install/cache/'
    item 60 '.expo/'
    item 100 '.nuget/packages/'
    item 70 '.pub-cache/hosted/'
    item 160 '.vscode/extensions/'
    item 90 '.cursor/extensions/'
    item 520 '.ollama/models/blobs/'
    item 60 '.docker/cli-plugins/'
    item 310 '.android/avd/Pixel_7_API_34.avd/'
    item 60 '.android/cache/'
    item 330 '.gizli-araç/veri/'
}

library() {
    item 90 'Library/Developer/Xcode/DerivedData/ModuleCache.noindex/'
    item 150 'Library/Developer/Xcode/DerivedData/Takvim-bqzkcmfwrhxnea/'
    item 80 'Library/Developer/Xcode/DerivedData/Hava-Durumu-gdtyolpsvuijcb/'
    item 300 'Library/Developer/Xcode/iOS DeviceSupport/iPhone15,2 17.2 (21C62)/'
    item 140 'Library/Developer/Xcode/Archives/2024-03-08/'
    item 230 'Library/Developer/CoreSimulator/Devices/5A0C3E7B-81D4-4F26-9B5E-2C7D90A1F648/data/'
    item 120 'Library/Developer/CoreSimulator/Devices/C94E1B20-6D3F-47A8-8E15-F0B2763D5A9C/data/'
    item 80 'Library/Developer/CoreSimulator/Caches/dyld/'
    item 200 'Library/Android/sdk/system-images/android-34/'
    item 160 'Library/Android/sdk/ndk/26.1.10909125/'
    item 70 'Library/pnpm/store/v3/'
    item 80 'Library/Caches/com.apple.Safari/'
    item 120 'Library/Caches/Google/'
    item 60 'Library/Logs/Takvim/'
    item 160 'Library/Containers/com.apple.mail/Data/'
    item 310 'Library/Containers/com.docker.docker/Data/'
    item 200 'Library/Group Containers/group.net.whatsapp.WhatsApp.shared/'
    item 180 'Library/Mail/V10/'
    item 120 'Library/Messages/Attachments/'
    item 100 'Library/Photos/Libraries/'
    item 60 'Library/Keychains/'
}

app_data() {
    local support='Library/Application Support'
    item 320 "$support/MobileSync/Backup/00008110-001A2D3C4E5F6071/"
    item 280 "$support/Google/Chrome/OptGuideOnDeviceModel/2024.3/"
    item 150 "$support/Google/Chrome/Default/"
    # An unknown program's folder with known places inside.
    item 120 "$support/Ofis/Cache/"
    item 60 "$support/Ofis/Code Cache/"
    item 60 "$support/Ofis/GPUCache/"
    item 60 "$support/Ofis/Service Worker/"
    item 60 "$support/Ofis/logs/"
    item 60 "$support/Ofis/Crashpad/"
    # Guesses from the name, some shown as their sub-folders.
    item 310 "$support/backups/2023 sonu/"
    item 330 "$support/backups/2024 sonu/"
    item 320 "$support/models/görüntü/"
    item 310 "$support/models/ses/"
    item 320 "$support/vms/Deneme Makinesi/"
    item 310 "$support/downloads/"
    item 305 "$support/artifacts/"
    item 305 "$support/temp/"
    # Unknown: one whole, one opened up, one lopsided, one evenly spread and therefore whole.
    item 340 "$support/Bilinmeyen Uygulama/"
    item 1150 "$support/Büyük Oyun/Bölümler/"
    item 1000 "$support/Büyük Oyun/Dokular/"
    item 900 "$support/Büyük Oyun/Filmler/"
    item 650 "$support/Büyük Oyun/Sesler/"
    item 400 "$support/Büyük Oyun/yedekler/"
    item 1250 "$support/Harita/Türkiye/"
    item 500 "$support/Harita/Dünya/"
    item 310 "$support/Harita/updates/"
    item 410 "$support/Dağınık Veri/bir/"
    item 405 "$support/Dağınık Veri/iki/"
    item 405 "$support/Dağınık Veri/üç/"
    item 405 "$support/Dağınık Veri/dört/"
    item 405 "$support/Dağınık Veri/beş/"
}

personal_folders() {
    item 310 'Documents/Tez/'
    item 305 'Documents/eski-disk.zip'
    item 320 'Downloads/kurulum.iso'
    item 60 'Downloads/Kataloglar/'
    item 420 'Movies/Tatil 2024.mov'
    item 310 'Movies/Kısa Film.fcpbundle/'
    item 360 'Pictures/Fotoğraf Arşivi.photoslibrary/originals/'
    item 310 'Pictures/2019 Yaz/'
    item 305 'yedek-imaj.img'
}

projects() {
    item 230 'Projeler/web-sitesi/node_modules/'
    item 60 'Projeler/web-sitesi/dist/'
    item 90 'Projeler/web-sitesi/.next/cache/'
    text 'Projeler/web-sitesi/package.json' '{ "name": "web-sitesi" }'
    item 110 'Projeler/mobil/build/'
    item 120 'Projeler/mobil/ios/Pods/'
    text 'Projeler/mobil/pubspec.yaml' 'name: mobil'
    text 'Projeler/mobil/ios/Podfile' 'platform :ios'
    item 260 'Projeler/oyun-motoru/target/'
    text 'Projeler/oyun-motoru/Cargo.toml' '[package]'
    item 110 'Projeler/android/.gradle/'
    text 'Projeler/android/settings.gradle' 'rootProject.name = "android"'
    item 120 'Projeler/hesap/.venv/lib/'
    item 120 'Projeler/takvim/.build/'
    text 'Projeler/takvim/Package.swift' '// swift-tools-version: 5.9'
    item 110 'Projeler/takvim/ilk-açılış.trace/'
    # Without its project beside it, this is an ordinary folder.
    item 305 'Projeler/kopya/node_modules/'
}

temporary_folder() {
    item 110 '.tmp/T/instruments4f21.ktrace'
    item 90 '.tmp/T/instruments7c08.ktrace'
    item 70 '.tmp/T/instrumentsb93e.ktrace'
    item 80 '.tmp/T/xrgpu_1187'
    item 60 '.tmp/T/xrgpu_2046'
    item 90 '.tmp/T/derleme-artığı/'
    item 80 '.tmp/C/com.apple.dt.InstrumentsCLI/'
    item 60 '.tmp/C/com.apple.yazıtipleri/'
}
