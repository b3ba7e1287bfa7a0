#include "ui/open_window.h"

#include <QQmlApplicationEngine>
#include <QQuickWindow>
#include <QScreen>

#include "ui/symbol_images.h"
#include "ui/window_model.h"

namespace ulvak {
namespace {

/// No larger than its screen leaves it, now or on the screen that it is moved to.
void fitToScreen(QQuickWindow& window) {
    constexpr int titleBar = 40;  // the desktop's own; how high it is is known only once it is there
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
    engine.addImageProvider(QStringLiteral("symbols"), new SymbolImages);  // the engine's from here on
    engine.addImportPath(QStringLiteral(":/qt/qml"));  // newer toolkits look there by themselves
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
