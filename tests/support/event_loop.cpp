#include "support/event_loop.h"

#include <QCoreApplication>
#include <QEvent>
#include <QTimer>
#include <chrono>

namespace ulvak::test {

using namespace std::chrono_literals;

void waitInEventLoop() {
    betweenLooks = [] {
        QTimer look;  // what the test waits for need not come as an event
        look.setObjectName(testsTimer);
        look.start(2ms);
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        // Only a loop that runs does so by itself.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    };
}

}  // namespace ulvak::test
