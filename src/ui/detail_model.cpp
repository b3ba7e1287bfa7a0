#include "ui/detail_model.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "core/finding.h"
#include "core/format.h"
#include "core/paths.h"
#include "core/text.h"
#include "ui/shown.h"
#include "ui/texts.h"

namespace ulvak {
namespace {

constexpr std::size_t maxContents = 12;

/// The path of an item in the finding. A group's children are its members, even if there is only one.
std::string placeOf(const Finding& finding, const ChildSummary& child) {
    const auto& places = finding.urls;
    if (places.size() == 1 && !finding.groupKey)
        return Paths::join(places.front(), child.name);
    const auto member = std::ranges::find(places, child.name, Paths::lastComponent);
    return member == places.end() ? child.name : *member;
}

}  // namespace

DetailModel::DetailModel(AppModel& app, QObject* parent) : QObject(parent), app_(app) {
    connect(&app, &AppModel::analyzingChanged, this, &DetailModel::busyChanged);
    connect(&app, &AppModel::cleaningChanged, this, &DetailModel::busyChanged);
}

void DetailModel::setFinding(FindingPointer finding) {
    if (finding == finding_)
        return;
    finding_ = std::move(finding);
    contents_.assign(firstContents());
    metadata_.assign(knownMetadata());
    emit changed();
    emit busyChanged();
}

const Finding& DetailModel::shownFinding() const {
    static const Finding nothing;
    return finding_ ? *finding_ : nothing;
}

QString DetailModel::findingId() const {
    return idText(shownFinding().id);
}

QString DetailModel::title() const {
    return shown(shownFinding().title);
}

LevelInfo DetailModel::level() const {
    return LevelInfo::of(shownFinding().level);
}

QString DetailModel::sourceLabel() const {
    return Texts::fixed(info(shownFinding().source).label);
}

QString DetailModel::sourceSymbol() const {
    return Texts::fixed(info(shownFinding().source).symbol);
}

QString DetailModel::badge() const {
    return Texts::badge(shownFinding());
}

QString DetailModel::confidenceText() const {
    return Texts::confidence(shownFinding());
}

QString DetailModel::sizeText() const {
    return Texts::bytes(shownFinding().size);
}

QString DetailModel::freedText() const {
    const QString freed = Texts::bytes(bytesFreed(shownFinding()));
    return freed == sizeText()
               ? QString()
               : QStringLiteral("Silince %1 boşalır: kalanı başka yerlerde de duruyor").arg(freed);
}

QString DetailModel::explanation() const {
    return shownLines(shownFinding().explanation);
}

DetailModel::Action DetailModel::action() const {
    const auto& action = shownFinding().action.value;
    if (std::holds_alternative<CleanAction::DeleteSimulator>(action))
        return Action::Simulator;
    if (isTrash(shownFinding()))
        return Action::EmptyTrash;
    return std::holds_alternative<CleanAction::Trash>(action) ? Action::Trash : Action::None;
}

QString DetailModel::actionColor() const {
    const Finding& finding = shownFinding();
    const bool isSimulator = std::holds_alternative<CleanAction::DeleteSimulator>(finding.action.value);
    // Deleting a simulator is permanent: its button warns unless nothing can be lost.
    const SafetyLevel shown =
        isSimulator && finding.level != SafetyLevel::safe ? SafetyLevel::caution : finding.level;
    return Texts::fixed(info(shown).color);
}

QString DetailModel::reason() const {
    const auto* none = std::get_if<CleanAction::None>(&shownFinding().action.value);
    return none != nullptr ? shown(none->reason) : QString();
}

QString DetailModel::command() const {
    return shown(shownFinding().command);
}

QString DetailModel::quitText() const {
    const std::vector<std::string> names = namesToQuit(shownFinding());
    return names.empty() ? QString() : shown("Silmeden önce kapat: " + joined(names));
}

bool DetailModel::asksBeforeTrash() const {
    const SafetyLevel level = shownFinding().level;
    return level == SafetyLevel::keep || level == SafetyLevel::unknown;
}

bool DetailModel::offersPermanent() const {
    return isEasilyDeleted(shownFinding().level);
}

QString DetailModel::trashQuestion() const {
    return title() + QStringLiteral(" çöp kutusuna taşınsın mı?");
}

QString DetailModel::trashMessage() const {
    return QStringLiteral("Bu öğe \"%1\" olarak etiketli. Emin misin?")
        .arg(Texts::fixed(info(shownFinding().level).title));
}

QString DetailModel::permanentQuestion() const {
    return title() + QStringLiteral(" kalıcı olarak silinsin mi?");
}

QString DetailModel::permanentButton() const {
    return QStringLiteral("Kalıcı Olarak Sil (%1)").arg(sizeText());
}

bool DetailModel::canReset(const Finding& finding) {
    return finding.level != finding.original.level || finding.source != finding.original.source;
}

bool DetailModel::canReset() const {
    return canReset(shownFinding());
}

bool DetailModel::showsModel() const {
    const Finding& finding = shownFinding();
    return finding.source != VerdictSource::rule || finding.level == SafetyLevel::unknown ||
           finding.isPersonal;
}

bool DetailModel::showsModelWarning() const {
    return shownFinding().source == VerdictSource::ai;
}

QString DetailModel::analyzeText() const {
    if (isAnalyzing())
        return QStringLiteral("Düşünüyor…");
    return shownFinding().source == VerdictSource::ai ? QStringLiteral("Yeniden Analiz Et")
                                                      : QStringLiteral("Analiz Et");
}

bool DetailModel::isAnalyzing() const {
    return app_.analyzing().contains(shownFinding().id);
}

bool DetailModel::isCleaning() const {
    return app_.cleaning().contains(shownFinding().id);
}

QString DetailModel::contentsTitle() const {
    return shownFinding().urls.size() > 1 ? QStringLiteral("Dosyalar") : QStringLiteral("İçindekiler");
}

std::vector<ContentLine> DetailModel::firstContents() const {
    std::vector<ContentLine> lines;
    const auto& children = shownFinding().children;
    for (std::size_t index = 0; index < std::min(children.size(), maxContents); ++index) {
        const ChildSummary& child = children[index];
        lines.push_back({.symbol = child.isDirectory ? QStringLiteral("folder") : QStringLiteral("doc"),
                         .name = shown(child.name),
                         .location = shown(Paths::display(placeOf(shownFinding(), child), app_.folders())),
                         .sizeText = Texts::bytes(child.size)});
    }
    return lines;
}

QString DetailModel::moreContents() const {
    const std::size_t count = shownFinding().children.size();
    return count > maxContents ? QStringLiteral("ve %1 öğe daha").arg(count - maxContents) : QString();
}

std::vector<MetadataLine> DetailModel::knownMetadata() const {
    if (!finding_)
        return {};
    const Finding& finding = *finding_;
    std::vector<MetadataLine> lines = {
        {.label = QStringLiteral("Konum"),
         .value = shown(Paths::display(finding.urls.front(), app_.folders()))}};
    if (finding.modified)
        lines.push_back({.label = QStringLiteral("Değişiklik"),
                         .value = QString::fromStdString(Format::relative(finding.modified))});
    lines.push_back({.label = QStringLiteral("Dosya sayısı"), .value = Texts::number(finding.fileCount)});
    return lines;
}

}  // namespace ulvak
