#include "ui/actions_model.h"

#include <algorithm>
#include <iterator>
#include <vector>

#include "app/finding_action.h"
#include "app/shown.h"
#include "app/texts.h"

namespace ulvak {
namespace {

std::vector<LevelInfo> allLevelInfos() {
    std::vector<LevelInfo> levels;
    std::ranges::transform(allSafetyLevels, std::back_inserter(levels), LevelInfo::of);
    return levels;
}

std::vector<ActionLine> otherActions() {
    std::vector<ActionLine> lines;
    for (const FindingAction& action : findingActions())
        lines.push_back({.name = Texts::fixed(action.name),
                         .title = Texts::fixed(action.title),
                         .symbol = Texts::fixed(action.symbol)});
    return lines;
}

}  // namespace

ActionsModel::ActionsModel(AppModel& app, QObject* parent) : QObject(parent), app_(app) {
    levels_.assign(allLevelInfos());
    others_.assign(otherActions());
}

void ActionsModel::setLevel(Level::Value level, const QString& token) {
    app_.setLevel(SafetyLevel(level), idOf(token));
}

void ActionsModel::resetVerdict(const QString& token) {
    app_.resetVerdict(idOf(token));
}

void ActionsModel::moveToTrash(const QString& token) {
    app_.clean({idOf(token)}, CleanMode::trash);
}

void ActionsModel::removePermanently(const QString& token) {
    app_.clean({idOf(token)}, CleanMode::permanent);
}

void ActionsModel::perform(const QString& action, const QString& token) {
    if (const FindingPointer finding = app_.finding(idOf(token)))
        app_.perform(action.toStdString(), *finding);
}

}  // namespace ulvak
