#pragma once

#include <QObject>
#include <QString>

#include "app/app_model.h"
#include "ui/level.h"
#include "ui/record_list.h"
#include "ui/records.h"

namespace ulvak {

/// The actions for one finding, named by its id. No-op if the finding is gone.
///
/// Threads: the UI thread only.
class ActionsModel : public QObject {
    Q_OBJECT
    /// `LevelInfo`s in declaration order: the labels a finding can be given.
    Q_PROPERTY(ulvak::RecordList* levels READ levels CONSTANT FINAL)
    /// `ActionLine`s: the actions other than cleaning and labelling.
    Q_PROPERTY(ulvak::RecordList* others READ others CONSTANT FINAL)
public:
    /// `app` must outlive this object.
    explicit ActionsModel(AppModel& app, QObject* parent = nullptr);

    [[nodiscard]] RecordListOf<LevelInfo>* levels() { return &levels_; }
    [[nodiscard]] RecordListOf<ActionLine>* others() { return &others_; }

    Q_INVOKABLE void setLevel(ulvak::Level::Value level, const QString& findingId);
    Q_INVOKABLE void resetVerdict(const QString& findingId);
    Q_INVOKABLE void moveToTrash(const QString& findingId);
    Q_INVOKABLE void removePermanently(const QString& findingId);
    /// Asks first. For the finding that is the Trash.
    Q_INVOKABLE void emptyTrash();
    /// Copies the command that the user can run for the finding.
    Q_INVOKABLE void copyCommand(const QString& findingId);
    /// Performs one of the `others`, by name.
    Q_INVOKABLE void perform(const QString& action, const QString& findingId);

private:
    AppModel& app_;
    RecordListOf<LevelInfo> levels_;
    RecordListOf<ActionLine> others_;
};

}  // namespace ulvak
