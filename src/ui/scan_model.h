#pragma once

#include <QObject>
#include <QString>

#include "app/app_model.h"

namespace ulvak {

/// Scan progress, formatted.
///
/// Threads: the UI thread only.
class ScanModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(Phase phase READ phase NOTIFY phaseChanged FINAL)
    Q_PROPERTY(QString buttonText READ buttonText NOTIFY phaseChanged FINAL)
    Q_PROPERTY(QString filesText READ filesText NOTIFY progressChanged FINAL)
    Q_PROPERTY(QString bytesText READ bytesText NOTIFY progressChanged FINAL)
    Q_PROPERTY(QString currentPath READ currentPath NOTIFY progressChanged FINAL)
    /// Result of the last completed scan; empty if there is none.
    Q_PROPERTY(QString resultText READ resultText NOTIFY progressChanged FINAL)
public:
    // NOLINTBEGIN(readability-identifier-naming): QML sees only capitalised enumerators
    /// Same as `AppModel::Phase`.
    enum class Phase : int { Idle, Scanning, Done };
    Q_ENUM(Phase)
    // NOLINTEND(readability-identifier-naming)

    /// `app` must outlive this object.
    explicit ScanModel(AppModel& app, QObject* parent = nullptr);

    [[nodiscard]] Phase phase() const;
    [[nodiscard]] QString buttonText() const;
    [[nodiscard]] QString filesText() const;
    [[nodiscard]] QString bytesText() const;
    [[nodiscard]] QString currentPath() const;
    [[nodiscard]] QString resultText() const;

    Q_INVOKABLE void start() { app_.scan(); }
    Q_INVOKABLE void cancel() { app_.cancelScan(); }

signals:
    void phaseChanged();
    void progressChanged();

private:
    AppModel& app_;
};

}  // namespace ulvak
