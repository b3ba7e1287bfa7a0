#include "ui/multi_selection_model.h"

#include <algorithm>
#include <utility>

#include "core/checked_add.h"
#include "core/words.h"
#include "ui/texts.h"

namespace ulvak {
namespace {

bool isRisky(const Finding& finding) {
    return finding.level != SafetyLevel::safe && finding.level != SafetyLevel::regenerable;
}

}  // namespace

MultiSelectionModel::MultiSelectionModel(AppModel& app, QObject* parent) : QObject(parent), app_(app) {
    connect(&app, &AppModel::cleaningChanged, this, &MultiSelectionModel::busyChanged);
}

void MultiSelectionModel::setItems(Findings items) {
    if (items == items_)
        return;
    items_ = std::move(items);
    sums_ = {};
    for (const FindingPointer& finding : items_)
        count(*finding);
    countLevels();
    emit changed();
    emit busyChanged();
}

void MultiSelectionModel::count(const Finding& finding) {
    addChecked(sums_.bytes, finding.size);
    ++sums_.levels[finding.level];
    sums_.deletesForGood =
        sums_.deletesForGood || std::holds_alternative<CleanAction::DeleteSimulator>(finding.action.value);
    if (!canBeCleaned(finding))
        return;
    ++sums_.cleanable;
    sums_.risky += isRisky(finding) ? 1 : 0;
    addChecked(sums_.cleanableBytes, finding.size);
}

std::vector<std::string> MultiSelectionModel::cleanableIds() const {
    std::vector<std::string> ids;
    for (const FindingPointer& finding : items_) {
        if (canBeCleaned(*finding))
            ids.push_back(finding->id);
    }
    return ids;
}

void MultiSelectionModel::clean() {
    if (!asksFirst())
        app_.clean(cleanableIds(), CleanMode::trash);
}

void MultiSelectionModel::cleanAsked() {
    app_.clean(takeAsked(), CleanMode::trash);
}

QString MultiSelectionModel::countText() const {
    return QStringLiteral("%1 öğe seçili").arg(items_.size());
}

QString MultiSelectionModel::totalText() const {
    return Texts::bytes(sums_.bytes);
}

void MultiSelectionModel::countLevels() {
    std::vector<LevelCount> lines;
    for (const SafetyLevel level : displayedSafetyLevels()) {
        if (const auto found = sums_.levels.find(level); found != sums_.levels.end())
            lines.push_back({.about = LevelInfo::of(level), .number = found->second});
    }
    levels_.assign(std::move(lines));
}

QString MultiSelectionModel::skippedText() const {
    const auto skipped = static_cast<int>(items_.size()) - sums_.cleanable;
    return skipped == 0 ? QString()
                        : QStringLiteral("%1 öğe Ulvak tarafından silinmiyor ve atlanacak.").arg(skipped);
}

bool MultiSelectionModel::canClean() const {
    return sums_.cleanable > 0;
}

bool MultiSelectionModel::asksFirst() const {
    return sums_.risky > 0;
}

bool MultiSelectionModel::deletesForGood() const {
    return sums_.deletesForGood;
}

bool MultiSelectionModel::isCleaning() const {
    return std::ranges::any_of(
        items_, [&](const FindingPointer& finding) { return app_.cleaning().contains(finding->id); });
}

QString MultiSelectionModel::cleanText() const {
    return QStringLiteral("Temizle (%1)").arg(Texts::bytes(sums_.cleanableBytes));
}

QString MultiSelectionModel::warning() const {
    const std::string_view cleaning =
        deletesForGood() ? "Dosyalar çöp kutusuna taşınır, simülatörler silinir." : words().cleaningDoes;
    const auto quoted = [](SafetyLevel level) {
        return QStringLiteral("\"%1\"").arg(Texts::fixed(info(level).title));
    };
    return QStringLiteral("%1 öğe %2, %3 ya da %4 olarak etiketli. %5")
        .arg(sums_.risky)
        .arg(quoted(SafetyLevel::caution), quoted(SafetyLevel::unknown), quoted(SafetyLevel::keep),
             Texts::fixed(cleaning));
}

}  // namespace ulvak
