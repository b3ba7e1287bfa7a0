#pragma once

#include <QVariantMap>

class QQmlApplicationEngine;
class QQuickWindow;

namespace ulvak {

class WindowModel;

/// Loads and shows the window. Null if loading fails; the engine has then reported why.
///
/// `model` must outlive the engine. `properties` are set on the window itself, such as "appearance" and
/// "reducedMotion". The program must link the static library `ulvak::ui` and import its plugin.
///
/// Threads: the UI thread only.
QQuickWindow* openWindow(QQmlApplicationEngine& engine, WindowModel& model, QVariantMap properties = {});

}  // namespace ulvak
