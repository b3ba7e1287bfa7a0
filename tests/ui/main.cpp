#include <gtest/gtest.h>

#include <QFont>
#include <QGuiApplication>
#include <QLocale>
#include <QtPlugin>

#include "support/event_loop.h"

Q_IMPORT_PLUGIN(UlvakPlugin)

/// Runs without a display, and with an application for the windows.
int main(int argc, char* argv[]) {
    // Remove the desktop settings of the user who runs the tests.
    for (const char* name : {"QT_QPA_PLATFORMTHEME", "QT_QUICK_CONTROLS_STYLE", "QT_QUICK_CONTROLS_CONF",
                             "QT_STYLE_OVERRIDE", "QT_FONT_DPI", "QT_LOGGING_RULES", "QML_IMPORT_PATH"})
        qunsetenv(name);
    // Tests of small screens bring their own platform settings.
    if (!qgetenv("QT_QPA_PLATFORM").startsWith("offscreen:"))
        qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" ULVAK_SCREENS "/desk.json");
    qputenv("QT_QUICK_BACKEND", "software");
    ulvak::test::waitInEventLoop();
    QGuiApplication application(argc, argv);
    QLocale::setDefault(QLocale(QLocale::Turkish, QLocale::Turkey));
    QFont font;
    font.setPixelSize(13);
    QGuiApplication::setFont(font);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
