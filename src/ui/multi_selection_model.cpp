#include "ui/multi_selection_model.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <utility>

#include "app/shown.h"
#include "app/texts.h"
#include "core/checked_add.h"

namespace ulvak {
namespace {

bool hasAction(const FindingPointer& finding) {
    return canBeCleaned(*finding);
}

bool isRisky(const FindingPointer& finding) {
    return finding->level != SafetyLevel::safe && finding->level != SafetyLevel::regenerable;
}

std::int64_t sum(const Findings& findings) {
    std::int64_t bytes = 0;
    for (const FindingPointer& finding : findings)
        addChecked(bytes, finding->size);
    return bytes;
}

}  // namespace

MultiSelectionModel::MultiSelectionModel(const AppModel& app, QObject* parent) : QObject(parent), app_(app) {
    connect(&app, &AppModel::cleaningChanged, this, &MultiSelectionModel::busyChanged);
}

void MultiSelectionModel::setItems(Findings items) {
    if (items == items_)
        return;
    items_ = std::move(items);
    emit changed();
    emit busyChanged();
}

Findings MultiSelectionModel::cleanable() const {
    Findings result;
    std::ranges::copy_if(items_, std::back_inserter(result), hasAction);
    return result;
}

QStringList MultiSelectionModel::cleanableTokens() const {
    QStringList tokens;
    for (const FindingPointer& finding : cleanable())
        tokens.append(tokenOf(finding->id));
    return tokens;
}

std::int64_t MultiSelectionModel::riskyCount() const {
    return std::ranges::count_if(cleanable(), isRisky);
}

QString MultiSelectionModel::countText() const {
    return QStringLiteral("%1 öğe seçili").arg(items_.size());
}

QString MultiSelectionModel::totalText() const {
    return Texts::bytes(sum(items_));
}

QVariantList MultiSelectionModel::levels() const {
    QVariantList rows;
    for (const SafetyLevel level : displayedSafetyLevels()) {
        const auto count = std::ranges::count(items_, level, &Finding::level);
        if (count > 0)
            rows.append(QVariantMap{{QStringLiteral("level"), Texts::fixed(info(level).rawValue)},
                                    {QStringLiteral("count"), static_cast<int>(count)}});
    }
    return rows;
}

QString MultiSelectionModel::skippedText() const {
    const auto skipped = items_.size() - cleanable().size();
    return skipped == 0 ? QString()
                        : QStringLiteral("%1 öğe Ulvak tarafından silinmiyor ve atlanacak.").arg(skipped);
}

bool MultiSelectionModel::canClean() const {
    return std::ranges::any_of(items_, hasAction);
}

bool MultiSelectionModel::asksFirst() const {
    return riskyCount() > 0;
}

bool MultiSelectionModel::deletesForGood() const {
    return std::ranges::any_of(items_, [](const FindingPointer& finding) {
        return std::holds_alternative<CleanAction::DeleteSimulator>(finding->action.value);
    });
}

bool MultiSelectionModel::isCleaning() const {
    return std::ranges::any_of(
        items_, [&](const FindingPointer& finding) { return app_.cleaning().contains(finding->id); });
}

QString MultiSelectionModel::cleanText() const {
    return QStringLiteral("Temizle (%1)").arg(Texts::bytes(sum(cleanable())));
}

QString MultiSelectionModel::warning() const {
    const auto quoted = [](SafetyLevel level) {
        return QStringLiteral("\"%1\"").arg(Texts::fixed(info(level).title));
    };
    return QStringLiteral(
               "%1 öğe %2, %3 ya da %4 olarak etiketli. Dosyalar çöp kutusuna taşınır, simülatörler "
               "silinir.")
        .arg(riskyCount())
        .arg(quoted(SafetyLevel::caution), quoted(SafetyLevel::unknown), quoted(SafetyLevel::keep));
}

}  // namespace ulvak
