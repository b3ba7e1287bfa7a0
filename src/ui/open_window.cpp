#include "ui/open_window.h"

#include <QQmlApplicationEngine>
#include <QQuickWindow>
#include <QScreen>

#include "ui/symbol_images.h"
#include "ui/window_model.h"

namespace ulvak {
namespace {

/// Fits the window into its screen's available area; on a move to another screen, adapts only the minimum
/// size.
void fitToScreen(QQuickWindow& window) {
    constexpr int titleBar = 40;  // the desktop's; its real height is known only once it exists
    const auto room = [&window] { return window.screen()->availableSize() - QSize(0, titleBar); };
    const auto shrink = [&window, room, minimum = window.minimumSize()] {
        window.setMinimumSize(minimum.boundedTo(room()));
    };
    shrink();
    window.resize(window.size().boundedTo(room()));
    QObject::connect(&window, &QWindow::screenChanged, &window, shrink);
}

}  // namespace

QQuickWindow* openWindow(QQmlApplicationEngine& engine, WindowModel& model, QVariantMap properties) {
    engine.addImageProvider(QStringLiteral("symbols"), new SymbolImages);  // takes ownership
    engine.addImportPath(QStringLiteral(":/qt/qml"));  // newer Qt versions search there by default
    properties.insert(QStringLiteral("app"), QVariant::fromValue(&model));
    engine.setInitialProperties(properties);
    engine.load(QUrl(QStringLiteral("qrc:/qt/qml/Ulvak/Main.qml")));
    const QList<QObject*> roots = engine.rootObjects();
    auto* window = roots.isEmpty() ? nullptr : qobject_cast<QQuickWindow*>(roots.constFirst());
    if (window == nullptr)
        return nullptr;
    fitToScreen(*window);
    window->show();
    return window;
}

}  // namespace ulvak
