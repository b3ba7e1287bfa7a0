#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLocale>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTimer>
#include <QtEndian>
#include <QtPlugin>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <functional>
#include <string>
#include <thread>

#include "app/app_model.h"
#include "ui/open_window.h"
#include "ui/window_model.h"

Q_IMPORT_PLUGIN(UlvakPlugin)

// Renders every page of the window over the home folder named by HOME, without a display:
//
//     ulvak_screenshots FOLDER light|dark [FONT-SIZE [WIDTHxHEIGHT]]
//
// The scan and the list are real; the model's presence, the running applications and the disk's size are
// fixed here, so that the images do not depend on this machine.

namespace {

using namespace ulvak;
using namespace std::chrono_literals;

/// Processes events until `holds` returns true; false if that takes more than a minute.
bool waitUntil(const std::function<bool()>& holds) {
    const auto end = std::chrono::steady_clock::now() + 60s;
    while (!holds() && std::chrono::steady_clock::now() < end)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    return holds();
}

void settle(std::chrono::milliseconds time = 450ms) {
    QEventLoop loop;
    QTimer::singleShot(time, &loop, &QEventLoop::quit);
    loop.exec();
}

QByteArray bigEndian(quint32 number) {
    QByteArray bytes(4, '\0');
    qToBigEndian(number, bytes.data());
    return bytes;
}

QByteArray chunk(const QByteArray& content) {
    quint32 check = 0xffffffff;
    for (const char byte : content) {
        check ^= static_cast<quint8>(byte);
        for (int bit = 0; bit < 8; ++bit)
            check = (check >> 1) ^ ((check & 1) != 0 ? 0xedb88320U : 0);
    }
    return bigEndian(static_cast<quint32>(content.size()) - 4) + content + bigEndian(~check);
}

/// Encodes a PNG without row filters, which Qt's writer always applies: images of flat areas and text come
/// out a quarter smaller.
QByteArray pngOf(const QImage& picture) {
    const QImage image = picture.convertToFormat(QImage::Format_RGB888);
    QByteArray rows;
    for (int row = 0; row < image.height(); ++row) {
        rows.append('\0');
        rows.append(reinterpret_cast<const char*>(image.constScanLine(row)), 3 * image.width());
    }
    const QByteArray eightBitsOfThree = QByteArray("\x08\x02\0\0\0", 5);
    return QByteArray("\x89PNG\r\n\x1a\n", 8) +
           chunk("IHDR" + bigEndian(static_cast<quint32>(image.width())) +
                 bigEndian(static_cast<quint32>(image.height())) + eightBitsOfThree) +
           chunk("IDAT" + qCompress(rows, 9).mid(4)) + chunk("IEND");
}

class Pictures {
public:
    Pictures(QQuickWindow& window, const QDir& folder, QString appearance)
        : window_(window), folder_(folder), appearance_(std::move(appearance)) {}

    void take(const QString& name) {
        settle();
        const QByteArray image = pngOf(window_.grabWindow());
        const QString scale = window_.effectiveDevicePixelRatio() > 1 ? QStringLiteral("@2x") : QString();
        const QString file = folder_.filePath(name + u'-' + appearance_ + scale + QStringLiteral(".png"));
        QFile output(file);
        const bool isWritten = output.open(QIODevice::WriteOnly) && output.write(image) == image.size();
        std::printf("%s %s\n", isWritten ? "wrote" : "could not write", qPrintable(file));
    }

    QObject* find(const char* name) const { return find(&window_, QString::fromLatin1(name)); }

    void call(const char* name, const char* method) const {
        QObject* object = find(name);
        if (object == nullptr || !QMetaObject::invokeMethod(object, method))
            std::printf("no %s.%s\n", name, method);
    }

private:
    static QObject* find(QObject* root, const QString& name) {
        for (QObject* child : root->findChildren<QObject*>(name))
            return child;
        return nullptr;
    }

