#include <QGuiApplication>
#include <QLocale>
#include <QQmlApplicationEngine>
#include <QQuickWindow>
#include <QtPlugin>
#include <chrono>
#include <csignal>
#include <cstdlib>

#include "app/app_model.h"
#include "app/one_window.h"
#include "ui/appearance.h"
#include "ui/motion.h"
#include "ui/open_window.h"
#include "ui/window_model.h"

Q_IMPORT_PLUGIN(UlvakPlugin)

namespace {

using namespace ulvak;

/// Carries out another launch's request and brings the window to the front.
void obey(const QStringList& arguments, const QByteArray& token, WindowModel& model, QQuickWindow& window) {
    if (!arguments.isEmpty())
        model.launch(arguments);
    // Qt reads the token from here when a window requests activation.
    if (!token.isEmpty())
        qputenv("XDG_ACTIVATION_TOKEN", token);
    window.setWindowStates(window.windowStates() & ~Qt::WindowMinimized);
    window.show();
    window.requestActivate();
}

/// Handles exits other than closing the window; these ask nothing.
void followEndings(QGuiApplication& application, WindowModel& model, QQuickWindow& window) {
    QObject::connect(
        &application, &QGuiApplication::commitDataRequest, &model, [&model] { model.closeUnasked(); },
        Qt::DirectConnection);
    OneWindow::whenAskedToEnd(&window, [&window] {
        window.hide();
        QCoreApplication::exit(EXIT_SUCCESS);  // `quit` would ask the window
    });
}

/// After the window is gone. A walk over a dead disk or an unresponsive server must not keep the program
/// alive; an unwritten label or a half-removed item must.
void finish(AppModel& app, int status) {
    using namespace std::chrono_literals;
    QGuiApplication::sync();
    const bool hasAllEnded = app.finish(800ms);
    app.finishLasting();
    OneWindow::endAsAsked();
    if (!hasAllEnded)
        std::_Exit(status);
}

}  // namespace

int main(int argc, char* argv[]) {
    const UserFolders folders = UserFolders::ofCurrentUser();
    OneWindow oneWindow(argc, argv, folders);
    if (oneWindow.isElsewhere())
        return EXIT_SUCCESS;
    // Without a display, Qt prints an error and aborts. That is not a crash of ours: exit like any program
    // that cannot start, without a core dump.
    std::signal(SIGABRT, [](int) { std::_Exit(EXIT_FAILURE); });
    QGuiApplication application(argc, argv);
    std::signal(SIGABRT, SIG_DFL);
    QGuiApplication::setApplicationName(QStringLiteral("Ulvak"));
    // Shown by task bars next to the title of windows that do not name the program themselves.
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Ulvak"));
    QGuiApplication::setDesktopFileName(QStringLiteral("ulvak"));
    QLocale::setDefault(QLocale(QLocale::Turkish, QLocale::Turkey));

    const QStringList arguments = QGuiApplication::arguments().mid(1);
    DesktopAppearance appearance;
    AppModel app(AppServices::system(folders), VerdictStore::defaultPath(folders));
    WindowModel model(app);
    QQmlApplicationEngine engine;
    QQuickWindow* window =
        openWindow(engine, model, {{QStringLiteral("reducedMotion"), wantsReducedMotion(arguments)}});
    if (window == nullptr)
        return EXIT_FAILURE;
    appearance.follow(*window);
    followEndings(application, model, *window);
    model.launch(arguments);
    oneWindow.listen(window, [&model, window](const QStringList& later, const QByteArray& token) {
        obey(later, token, model, *window);
    });
    const int status = QGuiApplication::exec();
    oneWindow.leave();
    finish(app, status);
    return status;
}
