#pragma once

#include <QObject>
#include <QString>
#include <optional>

#include "app/app_model.h"
#include "ui/finding_list_model.h"
#include "ui/finding_selection.h"
#include "ui/records.h"

namespace ulvak {

/// The list of one level: its rows, its selection, and its header.
///
/// Threads: the UI thread only.
class LevelListModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(ulvak::FindingListModel* rows READ rows CONSTANT FINAL)
    Q_PROPERTY(ulvak::FindingSelection* selection READ selection CONSTANT FINAL)
    /// The level; arbitrary if none is listed.
    Q_PROPERTY(ulvak::LevelInfo about READ about NOTIFY changed FINAL)
    Q_PROPERTY(QString title READ title NOTIFY changed FINAL)
    Q_PROPERTY(QString subtitle READ subtitle NOTIFY changed FINAL)
    Q_PROPERTY(bool offersBatch READ offersBatch NOTIFY changed FINAL)
public:
    /// `app` and `findings` must outlive this object.
    LevelListModel(AppModel& app, FindingsModel& findings, QObject* parent = nullptr);

    [[nodiscard]] std::optional<SafetyLevel> level() const { return rows_.level(); }
    /// Clears the selection. The caller emits `changed`, after updating whatever decides whether the list is
    /// shown.
    void setLevel(std::optional<SafetyLevel> level);

    [[nodiscard]] FindingListModel* rows() { return &rows_; }
    [[nodiscard]] FindingSelection* selection() { return &selection_; }
    [[nodiscard]] LevelInfo about() const;
    [[nodiscard]] QString title() const;
    [[nodiscard]] QString subtitle() const;
    [[nodiscard]] bool offersBatch() const;

    [[nodiscard]] Q_INVOKABLE ulvak::RowMenuInfo menuInfo(const QString& findingId) const;
    /// The next row after `row` whose title begins with `letters`, or -1.
    [[nodiscard]] Q_INVOKABLE int rowBeginning(const QString& letters, int row) const;

signals:
    void changed();
    void menuInfoChanged();

private:
    AppModel& app_;
    FindingListModel rows_;
    FindingSelection selection_;
};

}  // namespace ulvak
