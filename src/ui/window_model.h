#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <optional>

#include "app/app_model.h"
#include "app/finding_list_model.h"
#include "core/finding.h"
#include "ui/detail_model.h"
#include "ui/finding_selection.h"
#include "ui/multi_selection_model.h"
#include "ui/record_list.h"
#include "ui/records.h"

namespace ulvak {

/// What the window shows of the application, and the two things it remembers itself: what the sidebar and
/// what the list have selected. Everything arrives formatted and decided; the views show it and send back
/// what the user does. Findings go by tokens of their ids, never by rows.
///
/// Threads: the UI thread only.
class WindowModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(Phase phase READ phase NOTIFY phaseChanged FINAL)
    Q_PROPERTY(QString scanButtonText READ scanButtonText NOTIFY phaseChanged FINAL)

    Q_PROPERTY(bool hasDisk READ hasDisk NOTIFY diskChanged FINAL)
    Q_PROPERTY(double usedFraction READ usedFraction NOTIFY diskChanged FINAL)
    Q_PROPERTY(bool isDiskLow READ isDiskLow NOTIFY diskChanged FINAL)
    Q_PROPERTY(QString diskText READ diskText NOTIFY diskChanged FINAL)
    Q_PROPERTY(QString usedText READ usedText NOTIFY diskChanged FINAL)
    Q_PROPERTY(QString freeText READ freeText NOTIFY diskChanged FINAL)
    /// `DiskSegment`s; none without a disk.
    Q_PROPERTY(ulvak::RecordList* segments READ segments CONSTANT FINAL)

    Q_PROPERTY(bool isModelAvailable READ isModelAvailable NOTIFY modelChanged FINAL)
    /// Why the model is not available; empty when it is, or when nobody knows yet.
    Q_PROPERTY(QString modelMessage READ modelMessage NOTIFY modelChanged FINAL)
    Q_PROPERTY(QString modelHint READ modelHint NOTIFY modelChanged FINAL)

    Q_PROPERTY(QString scannedFilesText READ scannedFilesText NOTIFY scannedFilesChanged FINAL)
    Q_PROPERTY(QString scannedBytesText READ scannedBytesText NOTIFY scannedBytesChanged FINAL)
    Q_PROPERTY(QString currentPath READ currentPath NOTIFY currentPathChanged FINAL)
    /// Empty when no scan has completed.
    Q_PROPERTY(QString scanLine READ scanLine NOTIFY scanLineChanged FINAL)

    /// `LevelLine`s in display order.
    Q_PROPERTY(ulvak::RecordList* levels READ levels CONSTANT FINAL)
    /// `LevelInfo`s in the order of declaration, for menus.
    Q_PROPERTY(ulvak::RecordList* levelChoices READ levelChoices CONSTANT FINAL)
    /// `ActionLine`s: what can be done with any finding besides cleaning and labelling it.
    Q_PROPERTY(ulvak::RecordList* actions READ actions CONSTANT FINAL)
    Q_PROPERTY(QString reclaimableText READ reclaimableText NOTIFY findingsChanged FINAL)
    /// `LargestLine`s: at most eight, largest first.
    Q_PROPERTY(ulvak::RecordList* largest READ largest CONSTANT FINAL)

    // Banners; an empty text is a banner that is not there.
    Q_PROPERTY(QString trashText READ trashText NOTIFY totalsChanged FINAL)
    Q_PROPERTY(QString freedText READ freedText NOTIFY totalsChanged FINAL)
    Q_PROPERTY(QString deniedText READ deniedText NOTIFY deniedChanged FINAL)
    Q_PROPERTY(bool hasPrivacySettings READ hasPrivacySettings CONSTANT FINAL)
    Q_PROPERTY(QString uncertainText READ uncertainText NOTIFY findingsChanged FINAL)
    Q_PROPERTY(bool isBatchRunning READ isBatchRunning NOTIFY batchChanged FINAL)
    Q_PROPERTY(double batchFraction READ batchFraction NOTIFY batchChanged FINAL)
    Q_PROPERTY(bool isEmptyingTrash READ isEmptyingTrash NOTIFY emptyingChanged FINAL)

    /// The id of the alert that is to be shown; empty for none.
    Q_PROPERTY(QString alertId READ alertId NOTIFY alertChanged FINAL)
    Q_PROPERTY(QString alertTitle READ alertTitle NOTIFY alertChanged FINAL)
    Q_PROPERTY(QString alertMessage READ alertMessage NOTIFY alertChanged FINAL)

    /// The id of the question that is to be asked before the Trash is emptied; empty for none.
    Q_PROPERTY(QString trashQuestionId READ trashQuestionId NOTIFY trashQuestionChanged FINAL)
    Q_PROPERTY(QString trashQuestion READ trashQuestion NOTIFY trashQuestionChanged FINAL)

