#pragma once

#include <QObject>
#include <QString>

#include "app/app_model.h"
#include "ui/level.h"
#include "ui/record_list.h"
#include "ui/records.h"

namespace ulvak {

/// What can be done with one finding, named by its id. Nothing happens for one that has gone.
///
/// Threads: the UI thread only.
class ActionsModel : public QObject {
    Q_OBJECT
    /// `LevelInfo`s in the order of declaration: what it can be labelled.
    Q_PROPERTY(ulvak::RecordList* levels READ levels CONSTANT FINAL)
    /// `ActionLine`s: what can be done with any finding besides cleaning and labelling it.
    Q_PROPERTY(ulvak::RecordList* others READ others CONSTANT FINAL)
public:
    /// `app` outlives this object.
    explicit ActionsModel(AppModel& app, QObject* parent = nullptr);

    [[nodiscard]] RecordListOf<LevelInfo>* levels() { return &levels_; }
    [[nodiscard]] RecordListOf<ActionLine>* others() { return &others_; }

    Q_INVOKABLE void setLevel(ulvak::Level::Value level, const QString& findingId);
    Q_INVOKABLE void resetVerdict(const QString& findingId);
    Q_INVOKABLE void moveToTrash(const QString& findingId);
    Q_INVOKABLE void removePermanently(const QString& findingId);
    /// One of the `others`, by its name.
    Q_INVOKABLE void perform(const QString& action, const QString& findingId);

private:
    AppModel& app_;
    RecordListOf<LevelInfo> levels_;
    RecordListOf<ActionLine> others_;
};

}  // namespace ulvak
