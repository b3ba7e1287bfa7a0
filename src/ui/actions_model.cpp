#include "ui/actions_model.h"

#include <QClipboard>
#include <QGuiApplication>
#include <algorithm>
#include <iterator>
#include <vector>

#include "app/finding_action.h"
#include "ui/shown.h"
#include "ui/texts.h"

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

void ActionsModel::setLevel(Level::Value level, const QString& findingId) {
    app_.setLevel(SafetyLevel(level), idOf(findingId));
}

void ActionsModel::resetVerdict(const QString& findingId) {
    app_.resetVerdict(idOf(findingId));
}

void ActionsModel::moveToTrash(const QString& findingId) {
    app_.clean({idOf(findingId)}, CleanMode::trash);
}

void ActionsModel::removePermanently(const QString& findingId) {
    app_.clean({idOf(findingId)}, CleanMode::permanent);
}

void ActionsModel::emptyTrash() {
    app_.askToEmptyTrash();
}

void ActionsModel::copyCommand(const QString& findingId) {
    const FindingPointer finding = app_.finding(idOf(findingId));
    if (finding && !finding->command.empty())
        QGuiApplication::clipboard()->setText(shown(finding->command));
}

void ActionsModel::perform(const QString& action, const QString& findingId) {
    if (const FindingPointer finding = app_.finding(idOf(findingId)))
        app_.perform(action.toStdString(), *finding);
}

}  // namespace ulvak
