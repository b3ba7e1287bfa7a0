#include <gtest/gtest.h>

#include <QFont>
#include <QGuiApplication>
#include <QLocale>
#include <QtPlugin>

Q_IMPORT_PLUGIN(UlvakPlugin)

/// Without a display, and with an application for the windows.
int main(int argc, char* argv[]) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    QGuiApplication application(argc, argv);
    QLocale::setDefault(QLocale(QLocale::Turkish, QLocale::Turkey));
    QFont font;
    font.setPixelSize(13);
    QGuiApplication::setFont(font);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
