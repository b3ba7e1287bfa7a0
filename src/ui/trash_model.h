#pragma once

#include <qcoro/qcorotask.h>

#include <QObject>
#include <QString>

#include "app/app_model.h"

namespace ulvak {

/// What this program put into the Trash, and emptying it.
///
/// Threads: the UI thread only.
class TrashModel : public QObject {
    Q_OBJECT
    /// A banner; empty if there is none.
    Q_PROPERTY(QString text READ text NOTIFY changed FINAL)
    Q_PROPERTY(bool isEmptying READ isEmptying NOTIFY changed FINAL)
    /// The id of the question to ask before emptying; empty for none.
    Q_PROPERTY(QString questionId READ questionId NOTIFY questionChanged FINAL)
    Q_PROPERTY(QString question READ question NOTIFY questionChanged FINAL)
public:
    /// `app` must outlive this object.
    explicit TrashModel(AppModel& app, QObject* parent = nullptr);

    [[nodiscard]] QString text() const;
    [[nodiscard]] bool isEmptying() const { return isEmptying_; }
    [[nodiscard]] QString questionId() const;
    [[nodiscard]] QString question() const;

    Q_INVOKABLE void empty();
    /// Answers yes to the question with this id; no-op if another is being asked by now.
    Q_INVOKABLE void emptyAsAsked(const QString& id);
    /// The same for no.
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
