#pragma once

#include <qcoro/qcorotask.h>

#include <QObject>
#include <QString>

#include "app/app_model.h"

namespace ulvak {

/// What waits in the Trash, and emptying it.
///
/// Threads: the UI thread only.
class TrashModel : public QObject {
    Q_OBJECT
    /// A banner; empty when there is none.
    Q_PROPERTY(QString text READ text NOTIFY changed FINAL)
    Q_PROPERTY(bool isEmptying READ isEmptying NOTIFY changed FINAL)
    /// The id of the question that is to be asked before it is emptied; empty for none.
    Q_PROPERTY(QString questionId READ questionId NOTIFY questionChanged FINAL)
    Q_PROPERTY(QString question READ question NOTIFY questionChanged FINAL)
public:
    /// `app` outlives this object.
    explicit TrashModel(AppModel& app, QObject* parent = nullptr);

    [[nodiscard]] QString text() const;
    [[nodiscard]] bool isEmptying() const { return isEmptying_; }
    [[nodiscard]] QString questionId() const;
    [[nodiscard]] QString question() const;

    Q_INVOKABLE void empty();
    /// After the question with this id; nothing when another is asked by now.
    Q_INVOKABLE void emptyAsAsked(const QString& id);
    /// The same for an answer that is no.
    Q_INVOKABLE void dismissQuestion(const QString& id);

signals:
    void changed();
    void questionChanged();

private:
    QCoro::Task<> runEmpty(QCoro::Task<> task);

    AppModel& app_;
    bool isEmptying_ = false;
};

}  // namespace ulvak
