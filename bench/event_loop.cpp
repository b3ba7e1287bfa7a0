// Measures how long the window would block: the longest turn of the event loop during a scan and when its
// findings arrive.
//
//     ulvak_event_loop TREE [--runs N] [--findings N]
//
// TREE is a folder made by ulvak_make_tree. It is scanned as a home; its findings are replaced by N made-up
// ones, in random order, for lists of all levels. Each run scans four times: into empty lists, over the same
// findings, with every other finding replaced by a new one, and with all in another order; then it gives a
// label.

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "app/app_model.h"
#include "made_up.h"
#include "platform/durable_file.h"
#include "turns.h"
#include "ui/finding_list_model.h"

namespace ulvak {
namespace {

namespace fs = std::filesystem;

constexpr double maxTurn = 16;  // ms
constexpr std::size_t rememberedVerdicts = 1000;

struct Options {
    std::string tree;
    std::size_t runs = 9;
    std::size_t findings = 5'000;
};

/// The application with one list per level, like a window.
class World {
public:
    World(const Options& options, const fs::path& folder)
        : tree_(options.tree), app_(services(), (folder / "verdicts.json").string()) {
        for (const SafetyLevel level : allSafetyLevels) {
            lists_.push_back(std::make_unique<FindingListModel>(all_));
            lists_.back()->setLevel(level);
        }
    }

    /// Scans the tree and delivers these findings.
    void scan(const std::vector<std::size_t>& numbers) {
        {
            const std::scoped_lock lock(next_->mutex);
            next_->numbers = numbers;
        }
        QEventLoop loop;
        const auto connection = QObject::connect(&app_, &AppModel::phaseChanged, &loop, [&] {
            if (app_.phase() == AppModel::Phase::done)
                loop.quit();
        });
        QTimer::singleShot(0, &app_, [this] { app_.scan(); });
        loop.exec();
        QObject::disconnect(connection);
        if (app_.findings().size() != numbers.size())
            failWith("the findings have not arrived");
    }
    [[nodiscard]] std::int64_t scannedFiles() const { return app_.scannedFiles(); }
    [[nodiscard]] double scanSeconds() const { return app_.scanDuration().value_or(0); }
    /// Labels a finding, like a user; all stored verdicts are serialised again.
    void label() {
        QEventLoop loop;
        QTimer::singleShot(0, &app_, [this, &loop] {
            app_.setLevel(SafetyLevel::keep, app_.findings().back()->id);
            loop.quit();
        });
        loop.exec();
    }

private:
    struct Next {
        std::mutex mutex;
        std::vector<std::size_t> numbers;  ///< guarded by `mutex`
    };

    AppServices services() {
        AppServices services = AppServices::system(UserFolders::ofCurrentUser());
        services.scan = [next = next_, tree = tree_, walk = services.scan](ScanProgress& progress,
                                                                           const std::stop_token& stop) {
            (void)walk(progress, stop);
            const std::scoped_lock lock(next->mutex);
            std::vector<Finding> findings;
            findings.reserve(next->numbers.size());
            for (const std::size_t number : next->numbers)
                findings.push_back(madeUp(number, tree));
            return findings;
        };
        return services;
    }

