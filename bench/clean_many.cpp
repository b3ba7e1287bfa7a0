// Measures how fast a selection moves to the Trash and how long the window blocks meanwhile: real folders
// with one file each, cleaned by the application while they are shown in a list.
//
//     ulvak_clean_many FOLDER [--findings M] [--clean N] [--permanent]
//
// FOLDER must not exist, and should not be on a memory file system. It becomes a home with M findings in one
// list, in random order; N of them, chosen at random, exist on disk, are selected and cleaned. With
// --permanent they are permanently removed instead, one after the other.

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "app/app_model.h"
#include "made_up.h"
#include "turns.h"
#include "ui/window_model.h"

namespace ulvak {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr double maxTurn = 16;   // ms
constexpr double minRate = 500;  // findings a second

struct Options {
    fs::path folder;
    std::size_t findings = 20'000;
    std::size_t cleaned = 6'100;
    bool isPermanent = false;
};

std::vector<std::size_t> numbers(std::size_t count) {
    std::vector<std::size_t> all(count);
    for (std::size_t number = 0; number < count; ++number)
        all[number] = number;
    return all;
}

std::vector<Finding> makeFindings(const Options& options) {
    std::vector<Finding> findings;
    for (const std::size_t number : shuffled(numbers(options.findings), 1)) {
        Finding finding = madeUp(number, options.folder.string());
        finding.original.level = SafetyLevel::safe;
        resetVerdict(finding);
        findings.push_back(std::move(finding));
    }
    return findings;
}

/// The findings to clean, as folders on disk. All have the same name, as application folders often do.
std::vector<std::string> makeChosen(const Options& options, const std::vector<Finding>& findings) {
    std::vector<std::size_t> places = shuffled(numbers(findings.size()), 2);
    places.resize(options.cleaned);
    std::vector<std::string> chosen;
    for (const std::size_t place : places) {
        chosen.push_back(findings[place].id);
        fs::create_directories(chosen.back());
        std::ofstream(chosen.back() + "/veri") << "x";
    }
    return chosen;
}

/// Everything the window shows of it, without drawing.
class Shown {
public:
    explicit Shown(AppModel& app) : window_(app) { window_.setSidebar(SidebarItem{SafetyLevel::safe}); }
    void select(std::set<std::string> ids) { window_.list()->selection()->set(std::move(ids)); }

private:
    WindowModel window_;
};

AppServices servicesOver(std::vector<Finding> findings) {
    AppServices services = AppServices::system(UserFolders::ofCurrentUser());
    services.scan = [found = std::make_shared<std::vector<Finding>>(std::move(findings))](
                        ScanProgress&, const std::stop_token&) { return *found; };
    services.aiStatus = [](const std::stop_token&) { return AIStatus{.unavailable = "Kapalı."}; };
    return services;
}

struct Figures {
    double seconds = 0;
    Turn longest;
    std::size_t gone = 0;
    std::optional<AppModel::AlertInfo> alert;
};

template <typename Begin>
void runUntil(AppModel& app, void (AppModel::*told)(), const Begin& begin, const auto& isOver) {
    QEventLoop loop;
    const auto connection = QObject::connect(&app, told, &loop, [&] {
        if (isOver())
            loop.quit();
    });
    QTimer::singleShot(0, &app, begin);
    loop.exec();
    QObject::disconnect(connection);
}

Figures measure(TimedApplication<QCoreApplication>& application, const Options& options) {
    std::vector<Finding> findings = makeFindings(options);
    const std::vector<std::string> chosen = makeChosen(options, findings);
    AppModel app(servicesOver(std::move(findings)), (options.folder / "verdicts.json").string());
    Shown shown(app);
    runUntil(
        app, &AppModel::phaseChanged, [&] { app.scan(); },
        [&] { return app.phase() == AppModel::Phase::done; });
    const std::size_t before = app.findings().size();
    shown.select({chosen.begin(), chosen.end()});
    (void)application.takeLongest();
    const auto start = Clock::now();
    const CleanMode mode = options.isPermanent ? CleanMode::permanent : CleanMode::trash;
    runUntil(app, &AppModel::cleaningEnded, [&] { app.clean(chosen, mode); }, [] { return true; });
    return {.seconds = std::chrono::duration<double>(Clock::now() - start).count(),
            .longest = application.takeLongest(),
            .gone = before - app.findings().size(),
            .alert = app.alert()};
}

/// Prints the figures; returns whether they meet the limits.
bool report(const Options& options, const Figures& figures) {
    const double rate = static_cast<double>(figures.gone) / figures.seconds;
    std::printf("%zu of %zu findings in %.2f s: %.0f a second\n", figures.gone, options.findings,
                figures.seconds, rate);
    std::printf("longest turn of the event loop: %.1f ms, %.1f of its own\n", figures.longest.wall,
                figures.longest.cpu);
    if (figures.alert)
        failWith(figures.alert->title + ": " + figures.alert->message);
    if (figures.gone != options.cleaned)
        failWith("not all were cleaned");
    const bool isQuick = rate >= minRate && figures.longest.wall < maxTurn;
    std::printf(isQuick ? "quick enough\n" : "NOT quick enough: %.0f a second, and turns under %.0f ms\n",
                minRate, maxTurn);
    return isQuick;
}

Options parse(const std::vector<std::string>& arguments) {
    Options options;
    for (std::size_t i = 1; i < arguments.size(); ++i) {
        if (arguments[i] == "--findings")
            options.findings = numberAt(arguments, ++i);
        else if (arguments[i] == "--clean")
            options.cleaned = numberAt(arguments, ++i);
        else if (arguments[i] == "--permanent")
            options.isPermanent = true;
        else
            options.folder = fs::absolute(arguments[i]).lexically_normal();
    }
    if (options.folder.empty() || fs::exists(options.folder))
        failWith("a folder is needed that is not there yet");
    if (options.cleaned > options.findings)
        failWith("more to clean than there are");
    return options;
}

int run(int argc, char** argv) {
    const Options options = parse({argv, argv + argc});
    fs::create_directories(options.folder);
    // Qt's own dispatcher reports the end of a turn; GLib's does not.
    for (const auto& [name, value] :
         {std::pair<const char*, std::string>("HOME", options.folder.string()), {"QT_NO_GLIB", "1"}})
        ::setenv(name, value.c_str(), 1);  // NOLINT(concurrency-mt-unsafe): no thread has begun
    ::unsetenv("XDG_DATA_HOME");           // NOLINT(concurrency-mt-unsafe)
    TimedApplication<QCoreApplication> application(argc, argv);
    const bool isQuick = report(options, measure(application, options));
    fs::remove_all(options.folder);
    return isQuick ? 0 : 1;
}

}  // namespace
}  // namespace ulvak

int main(int argc, char* argv[]) {
    return ulvak::run(argc, argv);
}
