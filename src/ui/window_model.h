#pragma once

#include <QObject>
#include <QStringList>
#include <optional>

#include "app/app_model.h"
#include "core/finding.h"
#include "ui/actions_model.h"
#include "ui/alert_model.h"
#include "ui/analysis_model.h"
#include "ui/detail_model.h"
#include "ui/disk_model.h"
#include "ui/findings_model.h"
#include "ui/level_list_model.h"
#include "ui/multi_selection_model.h"
#include "ui/scan_model.h"
#include "ui/summary_model.h"
#include "ui/trash_model.h"

namespace ulvak {

/// The window's view of the application, in parts, plus the state of the window itself: the sidebar's
/// selection, what the detail column shows, opening and closing. Everything is formatted and decided here;
/// views display it and forward user actions. Findings are identified by id, never by row.
///
/// Threads: the UI thread only.
class WindowModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(ulvak::DiskModel* disk READ disk CONSTANT FINAL)
    Q_PROPERTY(ulvak::ScanModel* scan READ scan CONSTANT FINAL)
    Q_PROPERTY(ulvak::SummaryModel* summary READ summary CONSTANT FINAL)
    Q_PROPERTY(ulvak::TrashModel* trash READ trash CONSTANT FINAL)
    Q_PROPERTY(ulvak::AnalysisModel* analysis READ analysis CONSTANT FINAL)
    Q_PROPERTY(ulvak::AlertModel* alert READ alert CONSTANT FINAL)
    Q_PROPERTY(ulvak::ActionsModel* actions READ actions CONSTANT FINAL)
    Q_PROPERTY(ulvak::LevelListModel* list READ list CONSTANT FINAL)
    Q_PROPERTY(ulvak::DetailModel* detail READ detail CONSTANT FINAL)
    Q_PROPERTY(ulvak::MultiSelectionModel* several READ several CONSTANT FINAL)

    /// The row selected in the sidebar: 0 is the summary, the levels follow; -1 if none.
    Q_PROPERTY(int sidebarRow READ sidebarRow WRITE setSidebarRow NOTIFY sidebarChanged FINAL)
    Q_PROPERTY(bool isOverview READ isOverview NOTIFY sidebarChanged FINAL)
    Q_PROPERTY(DetailKind detailKind READ detailKind NOTIFY detailKindChanged FINAL)
    /// The window is closing and only waits for the item being cleaned.
    Q_PROPERTY(bool isStopping READ isStopping NOTIFY stoppingChanged FINAL)
public:
    // NOLINTBEGIN(readability-identifier-naming): QML sees only capitalised enumerators
    /// How many findings are selected.
    enum class DetailKind : int { Empty, One, Several };
    Q_ENUM(DetailKind)
    // NOLINTEND(readability-identifier-naming)

    /// `app` must outlive this object.
    explicit WindowModel(AppModel& app, QObject* parent = nullptr);

    /// Obeys "--level=…", "--autoscan" and "--select-first". Call once, after the window is made; a scan
    /// continues in the event loop.
    void launch(const QStringList& arguments);

    /// The session is ending, so nobody can be asked whether the window may close. The session may still
    /// continue, and the window with it.
    void closeUnasked() { asksNobody_ = true; }

    [[nodiscard]] DiskModel* disk() { return &disk_; }
    [[nodiscard]] ScanModel* scan() { return &scan_; }
    [[nodiscard]] SummaryModel* summary() { return &summary_; }
    [[nodiscard]] TrashModel* trash() { return &trash_; }
    [[nodiscard]] AnalysisModel* analysis() { return &analysis_; }
    [[nodiscard]] AlertModel* alert() { return &alert_; }
    [[nodiscard]] ActionsModel* actions() { return &actions_; }
    [[nodiscard]] LevelListModel* list() { return &list_; }
    [[nodiscard]] DetailModel* detail() { return &detail_; }
    [[nodiscard]] MultiSelectionModel* several() { return &several_; }

    [[nodiscard]] const std::optional<SidebarItem>& sidebar() const { return sidebar_; }
    void setSidebar(std::optional<SidebarItem> item);
    [[nodiscard]] int sidebarRow() const;
    void setSidebarRow(int row);
    [[nodiscard]] bool isOverview() const;
    Q_INVOKABLE void showLevel(ulvak::Level::Value level) { setSidebar(SidebarItem{SafetyLevel(level)}); }
    [[nodiscard]] DetailKind detailKind() const { return detailKind_; }

    [[nodiscard]] bool isStopping() const { return isClosing_ && app_.isCleaning(); }
    /// Whether the window may close at once. If not, `closeQuestioned` requests a confirmation first. Closing
    /// it again while it is stopping does not wait.
    [[nodiscard]] Q_INVOKABLE bool mayClose();
    /// The user confirmed: finish the item being cleaned and stop. `closeRequested` follows, after any alert
    /// about the rest.
    Q_INVOKABLE void stopAndClose();

signals:
    void sidebarChanged();
    void detailKindChanged();
    void stoppingChanged();
    void closeQuestioned();
    void closeRequested();

private:
    void followDetail();
    void selectFirst();
    void closeWhenStopped();
    [[nodiscard]] std::optional<SafetyLevel> selectedLevel() const;

    AppModel& app_;
    std::optional<SidebarItem> sidebar_ = SidebarItem{SidebarItem::Overview{}};
    // Before the other parts: the lists must follow a change before anyone else reports it.
    FindingsModel findings_;
    LevelListModel list_;
    DetailModel detail_;
    MultiSelectionModel several_;
    DetailKind detailKind_ = DetailKind::Empty;
    DiskModel disk_;
    ScanModel scan_;
    SummaryModel summary_;
    TrashModel trash_;
    AnalysisModel analysis_;
    AlertModel alert_;
    ActionsModel actions_;
    bool selectsFirst_ = false;
    bool isClosing_ = false;  ///< already decided
    bool asksNobody_ = false;
};

}  // namespace ulvak
