#include "ui/scan_model.h"

#include "ui/shown.h"
#include "ui/texts.h"

namespace ulvak {

ScanModel::ScanModel(AppModel& app, QObject* parent) : QObject(parent), app_(app) {
    connect(&app, &AppModel::phaseChanged, this, &ScanModel::phaseChanged);
    for (const auto changed : {&AppModel::scannedFilesChanged, &AppModel::scannedBytesChanged,
                               &AppModel::currentPathChanged, &AppModel::scanDurationChanged})
        connect(&app, changed, this, &ScanModel::progressChanged);
}

ScanModel::Phase ScanModel::phase() const {
    switch (app_.phase()) {
        case AppModel::Phase::idle:
            return Phase::Idle;
        case AppModel::Phase::scanning:
            return Phase::Scanning;
        case AppModel::Phase::done:
            return Phase::Done;
    }
    return Phase::Idle;
}

QString ScanModel::buttonText() const {
    switch (app_.phase()) {
        case AppModel::Phase::idle:
            return QStringLiteral("Tara");
        case AppModel::Phase::scanning:
            return QStringLiteral("Durdur");
        case AppModel::Phase::done:
            return QStringLiteral("Yeniden Tara");
    }
    return {};
}

QString ScanModel::filesText() const {
    return Texts::number(app_.scannedFiles());
}

QString ScanModel::bytesText() const {
    return Texts::bytes(app_.scannedBytes());
}

QString ScanModel::currentPath() const {
    return shown(app_.currentPath());
}

QString ScanModel::resultText() const {
    const auto duration = app_.scanDuration();
    return duration ? filesText() + QStringLiteral(" dosya, ") + bytesText() + QStringLiteral(" · ") +
                          Texts::wholeSeconds(*duration) + QStringLiteral(" sn")
                    : QString();
}

}  // namespace ulvak
