// Measures the window, without a display: the time to its first frame, and the UI-thread time per frame while
// one list of many findings is scrolled, selected and relabelled.
//
//     ulvak_window_frames [--runs N] [--findings N]
//
// A frame's time is that of the whole turn of the event loop, less the drawing itself: without a display the
// toolkit draws in software on the same thread, which no user's window does.

#include <sys/wait.h>
#include <unistd.h>

#include <QEventLoop>
#include <QFile>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLocale>
#include <QQmlApplicationEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTimer>
#include <QWheelEvent>
#include <QtPlugin>
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <stop_token>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "app/app_model.h"
#include "made_up.h"
#include "turns.h"
#include "ui/open_window.h"
#include "ui/shown.h"
#include "ui/window_model.h"

Q_IMPORT_PLUGIN(UlvakPlugin)

namespace ulvak {
namespace {

namespace fs = std::filesystem;
using Application = TimedApplication<QGuiApplication>;

constexpr double maxFrame = 16;     // ms
constexpr double firstFrame = 400;  // ms
constexpr int wheelTurns = 400;
constexpr const char* childFlag = "--one-first-frame";

struct Options {
    std::size_t runs = 9;
    std::size_t findings = 5'000;
    bool isChild = false;
};

double milliseconds() {
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

std::vector<Finding> oneList(std::size_t count, const std::string& home) {
    std::vector<Finding> findings;
    findings.reserve(count);
    for (std::size_t number = 0; number < count; ++number) {
        findings.push_back(madeUp(number, home));
        findings.back().original.level = SafetyLevel::safe;
        resetVerdict(findings.back());
    }
    return findings;
}

AppServices services(std::size_t findings) {
    AppServices services = AppServices::system(UserFolders::ofCurrentUser());
    services.scan = [findings, home = services.folders.home](ScanProgress&, const std::stop_token&) {
        return oneList(findings, home);
    };
    return services;
}

/// The window with one list, and its frame times.
class World {
public:
    World(Application& application, std::size_t findings, std::string verdictsPath)
        : application_(application),
          app_(services(findings), std::move(verdictsPath)),
          model_(app_),
          window_(openWindow(engine_, model_)) {
        if (window_ == nullptr)
            failWith("the window cannot be opened");
        QObject::connect(window_, &QQuickWindow::beforeRendering, window_,
                         [this] { application_.leaveOut(true); });
        QObject::connect(window_, &QQuickWindow::afterRendering, window_,
                         [this] { application_.leaveOut(false); });
        window_->requestActivate();
    }

    void scan() {
        QEventLoop loop;
        const auto connection = QObject::connect(&app_, &AppModel::phaseChanged, &loop, [&] {
            if (app_.phase() == AppModel::Phase::done)
                loop.quit();
        });
        app_.scan();
        loop.exec();
        QObject::disconnect(connection);
    }

    /// The longest turn from the action to the end of the frame that shows it.
    Turn frame(const std::function<void()>& action) {
        (void)application_.takeLongest();
        QEventLoop loop;
        const auto connection =
            QObject::connect(window_, &QQuickWindow::frameSwapped, &loop, &QEventLoop::quit);
        QTimer::singleShot(0, window_, [&] {
            action();
            window_->update();
        });
        loop.exec();
        QObject::disconnect(connection);
        return application_.takeLongest();
    }

    void openList() { model_.setSidebar(SidebarItem{SafetyLevel::safe}); }
    void wheel() {
        const QPointF middle = rows()->mapToScene({rows()->width() / 2, rows()->height() / 2});
        QWheelEvent event(middle, window_->mapToGlobal(middle), {}, {0, -120}, Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
        event.setTimestamp(static_cast<quint64>(milliseconds()));  // the list computes the wheel's speed
        QCoreApplication::sendEvent(window_, &event);
    }
    void key(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        rows()->forceActiveFocus();
        QKeyEvent press(QEvent::KeyPress, key, modifiers);
        QCoreApplication::sendEvent(window_, &press);
    }
    void relabelOne() {
        const auto& findings = app_.findings();
        model_.actions()->setLevel(Level::Value::Keep, idText(findings[findings.size() / 2]->id));
    }
    void clearSelection() { model_.list()->selection()->clear(); }
    [[nodiscard]] std::size_t selected() { return model_.list()->selection()->ids().size(); }
    [[nodiscard]] int listed() { return model_.list()->rows()->rowCount(); }

    /// Scroll offset of the list, in pixels.
    [[nodiscard]] double scrolled() const { return rows()->property("contentY").toDouble(); }
    /// The number of rows with a delegate.
    [[nodiscard]] int delegates() const {
        const auto* content = rows()->property("contentItem").value<QQuickItem*>();
        return static_cast<int>(std::ranges::count_if(content->childItems(), [](const QQuickItem* item) {
            return item->property("findingId").isValid();
        }));
    }

private:
    [[nodiscard]] QQuickItem* rows() const {
        auto* item = window_->findChild<QQuickItem*>(QStringLiteral("rows"));
        if (item == nullptr)
            failWith("there is no list");
        return item;
    }

    Application& application_;
    AppModel app_;
    WindowModel model_;
    QQmlApplicationEngine engine_;
    QQuickWindow* window_;
};

struct Figures {
    std::string_view name;
    bool isOnce = false;  ///< not a frame of normal use: reported, not judged
    std::vector<Turn> frames;
};

/// What a user does with the list. Frames of all runs together.
struct Session {
    std::array<Figures, 7> figures = {{{.name = "the list is opened", .isOnce = true},
                                       {.name = "the wheel turns"},
                                       {.name = "page by page"},
                                       {.name = "all are selected"},
                                       {.name = "the wheel turns, all selected"},
                                       {.name = "one of them is relabelled"},
                                       {.name = "to the end and back"}}};
    int delegates = 0;

    void run(World& world) {
        auto next = figures.begin();
        const auto frames = [&](int count, const std::function<void()>& action) {
            for (int i = 0; i < count; ++i) {
                next->frames.push_back(world.frame(action));
                delegates = std::max(delegates, world.delegates());
            }
            ++next;
        };
        frames(1, [&] { world.openList(); });
        const int listed = world.listed();
        frames(wheelTurns, [&] { world.wheel(); });
        if (world.scrolled() < wheelTurns)
            failWith("the wheel does not scroll");
        frames(wheelTurns, [&] { world.key(Qt::Key_PageDown); });
        frames(1, [&] { world.key(Qt::Key_A, Qt::ControlModifier); });
        if (world.selected() != static_cast<std::size_t>(world.listed()))
            failWith("not all are selected");
        frames(wheelTurns, [&] { world.wheel(); });
        frames(1, [&] { world.relabelOne(); });
        if (world.listed() != listed - 1)
            failWith("what was relabelled is still listed");
        int times = 0;
        frames(2, [&] { world.key(times++ % 2 == 0 ? Qt::Key_End : Qt::Key_Home); });
    }
};

/// From process start to the window's first frame, in ms.
double timeToFirstFrame(const std::string& program) {
    std::array<int, 2> ends{};
    if (::pipe(ends.data()) != 0)
        failWith("no pipe");
    const double start = milliseconds();
    const pid_t child = ::fork();
    if (child == 0) {
        ::dup2(ends[1], STDOUT_FILENO);
        ::execl(program.c_str(), program.c_str(), childFlag, nullptr);
        ::_exit(127);
    }
    ::close(ends[1]);
    std::string text;
    std::array<char, 64> buffer{};
    for (ssize_t count = 0; (count = ::read(ends[0], buffer.data(), buffer.size())) > 0;)
        text.append(buffer.data(), static_cast<std::size_t>(count));
    ::close(ends[0]);
    int status = 0;
    if (::waitpid(child, &status, 0) != child || status != 0 || text.empty())
        failWith("the window has not opened");
    return std::strtod(text.c_str(), nullptr) - start;
}

/// Opens the program's window and prints when its first frame was shown.
int showOneFrame(QGuiApplication& application) {
    const UserFolders folders = UserFolders::ofCurrentUser();
    AppModel app(AppServices::system(folders), VerdictStore::defaultPath(folders));
    WindowModel model(app);
    QQmlApplicationEngine engine;
    QQuickWindow* window = openWindow(engine, model);
    if (window == nullptr)
        return 1;
    QObject::connect(window, &QQuickWindow::frameSwapped, &application, [] {
        std::printf("%.3f\n", milliseconds());
        QCoreApplication::quit();
    });
    return QGuiApplication::exec();
}

/// The process's peak memory, in MiB.
double peakMemory() {
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        failWith("no /proc");
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith("VmHWM:"))
            return line.simplified().split(' ').at(1).toDouble() / 1024;
    }
    failWith("no peak of memory");
}

/// Prints the figures; returns whether everything was fast enough.
bool report(const Session& session, std::vector<double> firstFrames) {
    std::ranges::sort(firstFrames);
    const double first = firstFrames[firstFrames.size() / 2];
    std::printf("first frame, ms: median %.0f, from %.0f to %.0f (drawn in software)\n\n", first,
                firstFrames.front(), firstFrames.back());
    bool isQuick = first <= firstFrame;
    std::printf("a frame without its drawing, ms     frames   median     max   own time, median     max\n");
    for (const Figures& figures : session.figures) {
        const auto [wall, longest] = medianAndMax(figures.frames, &Turn::wall);
        const auto [cpu, maxCpu] = medianAndMax(figures.frames, &Turn::cpu);
        std::printf("%-34s %7zu %8.1f %7.1f %18.1f %7.1f\n", std::string(figures.name).c_str(),
                    figures.frames.size(), wall, longest, cpu, maxCpu);
        isQuick = isQuick && (figures.isOnce || maxCpu <= maxFrame);
    }
    std::printf("\nrows with a view at once: %d; peak memory %.0f MiB\n", session.delegates, peakMemory());
    std::printf(isQuick ? "quick enough\n" : "NOT quick enough\n");
    return isQuick;
}

Options parse(const std::vector<std::string>& arguments) {
    Options options;
    for (std::size_t i = 1; i < arguments.size(); ++i) {
        if (arguments[i] == "--runs")
            options.runs = numberAt(arguments, ++i);
        else if (arguments[i] == "--findings")
            options.findings = numberAt(arguments, ++i);
        else if (arguments[i] == childFlag)
            options.isChild = true;
        else
            failWith("usage: ulvak_window_frames [--runs N] [--findings N]");
    }
    return options;
}

int measure(int argc, char** argv, const Options& options) {
    std::string folder = (fs::temp_directory_path() / "ulvak-window-XXXXXX").string();
    if (::mkdtemp(folder.data()) == nullptr)
        failWith("no temporary folder");
    // The default screen without a display is smaller than the window.
    const std::string screen = folder + "/screen.json";
    std::ofstream(screen) << R"({"screens": [{"name": "desk", "width": 1920, "height": 1080}]})";
    for (const auto& [name, value] : {std::pair<const char*, std::string>("HOME", folder),
                                      {"TMPDIR", folder},
                                      {"XDG_DATA_HOME", folder + "/data"},
                                      {"QT_NO_GLIB", "1"},
                                      {"QT_QPA_PLATFORM", "offscreen:configfile=" + screen},
                                      {"QT_QUICK_BACKEND", "software"}})
        ::setenv(name, value.c_str(), 1);  // NOLINT(concurrency-mt-unsafe): no thread has begun
    std::vector<double> firstFrames;
    for (std::size_t run = 0; run < options.runs; ++run)
        firstFrames.push_back(timeToFirstFrame("/proc/self/exe"));
    Application application(argc, argv);
    QLocale::setDefault(QLocale(QLocale::Turkish, QLocale::Turkey));
    Session session;
    for (std::size_t run = 0; run < options.runs; ++run) {
        World world(application, options.findings, folder + "/verdicts" + std::to_string(run));
        world.scan();
        session.run(world);
        world.clearSelection();
    }
    const bool isQuick = report(session, std::move(firstFrames));
    fs::remove_all(folder);
    return isQuick ? 0 : 1;
}

int run(int argc, char** argv) {
    const Options options = parse({argv, argv + argc});
    if (!options.isChild)
        return measure(argc, argv, options);
    QGuiApplication application(argc, argv);
    QLocale::setDefault(QLocale(QLocale::Turkish, QLocale::Turkey));
    return showOneFrame(application);
}

}  // namespace
}  // namespace ulvak

int main(int argc, char* argv[]) {
    return ulvak::run(argc, argv);
}
