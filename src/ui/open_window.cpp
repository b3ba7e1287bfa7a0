#include "ui/open_window.h"

#include <QQmlApplicationEngine>
#include <QQuickWindow>

#include "ui/symbol_images.h"
#include "ui/window_model.h"

namespace ulvak {

QQuickWindow* openWindow(QQmlApplicationEngine& engine, WindowModel& model, QVariantMap properties) {
    engine.addImageProvider(QStringLiteral("symbols"), new SymbolImages);  // the engine's from here on
    engine.addImportPath(QStringLiteral(":/qt/qml"));  // newer toolkits look there by themselves
    properties.insert(QStringLiteral("app"), QVariant::fromValue(&model));
    engine.setInitialProperties(properties);
    engine.load(QUrl(QStringLiteral("qrc:/qt/qml/Ulvak/Main.qml")));
    const QList<QObject*> roots = engine.rootObjects();
    return roots.isEmpty() ? nullptr : qobject_cast<QQuickWindow*>(roots.constFirst());
}

}  // namespace ulvak
