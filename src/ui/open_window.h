#pragma once

#include <QVariantMap>

class QQmlApplicationEngine;
class QQuickWindow;

namespace ulvak {

class WindowModel;

/// Loads the window, and shows it. Null when it could not be loaded; the engine has then said why.
///
/// `model` outlives the engine. `properties` are of the window itself, such as "appearance" and
/// "reducedMotion". The static library `ulvak::ui`, with its plugin imported, must be linked to the program.
///
/// Threads: the UI thread only.
QQuickWindow* openWindow(QQmlApplicationEngine& engine, WindowModel& model, QVariantMap properties = {});

}  // namespace ulvak
