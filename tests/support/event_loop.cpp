#include "support/event_loop.h"

#include <QCoreApplication>
#include <QEvent>
#include <QTimer>
#include <chrono>

namespace ulvak::test {

using namespace std::chrono_literals;

void waitInEventLoop() {
    betweenLooks = [] {
        QTimer look;  // the awaited condition need not come with an event
        look.setObjectName(testsTimer);
        look.start(2ms);
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        // Only a running event loop delivers these by itself.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    };
}

}  // namespace ulvak::test
