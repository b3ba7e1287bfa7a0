#include "app/workers.h"

#include <QCoreApplication>
#include <QEvent>

namespace ulvak {

// A scan that was cancelled still walks, a new one walks beside it, a model is asked about many findings,
// items are cleaned, a label is written: none of them waits for another. As many as one can click together.
constexpr int mostThreads = 1000;

Workers::Workers(QObject& home) : home_(home) {
    pool_.setMaxThreadCount(mostThreads);
}

Workers::~Workers() {
    while (awaited_ > 0) {
        pool_.waitForDone();
        QCoreApplication::sendPostedEvents(&home_, QEvent::MetaCall);
    }
    pool_.waitForDone();
}

void Workers::post(std::function<void()> function) {
    pool_.start(std::move(function));
}

bool Workers::waitForDone(std::chrono::milliseconds time) {
    return pool_.waitForDone(static_cast<int>(time.count()));
}

void Workers::start(std::function<void()> function, std::coroutine_handle<> waiting) {
    ++awaited_;
    pool_.start([this, function = std::move(function), waiting] {
        function();
        const auto goOn = [this, waiting] {
            --awaited_;
            waiting.resume();
        };
        QMetaObject::invokeMethod(&home_, goOn, Qt::QueuedConnection);
    });
}

}  // namespace ulvak