    /// The window is to close, and only waits for the item that is being cleaned.
    Q_PROPERTY(bool isStopping READ isStopping NOTIFY stoppingChanged FINAL)

    /// What is selected in the sidebar: 0 is the summary, after it come the `levels`; -1 when nothing is.
    Q_PROPERTY(int sidebarRow READ sidebarRow WRITE setSidebarRow NOTIFY sidebarChanged FINAL)
    Q_PROPERTY(bool isOverview READ isOverview NOTIFY sidebarChanged FINAL)

    Q_PROPERTY(ulvak::FindingListModel* findings READ findings CONSTANT FINAL)
    Q_PROPERTY(ulvak::FindingSelection* selection READ selection CONSTANT FINAL)
    Q_PROPERTY(QString listTitle READ listTitle NOTIFY sidebarChanged FINAL)
    Q_PROPERTY(QString listSubtitle READ listSubtitle NOTIFY listChanged FINAL)
    /// The level that is listed; any where none is.
    Q_PROPERTY(ulvak::LevelInfo listLevel READ listLevel NOTIFY sidebarChanged FINAL)
    Q_PROPERTY(bool offersBatch READ offersBatch NOTIFY listChanged FINAL)

    Q_PROPERTY(DetailKind detailKind READ detailKind NOTIFY detailKindChanged FINAL)
    Q_PROPERTY(ulvak::DetailModel* detail READ detail CONSTANT FINAL)
    Q_PROPERTY(ulvak::MultiSelectionModel* several READ several CONSTANT FINAL)
public:
    // NOLINTBEGIN(readability-identifier-naming): views see only what begins with a capital
    /// As `AppModel::Phase`.
    enum class Phase : int { Idle, Scanning, Done };
    Q_ENUM(Phase)
    /// How many findings are selected.
    enum class DetailKind : int { Empty, One, Several };
    Q_ENUM(DetailKind)
    // NOLINTEND(readability-identifier-naming)

    /// `app` outlives this object.
    explicit WindowModel(AppModel& app, QObject* parent = nullptr);

    /// Obeys "--level=…", "--autoscan" and "--select-first". Once, when the window has been made; a scan goes
    /// on in the event loop.
    void launch(const QStringList& arguments);

    /// The session ends: nobody is there to be asked whether the window may close. It may yet go on, and then
    /// so does the window.
    void closeUnasked() { asksNobody_ = true; }

    [[nodiscard]] Phase phase() const;
    [[nodiscard]] QString scanButtonText() const;
    [[nodiscard]] bool hasDisk() const { return app_.disk().has_value(); }
    [[nodiscard]] double usedFraction() const;
    [[nodiscard]] bool isDiskLow() const;
    [[nodiscard]] QString diskText() const;
    [[nodiscard]] QString usedText() const;
    [[nodiscard]] QString freeText() const;
    [[nodiscard]] RecordListOf<DiskSegment>* segments() { return &segments_; }
    [[nodiscard]] bool isModelAvailable() const { return app_.aiStatus().isAvailable(); }
    [[nodiscard]] QString modelMessage() const;
    [[nodiscard]] QString modelHint() const;
    [[nodiscard]] QString scannedFilesText() const;
    [[nodiscard]] QString scannedBytesText() const;
    [[nodiscard]] QString currentPath() const;
    [[nodiscard]] QString scanLine() const;
    [[nodiscard]] RecordListOf<LevelLine>* levels() { return &levels_; }
    [[nodiscard]] RecordListOf<LevelInfo>* levelChoices() { return &levelChoices_; }
    [[nodiscard]] RecordListOf<ActionLine>* actions() { return &actions_; }
    [[nodiscard]] QString reclaimableText() const;
    [[nodiscard]] RecordListOf<LargestLine>* largest() { return &largest_; }
    [[nodiscard]] QString trashText() const;
    [[nodiscard]] QString freedText() const;
    [[nodiscard]] QString deniedText() const;
    [[nodiscard]] bool hasPrivacySettings() const { return app_.hasPrivacySettings(); }
    [[nodiscard]] QString uncertainText() const;
    [[nodiscard]] bool isBatchRunning() const { return app_.batchProgress().has_value(); }
    [[nodiscard]] double batchFraction() const;
    [[nodiscard]] bool isEmptyingTrash() const { return isEmptyingTrash_; }
    [[nodiscard]] QString alertId() const;
    [[nodiscard]] QString alertTitle() const;
    [[nodiscard]] QString alertMessage() const;
    [[nodiscard]] QString trashQuestionId() const;
    [[nodiscard]] QString trashQuestion() const;
    [[nodiscard]] bool isStopping() const { return isClosing_ && app_.isCleaning(); }
    [[nodiscard]] const std::optional<SidebarItem>& sidebar() const { return sidebar_; }
    void setSidebar(std::optional<SidebarItem> item);
    [[nodiscard]] int sidebarRow() const;
    void setSidebarRow(int row);
    [[nodiscard]] bool isOverview() const;
    [[nodiscard]] FindingListModel* findings() { return &findings_; }
    [[nodiscard]] FindingSelection* selection() { return &selection_; }
    [[nodiscard]] QString listTitle() const;
    [[nodiscard]] QString listSubtitle() const;
    [[nodiscard]] LevelInfo listLevel() const;
    [[nodiscard]] bool offersBatch() const;
    [[nodiscard]] DetailKind detailKind() const { return detailKind_; }
    [[nodiscard]] DetailModel* detail() { return &detail_; }
    [[nodiscard]] MultiSelectionModel* several() { return &several_; }