    std::string tree_;
    std::shared_ptr<Next> next_ = std::make_shared<Next>();
    AppModel app_;
    FindingsModel all_{app_};
    std::vector<std::unique_ptr<FindingListModel>> lists_;
};

struct Figures {
    std::string_view name;
    std::vector<Turn> turns;  ///< the longest of each run
};

void rememberVerdicts(const Options& options, const fs::path& folder) {
    const std::string path = (folder / "verdicts.json").string();
    VerdictEntries entries;
    for (std::size_t number = 0; number < rememberedVerdicts; ++number) {
        Finding finding = madeUp(number * 3, options.tree);
        relabel(finding, SafetyLevel::regenerable);
        entries.emplace(finding.id, VerdictEntry{.verdict = currentVerdict(finding), .size = finding.size});
    }
    const auto text = encodeEntries(entries);
    if (!text || platform::replaceFile(path, *text))
        failWith("cannot write the verdicts");
}

std::vector<Figures> measure(TimedApplication<QCoreApplication>& application, const Options& options,
                             const fs::path& folder) {
    std::vector<std::size_t> all(options.findings);
    std::vector<std::size_t> changed(options.findings);
    for (std::size_t i = 0; i < options.findings; ++i) {
        all[i] = i;
        changed[i] = i % 2 == 0 ? i : i + options.findings;
    }
    std::vector<Figures> figures = {{.name = "into empty lists"},
                                    {.name = "the same findings again"},
                                    {.name = "every other finding new"},
                                    {.name = "all in another order"},
                                    {.name = "a label"}};
    for (std::size_t run = 0; run < options.runs; ++run) {
        rememberVerdicts(options, folder);
        World world(options, folder);
        (void)application.takeLongest();
        const std::array orders = {shuffled(all, 1), shuffled(all, 1), shuffled(changed, 1),
                                   shuffled(changed, 2)};
        for (std::size_t i = 0; i < orders.size(); ++i) {
            world.scan(orders[i]);
            figures[i].turns.push_back(application.takeLongest());
        }
        world.label();
        figures.back().turns.push_back(application.takeLongest());
        std::fprintf(stderr, "run %zu of %zu: %lld files in %.2f s\n", run + 1, options.runs,
                     static_cast<long long>(world.scannedFiles()), world.scanSeconds());
    }
    return figures;
}

/// Prints the figures; returns whether every turn was short enough.
bool report(const std::vector<Figures>& figures) {
    bool isQuick = true;
    std::printf("longest turn of the event loop, ms      median     max   own time, median     max\n");
    for (const Figures& figure : figures) {
        const auto [wall, longest] = medianAndMax(figure.turns, &Turn::wall);
        const auto [cpu, maxCpu] = medianAndMax(figure.turns, &Turn::cpu);
        std::printf("%-38s %7.1f %7.1f %18.1f %7.1f\n", std::string(figure.name).c_str(), wall, longest, cpu,
                    maxCpu);
        isQuick = isQuick && longest < maxTurn;
    }
    std::printf(isQuick ? "all under %.0f ms\n" : "NOT all under %.0f ms\n", maxTurn);
    return isQuick;
}

Options parse(const std::vector<std::string>& arguments) {
    Options options;
    for (std::size_t i = 1; i < arguments.size(); ++i) {
        if (arguments[i] == "--runs")
            options.runs = numberAt(arguments, ++i);
        else if (arguments[i] == "--findings")
            options.findings = numberAt(arguments, ++i);
        else
            options.tree = fs::absolute(arguments[i]).lexically_normal().string();
    }
    if (!fs::is_directory(options.tree))
        failWith("a tree is needed; ulvak_make_tree makes one");
    return options;
}

int run(int argc, char** argv) {
    const Options options = parse({argv, argv + argc});
    std::string folder = (fs::temp_directory_path() / "ulvak-event-loop-XXXXXX").string();
    if (::mkdtemp(folder.data()) == nullptr)
        failWith("no temporary folder");
    const std::string temp = folder + "/T";
    fs::create_directory(temp);
    // Qt's own dispatcher reports the end of a turn; GLib's does not.
    for (const auto& [name, value] :
         {std::pair<const char*, std::string>("HOME", options.tree), {"TMPDIR", temp}, {"QT_NO_GLIB", "1"}})
        ::setenv(name, value.c_str(), 1);  // NOLINT(concurrency-mt-unsafe): no thread has begun
    TimedApplication<QCoreApplication> application(argc, argv);
    const bool isQuick = report(measure(application, options, folder));
    fs::remove_all(folder);
    return isQuick ? 0 : 1;
}

}  // namespace
}  // namespace ulvak

int main(int argc, char* argv[]) {
    return ulvak::run(argc, argv);
}
