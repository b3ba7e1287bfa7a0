#include "classify/heuristics.h"

#include <algorithm>
#include <cstddef>

#include "core/text.h"

namespace ulvak::Heuristics {
namespace {

// clang-format off
std::vector<Row> rows() {
    return {
        {{"cache", "caches", "cached", ".cache"},
         {.level = SafetyLevel::regenerable, .title = "{name} (önbellek)", .explanation = "Adı önbellek olduğunu düşündürüyor; genelde yeniden oluşturulur."}},
        {{"log", "logs", "trace", "traces", "tmp", "temp", "crash", "crashes", "diagnostics", "crashreports"},
         {.level = SafetyLevel::safe, .title = "{name} (kayıt/geçici)", .explanation = "Adı kayıt, iz ya da geçici dosya olduğunu düşündürüyor; bunlar genelde silinebilir."}},
        {{"bench", "benchmark", "benchmarks", "build", "builds", "out", "output", "outputs", "artifacts", "derived", "intermediates", "obj"},
         {.level = SafetyLevel::regenerable, .title = "{name} (üretilmiş çıktı)", .explanation = "Adı derleme ya da ölçüm çıktısı olduğunu düşündürüyor; genelde yeniden üretilebilir."}},
        {{"download", "downloads", "installers", "updates", "update", "packages"},
         {.level = SafetyLevel::caution, .title = "{name} (indirmeler)", .explanation = "İndirilmiş dosyalar olabilir; tekrar indirilebilir ama bazıları artık bulunamayabilir."}},
        {{"backup", "backups", "snapshots", "archive", "archives", "yedek", "yedekler"},
         {.level = SafetyLevel::caution, .title = "{name} (yedek)", .explanation = "Yedek ya da arşiv olabilir; silmeden önce başka bir kopyası olduğundan emin ol.", .splitChildren = true}},
        {{"bottles", "bottle", "vms", "vm", "machines", "disks", "prefixes", "wineprefix", "containers"},
         {.level = SafetyLevel::caution, .title = "{name} (sanal ortam)", .explanation = "Sanal makine ya da uygulama ortamı olabilir; içinde kurulu programlar ve kayıtlı veriler bulunabilir.", .splitChildren = true}},
        {{"models", "weights", "checkpoints"},
         {.level = SafetyLevel::caution, .title = "{name} (modeller)", .explanation = "Yapay zeka modelleri olabilir; tekrar indirilebilir ama büyük ve zaman alıcı.", .splitChildren = true}},
        {{"runtimes", "runtime", "sdk", "sdks", "toolchains", "toolchain"},
         {.level = SafetyLevel::caution, .title = "{name} (çalışma ortamı)", .explanation = "Bir uygulamanın indirdiği çalışma ortamı olabilir; silinirse uygulama tekrar indirmek zorunda kalır.", .splitChildren = true}},
    };
}
// clang-format on

}  // namespace

const std::vector<Row>& table() {
    static const std::vector<Row> built = rows();
    return built;
}

std::optional<Guess> guess(std::string_view name) {
    const std::string lower = lowerCased(name);
    // A folder named build-backup is a backup, not a build output.
    if (lower.contains("backup") || lower.contains("yedek"))
        return std::ranges::find_if(table(), [](const Row& row) { return row.keywords.contains("backup"); })
            ->guess;
    for (const Row& row : table()) {
        if (row.keywords.contains(lower))
            return row.guess;
    }
    return std::nullopt;
}

}  // namespace ulvak::Heuristics
