#include <gmock/gmock.h>
#include <QCoreApplication>

#include "support/event_loop.h"

int main(int argc, char* argv[]) {
    // The output of expected deaths must not go to the system journal.
    qputenv("QT_FORCE_STDERR_LOGGING", "1");
    testing::InitGoogleMock(&argc, argv);
    // Everything here is multithreaded: death tests re-execute the program.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    ulvak::test::waitInEventLoop();
    const QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
