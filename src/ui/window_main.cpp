#include <QGuiApplication>
#include <QLocale>
#include <QQmlApplicationEngine>
#include <QQuickWindow>
#include <QtPlugin>
#include <chrono>
#include <csignal>
#include <cstdlib>

#include "app/app_model.h"
#include "ui/appearance.h"
#include "ui/motion.h"
#include "ui/open_window.h"
#include "ui/window_model.h"

Q_IMPORT_PLUGIN(UlvakPlugin)

int main(int argc, char* argv[]) {
    using namespace ulvak;
    using namespace std::chrono_literals;
    // Without a display the toolkit says so and aborts. That is no bug of ours: the program ends like any
    // other that cannot begin, without a core dump.
    std::signal(SIGABRT, [](int) { std::_Exit(EXIT_FAILURE); });
    QGuiApplication application(argc, argv);
    std::signal(SIGABRT, SIG_DFL);
    QGuiApplication::setApplicationName(QStringLiteral("Ulvak"));
    // What a task bar shows beside the title of a window that does not name the program itself.
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Ulvak"));
    QGuiApplication::setDesktopFileName(QStringLiteral("ulvak"));
    QLocale::setDefault(QLocale(QLocale::Turkish, QLocale::Turkey));

    const QStringList arguments = QGuiApplication::arguments().mid(1);
    DesktopAppearance appearance;
    AppModel app;
    WindowModel window(app);
    QQmlApplicationEngine engine;
    QQuickWindow* view =
        openWindow(engine, window, {{QStringLiteral("reducedMotion"), wantsReducedMotion(arguments)}});
    if (view == nullptr)
        return EXIT_FAILURE;
    appearance.follow(*view);
    window.launch(arguments);
    const int status = QGuiApplication::exec();
    // A walk over a dead disk or a server that says nothing must not keep a closed program alive.
    if (!app.finish(800ms))
        std::_Exit(status);
    return status;
}
