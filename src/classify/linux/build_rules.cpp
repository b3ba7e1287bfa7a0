#include "classify/linux/rule_tables.h"

namespace ulvak::RuleBook {
namespace {

// One row per line, so that rows can be compared.
// clang-format off
constexpr Row rows[] = {
    // JavaScript.
    {.name = ".angular", .siblings = {"package.json"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Angular ara dosyaları ve önbelleği. Bir sonraki çalıştırmada yeniden oluşur."},
    {.name = ".nx", .siblings = {"package.json"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Nx ara dosyaları ve önbelleği. Bir sonraki çalıştırmada yeniden oluşur."},
    {.name = ".vite", .siblings = {"package.json"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Vite ara dosyaları ve önbelleği. Bir sonraki çalıştırmada yeniden oluşur."},
    {.name = ".docusaurus", .siblings = {"package.json"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Docusaurus ara dosyaları ve önbelleği. Bir sonraki çalıştırmada yeniden oluşur."},
    {.name = ".svelte-kit", .siblings = {"package.json"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "SvelteKit ara dosyaları ve önbelleği. Bir sonraki çalıştırmada yeniden oluşur."},
    {.name = ".astro", .siblings = {"package.json"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Astro ara dosyaları ve önbelleği. Bir sonraki çalıştırmada yeniden oluşur."},
    {.name = ".vinxi", .siblings = {"package.json"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Vinxi ara dosyaları ve önbelleği. Bir sonraki çalıştırmada yeniden oluşur."},
    {.name = ".solid", .siblings = {"package.json"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "SolidStart ara dosyaları ve önbelleği. Bir sonraki çalıştırmada yeniden oluşur."},
    {.name = ".umi", .siblings = {"package.json"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Umi ara dosyaları ve önbelleği. Bir sonraki çalıştırmada yeniden oluşur."},
    {.name = ".rpt2_cache", .siblings = {"package.json"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Rollup ara dosyaları ve önbelleği. Bir sonraki çalıştırmada yeniden oluşur."},
    {.name = ".rollup.cache", .siblings = {"package.json"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Rollup ara dosyaları ve önbelleği. Bir sonraki çalıştırmada yeniden oluşur."},
    {.name = ".swc", .siblings = {"package.json"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "SWC ara dosyaları ve önbelleği. Bir sonraki çalıştırmada yeniden oluşur."},
    {.name = ".stencil", .siblings = {"package.json"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Stencil ara dosyaları ve önbelleği. Bir sonraki çalıştırmada yeniden oluşur."},
    {.name = ".quasar", .siblings = {"package.json"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Quasar ara dosyaları ve önbelleği. Bir sonraki çalıştırmada yeniden oluşur."},
    {.name = ".wxt", .siblings = {"package.json"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "WXT ara dosyaları ve önbelleği. Bir sonraki çalıştırmada yeniden oluşur."},
    {.name = ".plasmo", .siblings = {"package.json"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Plasmo ara dosyaları ve önbelleği. Bir sonraki çalıştırmada yeniden oluşur."},
    {.name = ".react-router", .siblings = {"package.json"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "React Router ara dosyaları ve önbelleği. Bir sonraki çalıştırmada yeniden oluşur."},
    {.name = ".tanstack", .siblings = {"package.json"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "TanStack ara dosyaları ve önbelleği. Bir sonraki çalıştırmada yeniden oluşur."},
    {.name = ".rspack", .siblings = {"package.json"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Rspack ara dosyaları ve önbelleği. Bir sonraki çalıştırmada yeniden oluşur."},
    {.name = ".rsbuild", .siblings = {"package.json"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Rsbuild ara dosyaları ve önbelleği. Bir sonraki çalıştırmada yeniden oluşur."},
    {.name = ".wireit", .siblings = {"package.json"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Wireit ara dosyaları ve önbelleği. Bir sonraki çalıştırmada yeniden oluşur."},
    {.name = ".ember-cli", .siblings = {"package.json"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Ember ara dosyaları ve önbelleği. Bir sonraki çalıştırmada yeniden oluşur."},
    {.name = ".nitro", .siblings = {"package.json"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Nitro ara dosyaları ve önbelleği. Bir sonraki çalıştırmada yeniden oluşur."},
    {.name = ".fusebox", .siblings = {"package.json"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "FuseBox ara dosyaları ve önbelleği. Bir sonraki çalıştırmada yeniden oluşur."},
    {.name = ".nyc_output", .siblings = {"package.json"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "nyc ara dosyaları ve önbelleği. Bir sonraki çalıştırmada yeniden oluşur."},
    {.name = ".nx", .siblings = {"nx.json"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Nx önbelleği. Bir sonraki derlemede yeniden oluşur."},
    {.name = ".turbo", .siblings = {"turbo.json"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Turborepo önbelleği. Bir sonraki derlemede yeniden oluşur."},
    {.name = ".vitepress/{cache,dist,.temp}", .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "VitePress derlemesi. Bir sonraki derlemede yeniden oluşur."},
    {.name = ".output", .siblings = {"nuxt.config.ts", "nuxt.config.js", "nitro.config.ts", "app.config.ts", "vite.config.ts", "wxt.config.ts"}, .holds = {"nitro.json", "server", "public", "chrome-mv*"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Derlenmiş site. `npm run build` ile yeniden oluşur."},
    {.name = ".cache", .siblings = {"gatsby-config.js", "gatsby-config.ts", "gatsby-config.mjs"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Web derleme aracının önbelleği. Bir sonraki derlemede yeniden oluşur."},
    {.name = ".cache", .siblings = {"package.json"}, .holds = {"admin", "babel-loader", "storybook", "terser-webpack-plugin", "webpack", "swc", "prettier", "eslint", "nyc", "default-development", "default-production", "data.json"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Web derleme aracının önbelleği. Bir sonraki derlemede yeniden oluşur."},
    {.name = "{.open-next,.vercel/output,storybook-static}", .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Yayımlanmaya hazırlanan çıktı. Bir sonraki derlemede yeniden oluşur."},
    {.name = "{.webpack,.erb}", .siblings = {"package.json"}, .holds = {"main", "renderer", "x64", "dll"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Electron uygulamasının ara dosyaları. Bir sonraki derlemede yeniden oluşur."},
    {.name = "coverage", .siblings = {"package.json"}, .holds = {"lcov.info", "index.html", "lcov-report", "coverage-final.json", "clover.xml"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Test kapsamı raporu. Testler yeniden çalışınca oluşur."},
    {.name = "{test-results,playwright-report,blob-report}", .siblings = {"playwright.config.*"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Playwright test sonuçları ve kayıtları. Testler yeniden çalışınca oluşur."},
    {.name = "cypress/{videos,screenshots}", .level = SafetyLevel::caution, .title = "Cypress kayıtları: {name}", .explanation = "Testlerin görüntü kayıtları. Testler yeniden çalışınca oluşur; sakladığın bir hata kaydı varsa gider."},
    {.name = "bower_components", .siblings = {"bower.json"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Tarayıcı bağımlılıkları. `bower install` ile geri gelir."},
    {.name = "jspm_packages", .siblings = {"package.json"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "JavaScript bağımlılıkları. `jspm install` ile geri gelir."},
    {.name = ".yarn/{cache,unplugged}", .siblings = {"install-state.gz", "releases", "build-state.yml", "sdks"}, .level = SafetyLevel::regenerable, .title = "Yarn paketleri: {name}", .explanation = "Projenin Yarn paketleri. `yarn install` ile geri gelir; depoya eklenmişse git değişiklik gösterir."},
    {.name = ".pnpm-store", .holds = {"v*"}, .level = SafetyLevel::regenerable, .title = "pnpm paket deposu", .explanation = "pnpm'in bu diskteki paket deposu. Silinirse paketler `pnpm install` ile tekrar indirilir."},
    {.name = ".wrangler", .holds = {"state", "tmp"}, .level = SafetyLevel::caution, .title = "{parent} · {name}", .explanation = "Cloudflare geliştirme ortamı; yerel veritabanın ve dosyaların burada olabilir. Silersen bu yerel veriler gelmez."},
    {.name = ".serverless", .siblings = {"serverless.yml", "serverless.yaml", "serverless.ts", "serverless.js"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Serverless paketleri. Bir sonraki yayımlamada yeniden oluşur."},
    {.name = "{.sass-cache,.contentlayer,.velite}", .siblings = {"package.json", "_config.yml", "Gemfile"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Web derleme aracının önbelleği. Bir sonraki derlemede yeniden oluşur."},
    {.name = "storage/framework/{cache,views}", .siblings = {"sessions", "testing"}, .level = SafetyLevel::regenerable, .title = "Laravel önbelleği: {name}", .explanation = "Laravel önbelleği. Silinirse yeniden oluşur. İpucu: `php artisan optimize:clear`."},
    {.name = "elm-stuff", .siblings = {"elm.json", "elm-package.json"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Elm derleme çıktıları. `elm make` ile yeniden oluşur."},

    // Rust.
    {.name = "*", .holds = {".rustc_info.json"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Rust derleme çıktıları. `cargo build` ile yeniden oluşur.", .processes = {"cargo", "rustc"}},

    // Java, Kotlin, Scala and Clojure.
    {.name = "target", .siblings = {"pom.xml"}, .holds = {"classes", "test-classes", "maven-status", "maven-archiver", "generated-sources", "surefire-reports", "quarkus-app", "scala-*", "streams", "global-logging", "*.jar", "*.war"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Maven derleme çıktıları. `mvn package` ile yeniden oluşur."},
    {.name = "target", .siblings = {"build.sbt", "build.properties", "plugins.sbt"}, .holds = {"classes", "test-classes", "maven-status", "maven-archiver", "generated-sources", "surefire-reports", "quarkus-app", "scala-*", "streams", "global-logging", "*.jar", "*.war"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "sbt derleme çıktıları. `sbt compile` ile yeniden oluşur."},
    {.name = "target", .siblings = {"project.clj", "deps.edn", "build.boot"}, .holds = {"classes", "test-classes", "maven-status", "maven-archiver", "generated-sources", "surefire-reports", "quarkus-app", "scala-*", "streams", "global-logging", "*.jar", "*.war"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Derleme çıktıları. Bir sonraki derlemede yeniden oluşur."},
    {.name = "build", .siblings = {"settings.gradle", "settings.gradle.kts", "gradlew", "gradle.properties"}, .holds = {"classes", "libs", "reports", "tmp", "generated", "intermediates", "outputs", "kotlin", "test-results"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Derleme çıktıları. Bir sonraki derlemede yeniden oluşur."},
    {.name = "build", .siblings = {"build.xml"}, .holds = {"classes"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Ant derleme çıktıları. `ant` ile yeniden oluşur."},
    {.name = ".gradle", .siblings = {"build.gradle", "build.gradle.kts"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Projenin Gradle önbelleği. Bir sonraki derlemede yeniden oluşur."},
    {.name = "{.cxx,.externalNativeBuild}", .siblings = {"build.gradle", "build.gradle.kts", "settings.gradle", "settings.gradle.kts"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Yerel (C/C++) kodun derleme çıktıları. Bir sonraki derlemede yeniden oluşur."},
    {.name = ".kotlin", .siblings = {"build.gradle", "build.gradle.kts", "settings.gradle", "settings.gradle.kts"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Kotlin derleyicisinin ara dosyaları. Bir sonraki derlemede yeniden oluşur."},
    {.name = "out", .siblings = {".idea", "*.iml"}, .holds = {"production"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "IntelliJ'in derleme çıktıları. Bir sonraki derlemede yeniden oluşur."},
    {.name = "{.bloop,.metals,.bsp}", .siblings = {"build.sbt", "build.sc", "build.mill", "pom.xml", "project.scala"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Scala düzenleyici desteğinin dosyaları. Proje açılınca yeniden oluşur."},
    {.name = "work", .siblings = {"webapps"}, .holds = {"Catalina"}, .level = SafetyLevel::caution, .title = "{parent} · Tomcat çalışma klasörü", .explanation = "Tomcat'in derlediği sayfalar ve saklanan oturumlar. Tomcat kapalıyken silersen yeniden oluşur; açık oturumlar kapanır.", .processes = {"java"}},
    {.name = ".scala-build", .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Scala CLI derleme çıktıları. Bir sonraki derlemede yeniden oluşur."},
    {.name = "out", .siblings = {"build.sc", "build.mill", "build.mill.scala", ".mill-version"}, .holds = {"mill-*"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Mill derleme çıktıları. Bir sonraki derlemede yeniden oluşur."},
    {.name = "{.cpcache,.shadow-cljs}", .siblings = {"deps.edn", "shadow-cljs.edn"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Clojure araçlarının önbelleği. Bir sonraki çalıştırmada yeniden oluşur."},

    // C and C++. A build in its own source folder has no such name.
    {.name = "cmake-build-*", .siblings = {"CMakeLists.txt"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "CLion'ın derleme çıktıları. Bir sonraki derlemede yeniden oluşur."},
    {.name = "cmake-build-*", .holds = {"CMakeCache.txt"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "CLion'ın derleme çıktıları. Bir sonraki derlemede yeniden oluşur."},
    {.name = "{*build*,out,out-*,_out,Debug,Release,RelWithDebInfo,MinSizeRel}", .siblings = {"CMakeLists.txt"}, .holds = {"CMakeCache.txt"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Derleme çıktıları. Bir sonraki derlemede yeniden oluşur."},
    {.name = "{build,_build,.build,build-*,build_*,builddir,*-build,*_build,*.build}", .holds = {"CMakeCache.txt"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Derleme çıktıları. Bir sonraki derlemede yeniden oluşur."},
    {.name = "out/build/*", .holds = {"CMakeCache.txt"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Derleme çıktıları. Bir sonraki derlemede yeniden oluşur."},
    {.name = "*", .holds = {"meson-private", "meson-info"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Meson derleme çıktıları. `meson setup` ve derlemeyle yeniden oluşur."},
    {.name = "{build,builddir,build-*,build_*,*-build,*_build}", .siblings = {"meson.build", "CMakeLists.txt", "configure.ac", "xmake.lua"}, .holds = {"build.ninja", ".ninja_log", "config.status", ".gens"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Derleme çıktıları. Bir sonraki derlemede yeniden oluşur."},
    {.name = "out/*", .holds = {"args.gn"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "GN derleme çıktıları. `gn gen` ve derlemeyle yeniden oluşur."},
    {.name = ".xmake", .siblings = {"xmake.lua"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "xmake'in ara dosyaları. Bir sonraki derlemede yeniden oluşur."},
    {.name = "vcpkg_installed", .siblings = {"vcpkg.json", "vcpkg"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Projenin vcpkg paketleri. Bir sonraki derlemede yeniden kurulur."},
    {.name = "{buildtrees,packages,downloads}", .siblings = {".vcpkg-root"}, .level = SafetyLevel::regenerable, .title = "vcpkg · {name}", .explanation = "vcpkg'nin indirdiği ve derlediği dosyalar. Silinirse gerektiğinde yeniden oluşur."},
    {.name = "installed", .siblings = {".vcpkg-root"}, .level = SafetyLevel::caution, .title = "vcpkg · {name}", .explanation = "vcpkg ile kurulu C++ paketleri. Silersen `vcpkg install` ile yeniden kurman gerekir."},
    {.name = ".cache/clangd", .holds = {"index"}, .level = SafetyLevel::regenerable, .title = "clangd dizini", .explanation = "C/C++ dil sunucusunun bu proje için dizini. Silinirse yeniden oluşur.", .processes = {"clangd*"}},
    {.name = "{.ccls-cache,.cquery_cached_index,.clangd}", .siblings = {"compile_commands.json", "CMakeLists.txt", "Makefile", ".ccls", "meson.build"}, .level = SafetyLevel::regenerable, .title = "{parent} · dil sunucusu dizini", .explanation = "C/C++ dil sunucusunun bu proje için dizini. Silinirse yeniden oluşur."},
    {.name = "buck-out", .siblings = {".buckconfig"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Buck derleme çıktıları. Bir sonraki derlemede yeniden oluşur."},
    {.name = ".pants.d", .siblings = {"pants.toml"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Pants derleme çıktıları. Bir sonraki derlemede yeniden oluşur."},
    {.name = "obj_dir", .holds = {"*.mk"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Verilator derleme çıktıları. Bir sonraki derlemede yeniden oluşur."},
    {.name = ".pio", .siblings = {"platformio.ini"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "PlatformIO derleme çıktıları ve projenin indirilmiş kitaplıkları. `pio run` ile yeniden oluşur."},
    {.name = ".direnv", .siblings = {".envrc"}, .level = SafetyLevel::caution, .title = "{parent} · {name}", .explanation = "Projenin direnv ortamı. Klasöre yeniden girince kurulur; içine elle kurduğun paketler gelmez."},

    // Whole systems.
    {.name = "sstate-cache", .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Yocto'nun derlenmiş parçaları. Silinirse bir sonraki derleme çok uzun sürer, hepsi bu."},
    {.name = "tmp", .siblings = {"bitbake.lock", "bitbake-cookerdaemon.log", "sstate-cache"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Yocto derleme çıktıları; başka yere kopyalamadığın imajlar da burada. Silinirse yeniden derlenir (saatler sürebilir).", .processes = {"bitbake*"}},
    {.name = "downloads", .siblings = {"bitbake.lock", "sstate-cache"}, .level = SafetyLevel::caution, .title = "{parent} · Yocto indirmeleri", .explanation = "Derlenen paketlerin kaynakları. Silinirse tekrar indirilir; bazılarının kaynağı artık bulunamayabilir."},
    {.name = "output", .siblings = {"Config.in", "Config.in.legacy"}, .holds = {".config"}, .level = SafetyLevel::caution, .title = "{parent} · Buildroot çıktısı", .explanation = "Buildroot derleme çıktıları ve derleme ayarların (`.config`). Çıktılar `make` ile yeniden oluşur; ayarlarını önce `make savedefconfig` ile sakla."},
    {.name = "out", .siblings = {".repo"}, .level = SafetyLevel::caution, .title = "{parent} · {name}", .explanation = "Android kaynaklarının derleme çıktıları. Yeniden oluşur ama saatler sürebilir; kopyalamadığın imajlar ve ayarlar da burada olabilir."},
    {.name = "{linux*,kernel*,*-kernel,build*}", .holds = {"vmlinux", "vmlinux.o"}, .level = SafetyLevel::caution, .title = "{parent} · {name}", .explanation = "Derlenmiş bir Linux çekirdeği ve ayarları (`.config`). Çıktılar `make` ile yeniden oluşur; ayarlarını saklamadıysan geri gelmez."},
    {.name = "{build,build-*,build_*,*-build,out,out-*}", .holds = {"u-boot.cfg", "u-boot.map", "System.map"}, .level = SafetyLevel::caution, .title = "{parent} · {name}", .explanation = "Derlenmiş bir önyükleyici ya da çekirdek ve ayarları (`.config`). Çıktılar `make` ile yeniden oluşur; ayarlarını saklamadıysan geri gelmez."},
    {.name = "flutter/bin/cache", .holds = {"flutter.version.json", "flutter_tools.stamp", "dart-sdk", "engine-dart-sdk.stamp"}, .level = SafetyLevel::regenerable, .title = "Flutter araçları", .explanation = "Flutter'ın indirdiği Dart SDK ve derleme araçları. Silinirse ilk `flutter` komutu tekrar indirir."},
    {.name = "output", .siblings = {"Config.in.legacy"}, .holds = {"build", "host", "target"}, .level = SafetyLevel::regenerable, .title = "{parent} · Buildroot çıktısı", .explanation = "Buildroot derleme çıktıları; başka yere kopyalamadığın imajlar da burada. `make` ile yeniden oluşur (uzun sürebilir)."},
    {.name = "dl", .siblings = {"Config.in", "Config.in.legacy", "feeds.conf.default"}, .level = SafetyLevel::regenerable, .title = "{parent} · indirilen kaynaklar", .explanation = "Derlenen paketlerin kaynakları. Silinirse `make` tekrar indirir; bazılarının kaynağı artık bulunamayabilir."},
    {.name = "{build_dir,staging_dir}", .siblings = {"feeds.conf.default"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "OpenWrt derleme çıktıları. `make` ile yeniden oluşur (uzun sürebilir)."},
    {.name = "out", .siblings = {".repo", "frameworks"}, .holds = {"soong", "target", "host"}, .level = SafetyLevel::regenerable, .title = "{parent} · Android derlemesi", .explanation = "Android sistem derlemesinin çıktıları. Silinirse yeniden derlenir (saatler sürebilir)."},
    {.name = ".repo", .level = SafetyLevel::keep, .title = "{parent} · .repo", .explanation = "Kaynak ağacının bütün git geçmişi; göndermediğin dallar da burada.", .actionable = false},

    // Dart.
    {.name = ".dart_tool", .siblings = {"pubspec.yaml"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Dart'ın proje dosyaları. `flutter pub get` ile yeniden oluşur."},

    // .NET.
    {.name = "obj", .siblings = {"*.csproj", "*.fsproj", "*.vbproj"}, .holds = {"project.assets.json", "Debug", "Release", "*.nuget.g.props", "*.nuget.g.targets", "*.nuget.dgspec.json", "*.cache"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = ".NET ara çıktıları. `dotnet build` ile yeniden oluşur."},
    {.name = "bin", .siblings = {"*.csproj", "*.fsproj", "*.vbproj"}, .holds = {"Debug", "Release"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = ".NET derleme çıktıları; programının buraya yazdığı dosyalar da gider. `dotnet build` ile yeniden oluşur."},
    {.name = "packages", .siblings = {"*.sln"}, .holds = {"repositories.config"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "NuGet paketleri. `nuget restore` ile geri gelir."},

    // PHP and Ruby.
    {.name = "vendor", .siblings = {"composer.json"}, .holds = {"autoload.php"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "PHP bağımlılıkları. `composer install` ile geri gelir; içinde elle yaptığın değişiklikler gelmez."},
    {.name = "vendor/bundle", .holds = {"ruby"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Ruby bağımlılıkları. `bundle install` ile geri gelir."},
    {.name = "tmp/cache", .holds = {"bootsnap", "assets", "webpacker"}, .level = SafetyLevel::regenerable, .title = "Rails önbelleği", .explanation = "Ruby on Rails önbelleği. Silinirse yeniden oluşur."},
    {.name = "log", .holds = {"development.log", "test.log"}, .level = SafetyLevel::safe, .title = "{parent} · kayıtlar", .explanation = "Ruby on Rails günlükleri. Hata ayıklamıyorsan silmek güvenli."},
    {.name = "var/cache", .holds = {"dev", "prod"}, .level = SafetyLevel::regenerable, .title = "Symfony önbelleği", .explanation = "Symfony önbelleği. `php bin/console cache:clear` ile yeniden oluşur."},
    {.name = "vendor", .siblings = {"go.mod"}, .holds = {"modules.txt"}, .level = SafetyLevel::caution, .title = "{parent} · {name}", .explanation = "Go bağımlılıklarının projeye alınmış kopyaları. `go mod vendor` ile geri gelir; depoya eklenmişse git değişiklik gösterir."},

    // Elixir, Erlang, Haskell, OCaml and Lean.
    {.name = "_build", .siblings = {"mix.exs", "rebar.config", "dune-project", "dune-workspace", "rebar.lock", "gleam.toml"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Derleme çıktıları. Bir sonraki derlemede yeniden oluşur."},
    {.name = "deps", .siblings = {"mix.exs"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Elixir bağımlılıkları. `mix deps.get` ile geri gelir; içinde elle yaptığın değişiklikler gelmez."},
    {.name = "build", .siblings = {"gleam.toml", "xmake.lua"}, .holds = {"packages", "dev", "prod", "linux", ".objs"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Derleme çıktıları. Bir sonraki derlemede yeniden oluşur."},
    {.name = "_opam", .holds = {".opam-switch"}, .level = SafetyLevel::caution, .title = "{parent} · {name}", .explanation = "Projenin OCaml ortamı. Silersen `opam switch create .` ile yeniden kurman gerekir."},
    {.name = "_esy", .siblings = {"esy.json", "package.json", "esy.lock"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Projenin esy dosyaları. `esy install` ve `esy build` ile yeniden oluşur."},
    {.name = ".stack-work", .siblings = {"stack.yaml", "package.yaml", "*.cabal"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Stack derleme çıktıları. `stack build` ile yeniden oluşur."},
    {.name = "dist-newstyle", .siblings = {"cabal.project", "*.cabal"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Cabal derleme çıktıları. `cabal build` ile yeniden oluşur."},
    {.name = ".lake", .siblings = {"lakefile.lean", "lakefile.toml"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Lean derleme çıktıları ve paketleri. `lake build` ile yeniden oluşur."},

    // Zig, Nim, D, Swift and the rest.
    {.name = "{.zig-cache,zig-cache,zig-out}", .siblings = {"build.zig"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Zig derleme çıktıları. `zig build` ile yeniden oluşur."},
    {.name = "nimcache", .holds = {"*.nim.c", "*.nim.cpp", "*.c", "*.json"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Nim'in ürettiği kod. Bir sonraki derlemede yeniden oluşur."},
    {.name = ".dub", .siblings = {"dub.json", "dub.sdl"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "DUB derleme çıktıları. Bir sonraki derlemede yeniden oluşur."},
    {.name = ".spago", .siblings = {"spago.yaml", "spago.dhall"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "PureScript paketleri. `spago install` ile geri gelir."},
    {.name = "compiled", .holds = {"*_rkt.zo"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Derlenmiş Racket kodu. `raco make` ile yeniden oluşur."},
    {.name = "renv/library", .siblings = {"activate.R", "settings.json"}, .level = SafetyLevel::regenerable, .title = "Projenin R paketleri", .explanation = "Projenin R paketleri. Projede `renv::restore()` ile geri gelir."},
    {.name = "packrat/{lib,lib-R,lib-ext}", .siblings = {"packrat.lock"}, .level = SafetyLevel::regenerable, .title = "Projenin R paketleri", .explanation = "Projenin R paketleri. Projede `packrat::restore()` ile geri gelir."},
    {.name = ".Rproj.user", .siblings = {"*.Rproj"}, .level = SafetyLevel::caution, .title = "{parent} · {name}", .explanation = "RStudio'nun proje durumu; kaydedilmemiş dosyaların burada olabilir. Silersen geri gelmez."},

    // Python.
    {.name = "__pycache__", .holds = {"*.pyc"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Derlenmiş Python kodu. Bir sonraki çalıştırmada yeniden oluşur."},
    {.name = "{.mypy_cache,.ruff_cache,.pytest_cache,.pytype,.pyre,.import_linter_cache}", .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Kod denetiminin önbelleği. Bir sonraki denetimde yeniden oluşur."},
    {.name = ".tox", .siblings = {"tox.ini", "tox.toml", "pyproject.toml", "setup.cfg"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Test ortamları. `tox` yeniden kurar."},
    {.name = ".nox", .siblings = {"noxfile.py"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Test ortamları. `nox` yeniden kurar."},
    {.name = ".pixi", .siblings = {"pixi.toml", "pyproject.toml"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Projenin ortamları. `pixi install` ile yeniden kurulur."},
    {.name = "__pypackages__", .siblings = {"pyproject.toml"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Projenin Python paketleri. `pdm install` ile yeniden kurulur."},
    {.name = ".eggs", .siblings = {"setup.py", "setup.cfg"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Derleme sırasında indirilen Python paketleri. Gerektiğinde tekrar indirilir."},
    {.name = "build", .siblings = {"setup.py", "pyproject.toml", "setup.cfg"}, .holds = {"lib", "lib.*", "bdist.*", "temp.*", "__editable__*"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Python paketinin derleme çıktıları. Bir sonraki derlemede yeniden oluşur."},
    {.name = "htmlcov", .holds = {"index.html"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Test kapsamı raporu. Testler yeniden çalışınca oluşur."},
    {.name = "_build", .siblings = {"conf.py", "_config.yml", "myst.yml", "_toc.yml"}, .holds = {"html", "doctrees", ".doctrees", ".jupyter_cache", "latex", "dirhtml", "site"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Derlenmiş belgeler. Bir sonraki derlemede yeniden oluşur."},
    {.name = "{*venv*,*virtualenv*,env,.env,env-*,env_*,*-env,*_env,env[0-9]*,py[0-9]*}", .siblings = {"pyproject.toml", "requirements*.txt", "requirements", "Pipfile", "setup.py", "setup.cfg", "uv.lock", "poetry.lock", "pdm.lock"}, .holds = {"pyvenv.cfg"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Python sanal ortamı. Paket listesi yanında: `pip install -r` ya da `uv sync` yeniden kurar; elle kurduğun paketler gelmez."},
    {.name = "*", .holds = {"pyvenv.cfg"}, .level = SafetyLevel::caution, .title = "{parent} · {name}", .explanation = "Python sanal ortamı, ama yanında paket listesi yok. Silmeden önce `pip freeze` ile listesini al; yoksa içindekileri geri getirmek zor olur."},

    // Sites and documents.
    {.name = "{_site,.jekyll-cache}", .siblings = {"_config.yml", "_config.yaml"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Jekyll'in ürettiği site. `jekyll build` ile yeniden oluşur."},
    {.name = "resources/_gen", .level = SafetyLevel::regenerable, .title = "Hugo · üretilen dosyalar", .explanation = "Hugo'nun hazırladığı resim ve stiller. `hugo` ile yeniden oluşur."},
    {.name = "public", .siblings = {"hugo.toml", "hugo.yaml", "hugo.json", ".hugo_build.lock", "gatsby-config.js", "gatsby-config.ts", "gatsby-config.mjs"}, .holds = {"index.html", "index.xml", "sitemap.xml", "page-data"}, .level = SafetyLevel::caution, .title = "{parent} · üretilen site", .explanation = "Üretilmiş sayfalar. `hugo` ya da `gatsby build` ile yeniden oluşur; buraya elle koyduğun dosyalar gelmez."},
    {.name = ".quarto", .siblings = {"_quarto.yml", "_quarto.yaml"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Quarto'nun ara dosyaları. `quarto render` ile yeniden oluşur."},
    {.name = "_freeze", .siblings = {"_quarto.yml", "_quarto.yaml"}, .level = SafetyLevel::keep, .title = "{parent} · {name}", .explanation = "Quarto'nun hesap sonuçları; yeniden hesaplamak uzun sürebilir ya da artık mümkün olmayabilir.", .actionable = false},

    // Circuits.
    {.name = "{*.cache,*.ip_user_files,*.sim}", .siblings = {"*.xpr"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Vivado'nun ara dosyaları. Bir sonraki sentezde yeniden oluşur."},
    {.name = "*.runs", .siblings = {"*.xpr"}, .level = SafetyLevel::caution, .title = "{parent} · {name}", .explanation = "Vivado sentez sonuçları ve üretilen bitstream. Yeniden oluşturmak saatler sürebilir."},
    {.name = ".Xil", .level = SafetyLevel::safe, .title = "{parent} · {name}", .explanation = "Vivado'nun geçici dosyaları. Vivado kapalıysa silmek güvenli.", .processes = {"vivado"}},
    {.name = "{db,incremental_db}", .siblings = {"*.qpf"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Quartus'un ara dosyaları. Bir sonraki derlemede yeniden oluşur."},

    // Games.
    {.name = "Library", .siblings = {"ProjectSettings"}, .holds = {"ArtifactDB", "SourceAssetDB", "PackageCache", "ScriptAssemblies", "ShaderCache", "metadata"}, .level = SafetyLevel::regenerable, .title = "{parent} · Library", .explanation = "Unity'nin içe aktarma önbelleği. Proje açılınca yeniden oluşur (uzun sürebilir).", .processes = {"Unity"}},
    {.name = "{Temp,Obj}", .siblings = {"ProjectSettings"}, .holds = {"UnityLockfile", "ProcessJobs", "UnityTempFile*", "Debug", "Release", "Bin"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Unity'nin geçici dosyaları. Unity kapalıysa silebilirsin; yeniden oluşur.", .processes = {"Unity"}},
    {.name = "{DerivedDataCache,Intermediate}", .siblings = {"*.uproject", "*.uplugin"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Unreal Engine ara dosyaları. Bir sonraki derlemede yeniden oluşur.", .processes = {"UnrealEditor*"}},

    // What servers and crashed programs leave.
    {.name = "standalone/log", .holds = {"server.log"}, .level = SafetyLevel::caution, .title = "Sunucu kayıtları (log)", .explanation = "Uygulama sunucusunun günlükleri. Eski olanlar genelde gereksizdir; silmeden önce içlerine bir bak.", .processes = {"java"}},
    {.name = "DerivedDataCache", .siblings = {"*.uproject", "Content", "Source"}, .level = SafetyLevel::regenerable, .title = "{parent} · DerivedDataCache", .explanation = "Unreal'ın işlenmiş varlık önbelleği. Silinirse proje açılınca yeniden oluşturulur; uzun sürebilir.", .processes = {"UnrealEditor"}},
    {.name = "Intermediate", .siblings = {"*.uproject", "*.uplugin", "DerivedDataCache", "Shaders"}, .level = SafetyLevel::regenerable, .title = "{parent} · Intermediate", .explanation = "Unreal'ın derleme ara dosyaları. Bir sonraki derlemede yeniden oluşur.", .processes = {"UnrealEditor"}},
    {.name = ".build", .siblings = {"ct-ng", "*.config", ".config"}, .level = SafetyLevel::caution, .title = "{parent} · .build", .explanation = "Derleme ara dosyaları. Yeniden derlenebilir; uzun sürer, indirilmiş kaynaklar da burada olabilir."},
    {.name = ".yarn/cache", .level = SafetyLevel::caution, .title = "Yarn paketleri", .explanation = "Projenin indirilmiş paketleri. `yarn install` yeniden indirir; depoya eklenmişlerse git'ten geri gelirler."},
    {.name = "{.fvm,flutter}/flutter_sdk", .level = SafetyLevel::caution, .title = "Flutter SDK", .explanation = "Projenin kullandığı Flutter sürümü. Silinirse `fvm install` yeniden indirir."},

    // What a version control system keeps is not a build's.
    {.name = ".git/annex", .level = SafetyLevel::keep, .title = "git-annex verisi", .explanation = "git-annex dosyalarının kendisi; tek kopyası burada olabilir. Kullanılmayanlar için: `git annex unused`.", .command = "git annex unused", .actionable = false},
    {.name = ".git/lfs", .level = SafetyLevel::caution, .title = "Git LFS dosyaları", .explanation = "Büyük dosyaların eski sürümleri; göndermediklerin yalnızca burada. Eskiler için: `git lfs prune`.", .command = "git lfs prune", .actionable = false},
    {.name = ".dvc/cache", .level = SafetyLevel::keep, .title = "DVC verisi", .explanation = "Sürümlediğin veriler ve modeller; uzak depoya göndermediklerinin tek kopyası burada. Önce `dvc push`, sonra kullanılmayanlar için `dvc gc --workspace`.", .command = "dvc gc --workspace", .actionable = false},

    // Folders that say themselves that they are caches. A folder among the own files may only be marked to be left out of backups.
    {.name = "{*cache*,*target*,*build*}", .holds = {"CACHEDIR.TAG"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Bir programın önbellek diye işaretlediği klasör. Silinirse program yeniden oluşturur."},
    {.name = "*", .holds = {"CACHEDIR.TAG"}, .level = SafetyLevel::regenerable, .title = "{parent} · {name}", .explanation = "Bir programın önbellek diye işaretlediği klasör. Silinirse program yeniden oluşturur.", .inPersonal = false},
    {.name = "*", .holds = {"CACHEDIR.TAG"}, .level = SafetyLevel::caution, .title = "{parent} · {name}", .explanation = "Önbellek diye işaretlenmiş bir klasör; yalnızca yedeklere girmesin diye işaretlenmiş de olabilir. Silmeden önce içine bir bak."},
};
// clang-format on

}  // namespace

Rows buildRows() {
    return rows;
}

}  // namespace ulvak::RuleBook
