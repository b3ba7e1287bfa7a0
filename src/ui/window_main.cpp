#include <QGuiApplication>
#include <QLocale>
#include <QQmlApplicationEngine>
#include <QQuickWindow>
#include <QSocketNotifier>
#include <QtPlugin>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <utility>

#include "app/app_model.h"
#include "core/paths.h"
#include "platform/ending_signals.h"
#include "platform/single_instance.h"
#include "ui/appearance.h"
#include "ui/motion.h"
#include "ui/open_window.h"
#include "ui/window_model.h"

Q_IMPORT_PLUGIN(UlvakPlugin)

namespace {

using namespace ulvak;
using platform::LaunchRequest;
using platform::SingleInstance;

/// As this program was started. Whoever has another home or other labels has another window.
std::unique_ptr<SingleInstance> makeInstance(int argc, char* argv[]) {
    LaunchRequest request{.activationToken = platform::activationToken()};
    for (int i = 1; i < argc; ++i)
        request.arguments.emplace_back(argv[i]);
    return std::make_unique<SingleInstance>(Paths::home() + '\n' + VerdictStore::defaultPath(), request);
}

/// What another start has asked for, and the window to the front.
void obey(const LaunchRequest& request, WindowModel& model, QQuickWindow& window) {
    QStringList arguments;
    for (const std::string& argument : request.arguments)
        arguments.append(QString::fromStdString(argument));
    if (!arguments.isEmpty())
        model.launch(arguments);
    // The toolkit looks for it there when the window asks to be activated.
    if (!request.activationToken.empty())
        qputenv("XDG_ACTIVATION_TOKEN", QByteArray::fromStdString(request.activationToken));
    window.setWindowStates(window.windowStates() & ~Qt::WindowMinimized);
    window.show();
    window.raise();
    window.requestActivate();
}

void endBySignals(int descriptor, QQuickWindow& window) {
    auto* notifier = new QSocketNotifier(descriptor, QSocketNotifier::Read, &window);
    QObject::connect(notifier, &QSocketNotifier::activated, &window, [notifier, &window] {
        notifier->setEnabled(false);
        window.hide();
        QCoreApplication::exit(EXIT_SUCCESS);  // not `quit`, which asks the window
    });
}

/// When the window is gone. A walk over a dead disk or a server that says nothing must not keep a closed
/// program alive; a label or half an item must.
void finish(AppModel& app, int status) {
    using namespace std::chrono_literals;
    QGuiApplication::sync();
    const bool hasAllEnded = app.finish(800ms);
    app.finishLasting();
    platform::endBySignal();
    if (!hasAllEnded)
        std::_Exit(status);
}

}  // namespace

int main(int argc, char* argv[]) {
    auto instance = makeInstance(argc, argv);
    if (instance->role() == SingleInstance::Role::handedOver)
        return EXIT_SUCCESS;
    if (instance->role() == SingleInstance::Role::silent)
        std::fputs("ulvak: açık olan pencere yanıt vermiyor; bir pencere daha açılıyor.\n", stderr);
    const std::optional<int> endingSignals = platform::watchEndingSignals();
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
    WindowModel model(app);
    QQmlApplicationEngine engine;
    QQuickWindow* window =
        openWindow(engine, model, {{QStringLiteral("reducedMotion"), wantsReducedMotion(arguments)}});
    if (window == nullptr)
        return EXIT_FAILURE;
    appearance.follow(*window);
    QObject::connect(
        &application, &QGuiApplication::commitDataRequest, &model, [&model] { model.closeUnasked(); },
        Qt::DirectConnection);
    if (endingSignals)
        endBySignals(*endingSignals, *window);
    model.launch(arguments);
    instance->listen([&model, window](LaunchRequest request, std::shared_ptr<void> turn) {
        QMetaObject::invokeMethod(
            window,
            [request = std::move(request), turn = std::move(turn), &model, window] {
                obey(request, model, *window);
            },
            Qt::QueuedConnection);
    });
    const int status = QGuiApplication::exec();
    instance.reset();  // another start has a window of its own from here on
    finish(app, status);
    return status;
}
