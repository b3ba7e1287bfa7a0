#include "app/dump.h"

#include <algorithm>
#include <ranges>
#include <vector>

#include "app/standard_streams.h"
#include "core/format.h"
#include "core/text.h"
#include "scan/scanner.h"

namespace ulvak::Diagnostics {
namespace {

constexpr std::size_t mostLines = 25;
constexpr std::size_t sizeWidth = 10;

std::string summaryLine(const Summary& summary) {
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(summary.elapsed).count();
    return "Tarandı: " + std::to_string(summary.files) + " dosya, " + Format::bytes(summary.bytes) +
           ", erişilemeyen: " + std::to_string(summary.denied) + ", " + std::to_string(seconds) + " sn\n";
}

std::string shownPlace(const Finding& finding, const UserFolders& folders) {
    return printable(Paths::display(finding.urls.front(), folders));
}

std::string findingLine(const Finding& finding, const UserFolders& folders) {
    return "  " + paddedOrCut(Format::bytes(finding.size), sizeWidth) + " [" +
           std::string(info(finding.source).label) + "] " + printable(finding.title) + "  —  " +
           shownPlace(finding, folders) + "\n";
}

std::string levelSection(SafetyLevel level, std::span<const Finding> findings, const UserFolders& folders) {
    std::int64_t size = 0;
    std::size_t count = 0;
    std::string lines;
    for (const Finding& finding : findings) {
        if (finding.level != level)
            continue;
        size += finding.size;
        if (++count <= mostLines)
            lines += findingLine(finding, folders);
    }
    if (count == 0)
        return {};
    return "== " + std::string(info(level).title) + ": " + Format::bytes(size) + " (" +
           std::to_string(count) + ")\n" + lines;
}

}  // namespace

std::string listing(const Summary& summary, std::span<const Finding> findings, const UserFolders& folders) {
    std::string text = summaryLine(summary) + "\n";
    for (const SafetyLevel level : displayedSafetyLevels())
        text += levelSection(level, findings, folders);
    return text;
}

void run(bool asksModel) {
    const auto start = std::chrono::steady_clock::now();
    ScanProgress progress;
    const std::vector<Finding> findings = Scanner{progress}.run();
    const Summary summary{.files = progress.files(),
                          .bytes = progress.bytes(),
                          .denied = progress.denied(),
                          .elapsed = std::chrono::steady_clock::now() - start};
    print(listing(summary, findings));
    if (asksModel)
        print("\nAI: unavailable(\"Apple Intelligence şu an kullanılamıyor.\")\n");
}

}  // namespace ulvak::Diagnostics
