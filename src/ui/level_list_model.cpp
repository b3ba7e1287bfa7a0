#include "ui/level_list_model.h"

#include <QLocale>
#include <algorithm>

#include "ui/detail_model.h"
#include "ui/shown.h"
#include "ui/texts.h"

namespace ulvak {

LevelListModel::LevelListModel(AppModel& app, FindingsModel& findings, QObject* parent)
    : QObject(parent), app_(app), rows_(findings), selection_(app, rows_) {
    for (const auto changed : {&AppModel::findingsChanged, &AppModel::aiStatusChanged})
        connect(&app, changed, this, &LevelListModel::changed);
    for (const auto changed : {&AppModel::findingsChanged, &AppModel::cleaningChanged})
        connect(&app, changed, this, &LevelListModel::menuInfoChanged);
}

void LevelListModel::setLevel(std::optional<SafetyLevel> level) {
    selection_.set({});
    rows_.setLevel(level);
}

LevelInfo LevelListModel::about() const {
    return LevelInfo::of(level().value_or(SafetyLevel::unknown));
}

QString LevelListModel::title() const {
    const auto level = this->level();
    return level ? Texts::fixed(info(*level).title) : QString();
}

QString LevelListModel::subtitle() const {
    const auto level = this->level();
    if (!level || rows_.count() == 0)
        return {};
    return QStringLiteral("%1 öğe · ").arg(rows_.count()) + Texts::bytes(app_.total(*level));
}

bool LevelListModel::offersBatch() const {
    const auto level = this->level();
    if (!level || !app_.aiStatus().isAvailable())
        return false;
    return app_.count(*level) > 0 && (*level == SafetyLevel::unknown || app_.hasGuesses(*level));
}

RowMenuInfo LevelListModel::menuInfo(const QString& findingId) const {
    const FindingPointer finding = rows_.at(rows_.rowOf(idOf(findingId)));
    if (!finding)
        return {};
    return {.isThere = true,
            .canTrash = canBeCleaned(*finding),
            .canReset = DetailModel::canReset(*finding),
            .isCleaning = app_.cleaning().contains(finding->id)};
}

int LevelListModel::rowBeginning(const QString& letters, int row) const {
    static const QLocale turkish(QLocale::Turkish, QLocale::Turkey);
    const QString wanted = turkish.toLower(letters);
    for (int step = 0; step < rows_.count(); ++step) {
        const int candidate = (std::max(row, 0) + step) % rows_.count();
        if (turkish.toLower(shown(rows_.at(candidate)->title)).startsWith(wanted))
            return candidate;
    }
    return -1;
}

}  // namespace ulvak
