#include "ui/analysis_model.h"

#include "core/words.h"
#include "ui/shown.h"
#include "ui/texts.h"

namespace ulvak {

AnalysisModel::AnalysisModel(AppModel& app, QObject* parent) : QObject(parent), app_(app) {
    connect(&app, &AppModel::aiStatusChanged, this, &AnalysisModel::statusChanged);
    for (const auto changed : {&AppModel::findingsChanged, &AppModel::batchProgressChanged})
        connect(&app, changed, this, &AnalysisModel::batchChanged);
}

QString AnalysisModel::message() const {
    return shown(app_.aiStatus().unavailable.value_or(""));
}

QString AnalysisModel::hint() const {
    return isAvailable() ? QString() : shown(app_.aiStatus().hint);
}

QString AnalysisModel::modelName() const {
    return Texts::fixed(words().model);
}

QString AnalysisModel::withModelText() const {
    return Texts::fixed(words().withModel);
}

QString AnalysisModel::analyzeText() const {
    return Texts::fixed(words().withModelOnButton) + QStringLiteral(" Analiz Et");
}

QString AnalysisModel::warning() const {
    return QStringLiteral("%1 yanılabilir. Önemli olabilecek şeyleri silmeden önce %2 bir göz at.")
        .arg(modelName(), Texts::fixed(words().inFileManager));
}

QString AnalysisModel::uncertainText() const {
    const std::int64_t count = app_.batchCount();
    return count < 1 ? QString()
                     : QStringLiteral(
                           "%1 klasör bilinmiyor ya da adından tahmin edildi. %2 içeriklerine bakıp "
                           "yorumlayabilir.")
                           .arg(QString::number(count), modelName());
}

double AnalysisModel::batchFraction() const {
    const auto& batch = app_.batchProgress();
    return batch && batch->total > 0 ? static_cast<double>(batch->done) / static_cast<double>(batch->total)
                                     : 0.0;
}

void AnalysisModel::analyze(const QString& findingId, const QString& note) {
    app_.analyze(idOf(findingId), note.toStdString());
}

}  // namespace ulvak