    QQuickWindow& window_;
    QDir folder_;
    QString appearance_;
};

/// A finished scan is held back until its picture has been taken.
std::atomic<bool> holdsScan = true;

AppServices staged() {
    AppServices services = AppServices::system(UserFolders::ofCurrentUser());
    services.scan = [scan = services.scan](ScanProgress& progress, const std::stop_token& stop) {
        auto findings = scan(progress, stop);
        while (holdsScan && !stop.stop_requested())
            std::this_thread::sleep_for(20ms);
        return findings;
    };
    services.aiStatus = [](std::stop_token) { return AIStatus{}; };
    services.runningAmong = [](std::span<const std::string>) { return std::vector<std::string>(); };
    services.processesAmong = [](std::span<const std::string>) { return std::vector<std::string>(); };
    services.diskInfo = [] { return DiskInfo{.total = 494'384'795'648, .available = 18'730'000'000}; };
    return services;
}

void selectRows(WindowModel& window, int count) {
    for (int row = 0; row < count; ++row)
        window.list()->selection()->press(row, row == 0 ? Qt::NoModifier : Qt::ControlModifier);
}

void lists(WindowModel& window, Pictures& pictures) {
    for (const SafetyLevel level : displayedSafetyLevels()) {
        window.setSidebar(SidebarItem{level});
        selectRows(window, 1);
        pictures.take(QStringLiteral("list-") + LevelInfo::of(level).name);
    }
}

void dialogs(WindowModel& window, Pictures& pictures) {
    window.setSidebar(SidebarItem{SafetyLevel::caution});
    selectRows(window, 4);
    pictures.take(QStringLiteral("several"));
    pictures.call("cleanSeveral", "activate");
    pictures.take(QStringLiteral("confirm-several"));
    pictures.call("confirmSeveral", "close");
    window.setSidebar(SidebarItem{SafetyLevel::safe});
    selectRows(window, 1);
    settle();
    pictures.call("removePermanently", "activate");
    pictures.take(QStringLiteral("confirm-permanent"));
    pictures.call("confirmPermanent", "close");
    window.setSidebar(SidebarItem{SafetyLevel::keep});
    selectRows(window, 1);
    settle();
    pictures.call("moveToTrash", "activate");
    pictures.take(QStringLiteral("confirm-trash"));
    pictures.call("confirmTrash", "close");
}

void menus(QQuickWindow& view, WindowModel& window, Pictures& pictures) {
    window.setSidebar(SidebarItem{SafetyLevel::unknown});
    selectRows(window, 1);
    settle();
    if (auto* rows = qobject_cast<QQuickItem*>(pictures.find("rows"))) {
        rows->forceActiveFocus(Qt::TabFocusReason);
        QMetaObject::invokeMethod(rows, "openMenu");
        settle();
        for (const int key : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Right}) {
            QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
            QCoreApplication::sendEvent(&view, &press);
        }
    }
    pictures.take(QStringLiteral("menu"));
    pictures.call("rowMenu", "close");
}

}  // namespace

int main(int argc, char* argv[]) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    QGuiApplication application(argc, argv);
    if (argc < 3)
        return 2;
    QLocale::setDefault(QLocale(QLocale::Turkish, QLocale::Turkey));
    QFont font(QStringLiteral("Inter"));
    font.setPixelSize(argc > 3 ? QByteArray(argv[3]).toInt() : 13);
    QGuiApplication::setFont(font);
    QDir().mkpath(QString::fromLocal8Bit(argv[1]));

    AppModel app(staged(),
                 (QDir::homePath() + QStringLiteral("/.local/share/Ulvak/verdicts.json")).toStdString());
    WindowModel window(app);
    QQmlApplicationEngine engine;
    QQuickWindow* view =
        openWindow(engine, window, {{QStringLiteral("appearance"), QString::fromLocal8Bit(argv[2])}});
    if (view == nullptr)
        return 1;
    Pictures pictures(*view, QDir(QString::fromLocal8Bit(argv[1])), QString::fromLocal8Bit(argv[2]));

    // Regardless of the screen's size, which is small without a display.
    const QList<QByteArray> size = QByteArray(argc > 4 ? argv[4] : "1320x840").split('x');
    view->resize(size.value(0).toInt(), size.value(1).toInt());
    view->requestActivate();

    pictures.take(QStringLiteral("welcome"));
    app.scan();
    waitUntil([&] { return app.scannedFiles() > 0; });
    pictures.take(QStringLiteral("scanning"));
    holdsScan = false;
    if (!waitUntil([&] { return app.phase() == AppModel::Phase::done; }))
        return 1;
    pictures.take(QStringLiteral("results"));
    lists(window, pictures);
    dialogs(window, pictures);
    menus(*view, window, pictures);
    return 0;
}
