#include "ui/window_model.h"

#include <QLocale>
#include <QPointer>
#include <QTimer>
#include <QUuid>
#include <algorithm>
#include <iterator>
#include <ranges>
#include <string_view>
#include <unordered_set>
#include <utility>

#include "app/finding_action.h"
#include "app/shown.h"
#include "app/texts.h"
#include "core/checked_add.h"
#include "core/paths.h"

namespace ulvak {
namespace {

/// Less free space than this is little.
constexpr std::int64_t lowSpace = 20'000'000'000;
constexpr std::size_t maxLargest = 8;
constexpr std::string_view levelArgument = "--level=";

std::int64_t usedBytes(const DiskInfo& disk) {
    std::int64_t used = disk.total;
    addChecked(used, -disk.available);
    return used;
}

std::optional<SidebarItem> levelNamed(const QString& rawValue) {
    const auto level = safetyLevel(rawValue.toStdString());
    return level ? std::optional(SidebarItem{*level}) : std::nullopt;
}

std::vector<LevelInfo> allLevelInfos() {
    std::vector<LevelInfo> levels;
    std::ranges::transform(allSafetyLevels, std::back_inserter(levels), LevelInfo::of);
    return levels;
}

std::vector<ActionLine> allActions() {
    std::vector<ActionLine> lines;
    for (const FindingAction& action : findingActions())
        lines.push_back({.name = Texts::fixed(action.name),
                         .title = Texts::fixed(action.title),
                         .symbol = Texts::fixed(action.symbol)});
    return lines;
}

}  // namespace

WindowModel::WindowModel(AppModel& app, QObject* parent)
    : QObject(parent), app_(app), findings_(app), selection_(findings_), detail_(app), several_(app) {
    levelChoices_.assign(allLevelInfos());
    actions_.assign(allActions());
    summarize();
    measureSegments();
    // Before anybody reads them.
    connect(&app_, &AppModel::findingsChanged, this, &WindowModel::summarize);
    for (const auto changed : {&AppModel::findingsChanged, &AppModel::diskChanged})
        connect(&app_, changed, this, &WindowModel::measureSegments);
    forwardSignals();
    connect(&selection_, &FindingSelection::changed, this, &WindowModel::followDetail);
    connect(&app_, &AppModel::phaseChanged, this, &WindowModel::selectFirst);
    connect(&app_, &AppModel::cleaningEnded, this, &WindowModel::stoppingChanged);
    connect(&app_, &AppModel::cleaningEnded, this, &WindowModel::closeWhenStopped);
    connect(&app_, &AppModel::alertChanged, this, &WindowModel::closeWhenStopped);
}

void WindowModel::forwardSignals() {
    connect(&app_, &AppModel::phaseChanged, this, &WindowModel::phaseChanged);
    connect(&app_, &AppModel::phaseChanged, this, &WindowModel::findingsChanged);
    connect(&app_, &AppModel::diskChanged, this, &WindowModel::diskChanged);
    connect(&app_, &AppModel::aiStatusChanged, this, &WindowModel::modelChanged);
    connect(&app_, &AppModel::aiStatusChanged, this, &WindowModel::listChanged);
    connect(&app_, &AppModel::scannedFilesChanged, this, &WindowModel::scannedFilesChanged);
    connect(&app_, &AppModel::scannedBytesChanged, this, &WindowModel::scannedBytesChanged);
    connect(&app_, &AppModel::currentPathChanged, this, &WindowModel::currentPathChanged);
    for (const auto changed :
         {&AppModel::scanDurationChanged, &AppModel::scannedFilesChanged, &AppModel::scannedBytesChanged})
        connect(&app_, changed, this, &WindowModel::scanLineChanged);
    connect(&app_, &AppModel::findingsChanged, this, &WindowModel::findingsChanged);
    connect(&app_, &AppModel::findingsChanged, this, &WindowModel::listChanged);
    connect(&app_, &AppModel::trashedBytesChanged, this, &WindowModel::totalsChanged);
    connect(&app_, &AppModel::freedBytesChanged, this, &WindowModel::totalsChanged);
    connect(&app_, &AppModel::deniedCountChanged, this, &WindowModel::deniedChanged);
    connect(&app_, &AppModel::batchProgressChanged, this, &WindowModel::batchChanged);
    connect(&app_, &AppModel::cleaningChanged, this, &WindowModel::cleaningChanged);
    connect(&app_, &AppModel::alertChanged, this, &WindowModel::alertChanged);
    connect(&app_, &AppModel::trashQuestionChanged, this, &WindowModel::trashQuestionChanged);
    connect(this, &WindowModel::sidebarChanged, this, &WindowModel::listChanged);
}

void WindowModel::launch(const QStringList& arguments) {
    const QString prefix = Texts::fixed(levelArgument);
    const auto chosen =
        std::ranges::find_if(arguments, [&](const QString& argument) { return argument.startsWith(prefix); });
    if (chosen != arguments.end()) {
        if (const auto level = levelNamed(chosen->mid(prefix.size())))
            setSidebar(level);
    }
    selectsFirst_ = arguments.contains(QStringLiteral("--select-first"));
    if (arguments.contains(QStringLiteral("--autoscan")))
        app_.scan();
}

bool WindowModel::mayClose() {
    if (isClosing_ || asksNobody_ || !app_.isCleaning())
        return true;
    emit closeQuestioned();
    return false;
}

void WindowModel::stopAndClose() {
    isClosing_ = true;
    app_.stopCleaning();
    emit stoppingChanged();
    closeWhenStopped();
}

void WindowModel::closeWhenStopped() {
    // From the event loop: this may be said from within what goes with the window.
    if (isClosing_ && !app_.isCleaning() && !app_.alert())
        QTimer::singleShot(0, this, &WindowModel::closeRequested);
}

void WindowModel::selectFirst() {
    const auto level = selectedLevel();
    if (!selectsFirst_ || !level || app_.phase() != AppModel::Phase::done)
        return;
    if (const Findings rows = app_.findings(*level); !rows.empty())
        selection_.set({rows.front()->id});
}

WindowModel::Phase WindowModel::phase() const {
    switch (app_.phase()) {
        case AppModel::Phase::idle:
            return Phase::Idle;
        case AppModel::Phase::scanning:
            return Phase::Scanning;
        case AppModel::Phase::done:
            return Phase::Done;
    }
    return Phase::Idle;
}

QString WindowModel::scanButtonText() const {
    switch (app_.phase()) {
        case AppModel::Phase::idle:
            return QStringLiteral("Tara");
        case AppModel::Phase::scanning:
            return QStringLiteral("Durdur");
        case AppModel::Phase::done:
            return QStringLiteral("Yeniden Tara");
    }
    return {};
}

double WindowModel::usedFraction() const {
    const auto& disk = app_.disk();
    return disk && disk->total > 0 ? static_cast<double>(usedBytes(*disk)) / static_cast<double>(disk->total)
                                   : 0.0;
}

bool WindowModel::isDiskLow() const {
    const auto& disk = app_.disk();
    return disk && disk->available < lowSpace;
}

QString WindowModel::diskText() const {
    const auto& disk = app_.disk();
    return disk ? Texts::bytes(disk->available) + QStringLiteral(" boş · ") + Texts::bytes(disk->total)
                : QString();
}

QString WindowModel::usedText() const {
    const auto& disk = app_.disk();
    return disk ? Texts::bytes(usedBytes(*disk)) + QStringLiteral(" kullanılıyor") : QString();
}

QString WindowModel::freeText() const {
    const auto& disk = app_.disk();
    return disk ? Texts::bytes(disk->available) + QStringLiteral(" boş") : QString();
}

void WindowModel::measureSegments() {
    std::vector<DiskSegment> segments;
    const auto& disk = app_.disk();
    const auto add = [&](std::string_view level, std::string_view color, std::int64_t bytes) {
        const double begin = segments.empty() ? 0 : segments.back().end;
        const double fraction =
            static_cast<double>(std::max<std::int64_t>(bytes, 0)) / static_cast<double>(disk->total);
        segments.push_back({.levelName = Texts::fixed(level),
                            .levelColor = Texts::fixed(color),
                            .fraction = fraction,
                            .begin = begin,
                            .end = begin + fraction});
    };
    if (disk && disk->total > 0) {
        std::int64_t explained = 0;
        for (const SafetyLevel level : displayedSafetyLevels()) {
            const std::int64_t bytes = app_.total(level);
            addChecked(explained, bytes);
            add(info(level).rawValue, info(level).color, bytes);
        }
        std::int64_t other = usedBytes(*disk);
        addChecked(other, -explained);
        add({}, {}, other);
    }
    segments_.assign(std::move(segments));
}

QString WindowModel::modelMessage() const {
    return shown(app_.aiStatus().unavailable.value_or(""));
}

QString WindowModel::modelHint() const {
    return isModelAvailable() ? QString() : shown(app_.aiStatus().hint);
}

QString WindowModel::scannedFilesText() const {
    return Texts::number(app_.scannedFiles());
}

QString WindowModel::scannedBytesText() const {
    return Texts::bytes(app_.scannedBytes());
}

QString WindowModel::currentPath() const {
    return shown(app_.currentPath());
}

QString WindowModel::scanLine() const {
    const auto duration = app_.scanDuration();
    return duration ? scannedFilesText() + QStringLiteral(" dosya, ") + scannedBytesText() +
                          QStringLiteral(" · ") + Texts::wholeSeconds(*duration) + QStringLiteral(" sn")
                    : QString();
}

void WindowModel::summarize() {
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

QString WindowModel::reclaimableText() const {
    std::int64_t bytes = app_.total(SafetyLevel::safe);
    addChecked(bytes, app_.total(SafetyLevel::regenerable));
    return Texts::bytes(bytes);
}

QString WindowModel::trashText() const {
    return app_.trashedBytes() < 1 ? QString()
                                   : QStringLiteral("Çöp kutusunda ") + Texts::bytes(app_.trashedBytes()) +
                                         QStringLiteral(" bekliyor. Boşaltınca yer açılacak.");
}

QString WindowModel::freedText() const {
    return app_.freedBytes() < 1 ? QString()
                                 : QStringLiteral("Bu oturumda ") + Texts::bytes(app_.freedBytes()) +
                                       QStringLiteral(" yer açtın.");
}

QString WindowModel::deniedText() const {
    return app_.deniedCount() < 1 ? QString()
                                  : QString::number(app_.deniedCount()) +
                                        QStringLiteral(
                                            " klasöre erişilemedi. Tam tablo için Ulvak'a Tam Disk Erişimi "
                                            "ver ve yeniden tara.");
}

QString WindowModel::uncertainText() const {
    const std::int64_t count = app_.batchCount();
    return count < 1 ? QString()
                     : QString::number(count) +
                           QStringLiteral(
                               " klasör bilinmiyor ya da adından tahmin edildi. Apple Intelligence "
                               "içeriklerine bakıp yorumlayabilir.");
}

double WindowModel::batchFraction() const {
    const auto& batch = app_.batchProgress();
    return batch && batch->total > 0 ? static_cast<double>(batch->done) / static_cast<double>(batch->total)
                                     : 0.0;
}

QString WindowModel::alertId() const {
    const auto& alert = app_.alert();
    return alert ? alert->id.toString() : QString();
}

QString WindowModel::alertTitle() const {
    const auto& alert = app_.alert();
    return alert ? shown(alert->title) : QString();
}

QString WindowModel::alertMessage() const {
    const auto& alert = app_.alert();
    return alert ? shownLines(alert->message) : QString();
}

std::optional<SafetyLevel> WindowModel::selectedLevel() const {
    const auto* level = sidebar_ ? std::get_if<SafetyLevel>(&sidebar_->value) : nullptr;
    return level != nullptr ? std::optional(*level) : std::nullopt;
}

int WindowModel::sidebarRow() const {
    const auto level = selectedLevel();
    if (!level)
        return sidebar_ ? 0 : -1;
    const auto levels = displayedSafetyLevels();
    return 1 + static_cast<int>(std::ranges::find(levels, *level) - levels.begin());
}

void WindowModel::setSidebarRow(int row) {
    const auto levels = displayedSafetyLevels();
    const auto place = static_cast<std::size_t>(row) - 1;
    if (row == 0)
        setSidebar(SidebarItem{SidebarItem::Overview{}});
    else
        setSidebar(place < levels.size() ? std::optional(SidebarItem{levels[place]}) : std::nullopt);
}

void WindowModel::setSidebar(std::optional<SidebarItem> item) {
    if (item == sidebar_)
        return;
    sidebar_ = std::move(item);
    selection_.set({});
    findings_.setLevel(selectedLevel());
    emit sidebarChanged();
}

bool WindowModel::isOverview() const {
    return !selectedLevel();
}

QString WindowModel::listTitle() const {
    const auto level = selectedLevel();
    return level ? Texts::fixed(info(*level).title) : QString();
}

QString WindowModel::listSubtitle() const {
    const auto level = selectedLevel();
    if (!level || findings_.count() == 0)
        return {};
    return QStringLiteral("%1 öğe · ").arg(findings_.count()) + Texts::bytes(app_.total(*level));
}

LevelInfo WindowModel::listLevel() const {
    return LevelInfo::of(selectedLevel().value_or(SafetyLevel::unknown));
}

bool WindowModel::offersBatch() const {
    const auto level = selectedLevel();
    if (!level || !isModelAvailable())
        return false;
    return app_.count(*level) > 0 && (*level == SafetyLevel::unknown || app_.hasGuesses(*level));
}

void WindowModel::followDetail() {
    // Of two with one id the first counts, as for what is done with it.
    std::unordered_set<const Finding*> chosen;
    for (const std::string& id : selection_.ids())
        chosen.insert(app_.finding(id).get());
    Findings selected;
    std::ranges::copy_if(findings_.rows(), std::back_inserter(selected),
                         [&](const FindingPointer& finding) { return chosen.contains(finding.get()); });
    detail_.setFinding(selected.size() == 1 ? selected.front() : nullptr);
    DetailKind kind = DetailKind::Empty;
    if (!selected.empty())
        kind = selected.size() == 1 ? DetailKind::One : DetailKind::Several;
    several_.setItems(selected.size() > 1 ? std::move(selected) : Findings());
    if (std::exchange(detailKind_, kind) != kind)
        emit detailKindChanged();
}

RowMenuInfo WindowModel::menuInfo(const QString& token) const {
    const FindingPointer finding = findings_.at(findings_.rowOf(idOf(token)));
    if (!finding)
        return {};
    return {.isThere = true,
            .canTrash = canBeCleaned(*finding),
            .canReset = DetailModel::canReset(*finding),
            .isCleaning = app_.cleaning().contains(finding->id)};
}

int WindowModel::rowBeginning(const QString& letters, int row) const {
    static const QLocale turkish(QLocale::Turkish, QLocale::Turkey);
    const QString wanted = turkish.toLower(letters);
    for (int step = 0; step < findings_.count(); ++step) {
        const int candidate = (std::max(row, 0) + step) % findings_.count();
        if (turkish.toLower(shown(findings_.at(candidate)->title)).startsWith(wanted))
            return candidate;
    }
    return -1;
}

void WindowModel::setLevel(Level::Value level, const QString& token) {
    app_.setLevel(SafetyLevel(level), idOf(token));
}

void WindowModel::resetVerdict(const QString& token) {
    app_.resetVerdict(idOf(token));
}

void WindowModel::analyze(const QString& token, const QString& note) {
    app_.analyze(idOf(token), note.toStdString());
}

void WindowModel::moveToTrash(const QString& token) {
    app_.clean({idOf(token)}, CleanMode::trash);
}

void WindowModel::removePermanently(const QString& token) {
    app_.clean({idOf(token)}, CleanMode::permanent);
}

void WindowModel::cleanSelected() {
    if (!several_.asksFirst())
        app_.clean(several_.cleanableIds(), CleanMode::trash);
}

void WindowModel::cleanAsked() {
    app_.clean(several_.takeAsked(), CleanMode::trash);
}

void WindowModel::emptyTrash() {
    if (!isEmptyingTrash_)
        runEmptyTrash(app_.emptyTrash());
}

void WindowModel::emptyTrashAsAsked(const QString& question) {
    if (!isEmptyingTrash_)
        runEmptyTrash(app_.emptyTrashAsAsked(QUuid::fromString(question)));
}

void WindowModel::dismissTrashQuestion(const QString& question) {
    if (question == trashQuestionId())
        app_.dismissTrashQuestion();
}

QCoro::Task<> WindowModel::runEmptyTrash(QCoro::Task<> task) {
    const QPointer<WindowModel> self(this);
    isEmptyingTrash_ = true;
    emit emptyingChanged();
    co_await task;
    if (!self)  // the window has closed meanwhile
        co_return;
    isEmptyingTrash_ = false;
    emit emptyingChanged();
}

QString WindowModel::trashQuestionId() const {
    const auto& question = app_.trashQuestion();
    return question ? question->id.toString() : QString();
}

QString WindowModel::trashQuestion() const {
    const auto& question = app_.trashQuestion();
    if (!question)
        return {};
    const Cleaner::TrashContents& contents = *question->contents;
    const auto amount = [](std::int64_t bytes, std::int64_t items) {
        return QStringLiteral("%1 (%2 öğe)").arg(Texts::bytes(bytes), Texts::number(items));
    };
    QString text =
        contents.isComplete
            ? QStringLiteral("Çöp kutusunda toplam %1 var. ").arg(amount(contents.bytes, contents.items))
            : QStringLiteral("Çöp kutusunun bir bölümüne bakılamadı. Görülen: %1. ")
                  .arg(amount(contents.bytes, contents.items));
    text += contents.itemsFromHere == 0 ? QStringLiteral("Bunların hiçbiri bu oturumda buradan atılmadı. ")
                                        : QStringLiteral("Bunun %1 kadarı bu oturumda buradan atıldı. ")
                                              .arg(amount(contents.bytesFromHere, contents.itemsFromHere));
    return text + QStringLiteral("Boşaltırsan hepsi kalıcı olarak silinir. Bu işlem geri alınamaz.");
}

void WindowModel::perform(const QString& action, const QString& token) {
    if (const FindingPointer finding = app_.finding(idOf(token)))
        app_.perform(action.toStdString(), *finding);
}

}  // namespace ulvak
