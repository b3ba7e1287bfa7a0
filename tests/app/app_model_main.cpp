#include <gmock/gmock.h>
#include <QCoreApplication>

#include "support/event_loop.h"

int main(int argc, char* argv[]) {
    // What a death is expected to say must not go to the system's journal.
    qputenv("QT_FORCE_STDERR_LOGGING", "1");
    testing::InitGoogleMock(&argc, argv);
    // Threads are everywhere here: what is to die does so in a process of its own, from its start.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    ulvak::test::waitInEventLoop();
    const QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
