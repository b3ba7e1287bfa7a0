#include "app/workers.h"

#include <QCoreApplication>
#include <QEvent>
#include <QObject>

namespace ulvak {

// A scan that was cancelled still walks, a new one walks beside it, a model is asked about many findings,
// items are cleaned, a label is written: none of them waits for another. As many as one can click together.
constexpr int mostThreads = 1000;

namespace {

/// That a coroutine can go on.
class GoOn : public QEvent {
public:
    explicit GoOn(std::coroutine_handle<> waitingOne) : QEvent(ownType()), waiting(waitingOne) {}

    static Type ownType() {
        static const int number = registerEventType();
        return static_cast<Type>(number);
    }

    std::coroutine_handle<> waiting;
};

}  // namespace

class Workers::Home : public QObject {
public:
    bool event(QEvent* event) override {
        const auto* goOn = dynamic_cast<const GoOn*>(event);
        if (goOn == nullptr)
            return QObject::event(event);
        --awaited;
        goOn->waiting.resume();
        return true;
    }

    int awaited = 0;  ///< calls whose coroutine has not gone on yet
};

Workers::Workers() : home_(std::make_unique<Home>()) {
    pool_.setMaxThreadCount(mostThreads);
}

Workers::~Workers() {
    while (home_->awaited > 0) {
        pool_.waitForDone();
        QCoreApplication::sendPostedEvents(home_.get(), GoOn::ownType());
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
    ++home_->awaited;
    pool_.start([home = home_.get(), function = std::move(function), waiting] {
        function();
        QCoreApplication::postEvent(home, new GoOn(waiting));
    });
}

}  // namespace ulvak
