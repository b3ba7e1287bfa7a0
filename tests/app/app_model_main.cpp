#include <gmock/gmock.h>
#include <QCoreApplication>

int main(int argc, char* argv[]) {
    testing::InitGoogleMock(&argc, argv);
    // Threads are everywhere here: what is to die does so in a process of its own, from its start.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