    [[nodiscard]] Q_INVOKABLE ulvak::RowMenuInfo menuInfo(const QString& token) const;
    /// The next row after `row` whose title begins with these letters; -1 when there is none.
    [[nodiscard]] Q_INVOKABLE int rowBeginning(const QString& letters, int row) const;

    Q_INVOKABLE void showLevel(ulvak::Level::Value level) { setSidebar(SidebarItem{SafetyLevel(level)}); }

    /// Whether the window may close at once. If not, `closeQuestioned` asks for the question that comes
    /// first. Whoever closes it a second time while it is stopping does not want to wait.
    [[nodiscard]] Q_INVOKABLE bool mayClose();
    /// The answer: the item that is being cleaned is the last. `closeRequested` comes after it, and after
    /// what there is to say about the rest.
    Q_INVOKABLE void stopAndClose();

    Q_INVOKABLE void scan() { app_.scan(); }
    Q_INVOKABLE void cancelScan() { app_.cancelScan(); }
    Q_INVOKABLE void setLevel(ulvak::Level::Value level, const QString& token);
    Q_INVOKABLE void resetVerdict(const QString& token);
    Q_INVOKABLE void analyze(const QString& token, const QString& note);
    Q_INVOKABLE void analyzeAllUncertain() { app_.analyzeAllUncertain(); }
    Q_INVOKABLE void cancelBatch() { app_.cancelBatch(); }
    Q_INVOKABLE void moveToTrash(const QString& token);
    Q_INVOKABLE void removePermanently(const QString& token);
    /// Several to the Trash, one after the other: what is selected now, unless it is to be asked about, and
    /// what was asked about last.
    Q_INVOKABLE void cleanSelected();
    Q_INVOKABLE void cleanAsked();
    Q_INVOKABLE void emptyTrash();
    /// After the question with this id; nothing when another is asked by now.
    Q_INVOKABLE void emptyTrashAsAsked(const QString& question);
    /// The same for an answer that is no.
    Q_INVOKABLE void dismissTrashQuestion(const QString& question);
    /// One of the `actions`, by its name.
    Q_INVOKABLE void perform(const QString& action, const QString& token);
    Q_INVOKABLE void openFullDiskAccessSettings() { app_.openFullDiskAccessSettings(); }
    Q_INVOKABLE void dismissAlert() { app_.dismissAlert(); }

signals:
    void phaseChanged();
    void diskChanged();
    void modelChanged();
    void scannedFilesChanged();
    void scannedBytesChanged();
    void currentPathChanged();
    void scanLineChanged();
    void findingsChanged();
    void totalsChanged();
    void deniedChanged();
    void batchChanged();
    void emptyingChanged();
    void cleaningChanged();
    void alertChanged();
    void trashQuestionChanged();
    void stoppingChanged();
    void closeQuestioned();
    void closeRequested();
    void sidebarChanged();
    void listChanged();
    void detailKindChanged();

private:
    void forwardSignals();
    void summarize();
    void measureSegments();
    void followDetail();
    void selectFirst();
    void closeWhenStopped();
    [[nodiscard]] std::optional<SafetyLevel> selectedLevel() const;
    QCoro::Task<> runEmptyTrash(QCoro::Task<> task);

    AppModel& app_;
    std::optional<SidebarItem> sidebar_ = SidebarItem{SidebarItem::Overview{}};
    FindingListModel findings_;
    FindingSelection selection_;
    DetailModel detail_;
    MultiSelectionModel several_;
    DetailKind detailKind_ = DetailKind::Empty;
    RecordListOf<DiskSegment> segments_;
    RecordListOf<LevelLine> levels_;
    RecordListOf<LevelInfo> levelChoices_;
    RecordListOf<ActionLine> actions_;
    RecordListOf<LargestLine> largest_;
    bool selectsFirst_ = false;
    bool isEmptyingTrash_ = false;
    bool isClosing_ = false;  ///< has been decided
    bool asksNobody_ = false;
};

}  // namespace ulvak
