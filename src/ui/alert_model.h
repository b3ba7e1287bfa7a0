#pragma once

#include <QObject>
#include <QString>

#include "app/app_model.h"
#include "ui/shown.h"

namespace ulvak {

/// The alert to show; its texts are empty if there is none.
///
/// Threads: the UI thread only.
class AlertModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool isThere READ isThere NOTIFY changed FINAL)
    Q_PROPERTY(QString title READ title NOTIFY changed FINAL)
    Q_PROPERTY(QString message READ message NOTIFY changed FINAL)
public:
    /// `app` must outlive this object.
    explicit AlertModel(AppModel& app, QObject* parent = nullptr) : QObject(parent), app_(app) {
        connect(&app, &AppModel::alertChanged, this, &AlertModel::changed);
    }

    [[nodiscard]] bool isThere() const { return app_.alert().has_value(); }
    [[nodiscard]] QString title() const {
        const auto& alert = app_.alert();
        return alert ? shown(alert->title) : QString();
    }
    [[nodiscard]] QString message() const {
        const auto& alert = app_.alert();
        return alert ? shownLines(alert->message) : QString();
    }

    Q_INVOKABLE void dismiss() { app_.dismissAlert(); }

signals:
    /// Also sent when one alert replaces another.
    void changed();

private:
    AppModel& app_;
};

}  // namespace ulvak
