#include "cli/dump.h"

#include <algorithm>
#include <ranges>
#include <vector>

#include "ai/ai_classifier.h"
#include "ai/ai_status.h"
#include "ai/folder_context.h"
#include "ai/machine_model.h"
#include "cli/standard_streams.h"
#include "core/checked_add.h"
#include "core/format.h"
#include "core/text.h"
#include "survey/scanner.h"

namespace ulvak::Diagnostics {
namespace {

constexpr std::size_t maxLines = 25;
constexpr std::size_t sizeWidth = 10;

std::string summaryLine(const Summary& summary) {
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(summary.elapsed).count();
    return "Tarandı: " + std::to_string(summary.files) + " dosya, " + Format::bytes(summary.bytes) +
           ", erişilemeyen: " + std::to_string(summary.denied) + ", " + std::to_string(seconds) + " sn\n";
}

std::string shownPlace(const Finding& finding, const UserFolders& folders) {
    return printable(Paths::display(finding.urls.at(0), folders));
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
        addChecked(size, finding.size);
        if (++count <= maxLines)
            lines += findingLine(finding, folders);
    }
    if (count == 0)
        return {};
    return "== " + std::string(info(level).title) + ": " + Format::bytes(size) + " (" +
           std::to_string(count) + ")\n" + lines;
}

std::string answerText(const Finding& finding, const AIClassifier::Result& verdict,
                       const UserFolders& folders) {
    const std::string place = "\n• " + shownPlace(finding, folders);
    if (!verdict)
        return place + ": HATA " + printable(verdict.error().description()) + "\n";
    return place + " (" + Format::bytes(finding.size) + ")\n  → " + std::string(info(verdict->level).title) +
           " %" + std::to_string(verdict->confidence.value_or(0)) + ": " + printable(verdict->title) +
           "\n    " + printable(verdict->explanation) + "\n";
}

}  // namespace

std::string listing(const Summary& summary, std::span<const Finding> findings, const UserFolders& folders) {
    std::string text = summaryLine(summary) + "\n";
    for (const SafetyLevel level : displayedSafetyLevels())
        text += levelSection(level, findings, folders);
    return text;
}

void askModel(std::span<const Finding> findings, const platform::LanguageModel& model,
              const std::function<void(std::string_view)>& output, const UserFolders& folders) {
    const AIStatus status = AIStatus::current(model);
    output("\nAI: " + status.plainText() + "\n");
    if (!status.isAvailable()) {
        // The listing ends with the status; the hint is not part of it.
        if (!status.hint.empty())
            printError(printable(status.hint) + "\n");
        return;
    }
    const auto installed = FolderContext::Applications::ofThisMachine(folders).installed;
    for (const Finding& finding : findings) {
        if (!isUncertain(finding))
            continue;
        const auto verdict =
            AIClassifier::classify(finding, "", {}, model, {.folders = folders, .installed = installed});
        output(answerText(finding, verdict, folders));
    }
}

bool run(bool asksModel, const UserFolders& folders) {
    const auto start = std::chrono::steady_clock::now();
    ScanProgress progress;
    const auto findings = Scanner{progress, folders}.run();
    if (!findings) {
        printError("ulvak: tarama tamamlanamadı: bellek yetmedi\n");
        return false;
    }
    const Summary summary{.files = progress.files(),
                          .bytes = progress.bytes(),
                          .denied = progress.denied(),
                          .elapsed = std::chrono::steady_clock::now() - start};
    print(listing(summary, *findings, folders));
    if (asksModel)
        askModel(*findings, machineModel(), print, folders);
    return true;
}

}  // namespace ulvak::Diagnostics
