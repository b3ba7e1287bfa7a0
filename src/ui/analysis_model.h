#pragma once

#include <QObject>
#include <QString>

#include "app/app_model.h"

namespace ulvak {

/// Whether the language model is available, and requests to it.
///
/// Threads: the UI thread only.
class AnalysisModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool isAvailable READ isAvailable NOTIFY statusChanged FINAL)
    /// Why it is unavailable; empty if it is available or not known yet.
    Q_PROPERTY(QString message READ message NOTIFY statusChanged FINAL)
    Q_PROPERTY(QString hint READ hint NOTIFY statusChanged FINAL)
    /// What the model is called here, as a name, and in "with the model".
    Q_PROPERTY(QString modelName READ modelName CONSTANT FINAL)
    Q_PROPERTY(QString withModelText READ withModelText CONSTANT FINAL)
    Q_PROPERTY(QString analyzeText READ analyzeText CONSTANT FINAL)
    /// Under a model's verdict.
    Q_PROPERTY(QString warning READ warning CONSTANT FINAL)
    /// A banner; empty if nothing is uncertain.
    Q_PROPERTY(QString uncertainText READ uncertainText NOTIFY batchChanged FINAL)
    Q_PROPERTY(bool isBatchRunning READ isBatchRunning NOTIFY batchChanged FINAL)
    Q_PROPERTY(double batchFraction READ batchFraction NOTIFY batchChanged FINAL)
public:
    /// `app` must outlive this object.
    explicit AnalysisModel(AppModel& app, QObject* parent = nullptr);

    [[nodiscard]] bool isAvailable() const { return app_.aiStatus().isAvailable(); }
    [[nodiscard]] QString message() const;
    [[nodiscard]] QString hint() const;
    [[nodiscard]] QString modelName() const;
    [[nodiscard]] QString withModelText() const;
    [[nodiscard]] QString analyzeText() const;
    [[nodiscard]] QString warning() const;
    [[nodiscard]] QString uncertainText() const;
    [[nodiscard]] bool isBatchRunning() const { return app_.batchProgress().has_value(); }
    [[nodiscard]] double batchFraction() const;

    Q_INVOKABLE void analyze(const QString& findingId, const QString& note);
    Q_INVOKABLE void analyzeAllUncertain() { app_.analyzeAllUncertain(); }
    Q_INVOKABLE void cancelBatch() { app_.cancelBatch(); }

signals:
    void statusChanged();
    void batchChanged();

private:
    AppModel& app_;
};

}  // namespace ulvak
