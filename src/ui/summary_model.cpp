#include "ui/summary_model.h"

#include <ranges>
#include <utility>
#include <vector>

#include "core/checked_add.h"
#include "core/paths.h"
#include "core/words.h"
#include "ui/shown.h"
#include "ui/texts.h"

namespace ulvak {
namespace {

constexpr std::size_t maxLargest = 8;

}  // namespace

SummaryModel::SummaryModel(AppModel& app, QObject* parent) : QObject(parent), app_(app) {
    summarize();
    // Connected before any reader.
    connect(&app, &AppModel::findingsChanged, this, &SummaryModel::summarize);
    for (const auto changed :
         {&AppModel::findingsChanged, &AppModel::freedBytesChanged, &AppModel::deniedCountChanged})
        connect(&app, changed, this, &SummaryModel::changed);
}

void SummaryModel::summarize() {
    std::vector<LevelLine> levels;
    for (const SafetyLevel level : displayedSafetyLevels()) {
        LevelLine line{LevelInfo::of(level)};
        line.sizeText = Texts::bytes(app_.total(level));
        line.countText = QStringLiteral("%1 öğe · ").arg(app_.count(level)) + line.summary;
        levels.push_back(std::move(line));
    }
    levels_.assign(std::move(levels));
    std::vector<LargestLine> largest;
    for (const FindingPointer& finding : app_.findings() | std::views::take(maxLargest)) {
        const SafetyLevelInfo& level = info(finding->level);
        largest.push_back({.level = Level::Value(finding->level),
                           .symbol = Texts::fixed(level.symbol),
                           .levelColor = Texts::fixed(level.color),
                           .title = shown(finding->title),
                           .location = shown(Paths::display(finding->urls.front(), app_.folders())),
                           .sizeText = Texts::bytes(finding->size)});
    }
    largest_.assign(std::move(largest));
}

QString SummaryModel::reclaimableText() const {
    std::int64_t bytes = app_.total(SafetyLevel::safe);
    addChecked(bytes, app_.total(SafetyLevel::regenerable));
    return Texts::bytes(bytes);
}

QString SummaryModel::freedText() const {
    return app_.freedBytes() < 1 ? QString()
                                 : QStringLiteral("Bu oturumda ") + Texts::bytes(app_.freedBytes()) +
                                       QStringLiteral(" yer açtın.");
}

QString SummaryModel::deniedText() const {
    return app_.deniedCount() < 1 ? QString()
                                  : QString::number(app_.deniedCount()) + Texts::fixed(words().denied);
}

}  // namespace ulvak
