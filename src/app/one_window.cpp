#include "app/one_window.h"

#include <QSocketNotifier>
#include <QTimer>
#include <cstdio>
#include <string>
#include <utility>

#include "core/paths.h"
#include "platform/process.h"
#include "store/verdict_store.h"

namespace ulvak {

using platform::LaunchRequest;
using Role = platform::SingleInstance::Role;

OneWindow::OneWindow(int argc, char* argv[], const UserFolders& folders) {
    LaunchRequest request{.activationToken = platform::activationToken()};
    for (int i = 1; i < argc; ++i)
        request.arguments.emplace_back(argv[i]);
    instance_ = std::make_unique<platform::SingleInstance>(
        folders.home + '\n' + VerdictStore::defaultPath(folders), request);
}

bool OneWindow::isElsewhere() const {
    if (instance_->role() == Role::silent)
        std::fputs("ulvak: açık olan pencere yanıt vermiyor; bir pencere daha açılıyor.\n", stderr);
    return instance_->role() == Role::handedOver;
}

void OneWindow::listen(QObject* context, std::function<void(const QStringList&, const QByteArray&)> obey) {
    instance_->listen(
        [context, obey = std::move(obey)](const LaunchRequest& request, std::shared_ptr<void> turn) {
            QStringList arguments;
            for (const std::string& argument : request.arguments)
                arguments.append(QString::fromStdString(argument));
            QTimer::singleShot(0, context,
                               [obey, arguments, token = QByteArray::fromStdString(request.activationToken),
                                turn = std::move(turn)] { obey(arguments, token); });
        });
}

void OneWindow::whenAskedToEnd(QObject* context, std::function<void()> end) {
    const auto sent = platform::watchEndingSignals();
    if (!sent)
        return;
    auto* notifier = new QSocketNotifier(*sent, QSocketNotifier::Read, context);
    QObject::connect(notifier, &QSocketNotifier::activated, context, [notifier, end = std::move(end)] {
        notifier->setEnabled(false);
        end();
    });
}

void OneWindow::endAsAsked() {
    platform::endBySignal();
}

}  // namespace ulvak
