// Uses the application repeatedly, as a user would, and watches its resource usage. Run by scripts/soak, in a
// home made by scripts/demo-home --macos:
//
//     ulvak_soak ROUNDS
//
// Each round scans, labels, resets a label, moves two findings to the Trash, deletes one permanently, empties
// the Trash, and restores what was removed. From the tenth round on, memory, descriptors and threads must not
// grow.

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <expected>
#include <filesystem>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include <qcoro/qcorotask.h>

#include "app/app_model.h"
#include "app/app_services.h"
#include "clean/cleaner.h"
#include "core/paths.h"

// From the address sanitizer, whose headers do not come with every compiler that supports it.
// NOLINTNEXTLINE(clang-diagnostic-*, readability-identifier-naming): its own name
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();

namespace ulvak {
namespace {

namespace fs = std::filesystem;

constexpr int settledRound = 10;
constexpr off_t baitBytes = 400'000'000;
constexpr std::size_t memorySlack =
    64UZ * 1024;  // bytes: a container may grow its capacity while its contents stay the same size

[[noreturn]] void failWith(const std::string& what) {
    std::fprintf(stderr, "soak: %s\n", what.c_str());
    std::exit(1);  // NOLINT(concurrency-mt-unsafe): ends everything still running
}

/// The process's resource usage.
struct Held {
    std::size_t memory = 0;  // bytes
    int descriptors = 0;
    int threads = 0;
};

int entriesOf(const char* folder) {
    DIR* entries = ::opendir(folder);
    if (entries == nullptr)
        failWith(std::string("cannot read ") + folder);
    int count = 0;
    while (::readdir(entries) != nullptr)  // NOLINT(concurrency-mt-unsafe): a stream of our own
        ++count;
    ::closedir(entries);
    return count - 2;  // "." and ".."
}

Held held() {
    return {.memory = __sanitizer_get_current_allocated_bytes(),
            .descriptors = entriesOf("/proc/self/fd"),
            .threads = entriesOf("/proc/self/task")};
}

/// The Trash is emptied permanently: accept only a home made for the purpose.
void refuseAnotherHome(const UserFolders& folders) {
    const std::string& home = folders.home;
    if (!Paths::isWithin(folders.trash, home) || !fs::is_directory(home + "/.tmp/T"))
        failWith("only in a home made by scripts/demo-home, with its Trash in it; run scripts/soak");
}

/// A finding that is recreated after each round.
struct Bait {
    std::string path;
    SafetyLevel level;
};

std::vector<Bait> baits(const std::string& home) {
    return {{.path = home + "/Library/Caches/org.example.bir", .level = SafetyLevel::regenerable},
            {.path = home + "/Library/Caches/org.example.iki", .level = SafetyLevel::regenerable},
            {.path = home + "/Library/Caches/org.example.üç", .level = SafetyLevel::regenerable}};
}

void putBack(const Bait& bait) {
    fs::create_directories(bait.path);
    const std::string file = bait.path + "/veri";
    const int descriptor = ::open(file.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    if (descriptor < 0 || ::posix_fallocate(descriptor, 0, baitBytes) != 0)
        failWith("cannot put back " + bait.path);
    ::close(descriptor);
}

void waitFor(AppModel& app, const std::function<bool()>& holds) {
    while (!holds())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    if (const auto& alert = app.alert())
        failWith(alert->title + ": " + alert->message);
}

void expect(bool holds, std::string_view what) {
    if (!holds)
        failWith(std::string(what));
}

QCoro::Task<> cleanAndEmpty(AppModel& app, bool& isDone) {
    // GCC 12 does not support braced initialisers in an awaited expression.
    const auto all = baits(app.folders().home);
    std::vector<std::string> moved = {all[0].path, all[1].path};
    std::vector<std::string> removed = {all[2].path};
    co_await app.clean(std::move(moved), CleanMode::trash);
    co_await app.clean(std::move(removed), CleanMode::permanent);
    co_await app.emptyTrash();
    // The home's Trash held something before.
    if (const auto question = app.trashQuestion())
        co_await app.emptyTrashAsAsked(question->id);
    isDone = true;
}

void playRound(AppModel& app) {
    for (const Bait& bait : baits(app.folders().home))
        putBack(bait);
    app.scan();
    waitFor(app, [&] { return app.phase() == AppModel::Phase::done; });

    const auto all = baits(app.folders().home);
    for (const Bait& bait : all)
        expect(app.finding(bait.path) && app.finding(bait.path)->level == bait.level, "a bait is not found");
    app.setLevel(SafetyLevel::keep, all[0].path);
    expect(app.finding(all[0].path)->level == SafetyLevel::keep, "a label is not kept");
    app.resetVerdict(all[0].path);

    bool isCleaned = false;
    cleanAndEmpty(app, isCleaned);
    waitFor(app, [&] { return isCleaned; });
    for (const Bait& bait : all) {
        expect(!fs::exists(bait.path), "a bait is still there");
        expect(app.finding(bait.path) == nullptr, "what has gone is still listed");
    }
    expect(app.trashedBytes() == 0, "the Trash is not empty");
}

/// Whether nothing grew after the settled round, not even temporarily.
bool isFlat(const std::vector<Held>& rounds) {
    const std::span<const Held> settled = std::span(rounds).subspan(settledRound - 1);
    bool isGood = true;
    const auto judge = [&](const char* what, auto member, std::size_t slack) {
        const auto first = static_cast<std::size_t>(settled.front().*member);
        const auto most = static_cast<std::size_t>(std::ranges::max(settled, {}, member).*member);
        const auto last = static_cast<std::size_t>(settled.back().*member);
        const bool grew = most > first + slack;
        std::printf("%s: %zu after round %d, at most %zu from then on, %zu after the last%s\n", what, first,
                    settledRound, most, last, grew ? ": GROWN" : "");
        isGood = isGood && !grew;
    };
    judge("memory, bytes", &Held::memory, memorySlack);
    judge("descriptors", &Held::descriptors, 0);
    judge("threads", &Held::threads, 0);
    return isGood;
}

/// The system's services, but nothing is shown and no other program is started: the desktop's would empty
/// every Trash it knows of.
AppServices servicesWithin(const UserFolders& folders) {
    static const Cleaner::Services alone = [] {
        Cleaner::Services services = Cleaner::Services::system();
        services.run = [](const auto&, const auto&) {
            return std::unexpected(std::make_error_code(std::errc::operation_not_permitted));
        };
        services.runUntil = [](const auto&, const auto&, const auto&) {
            return std::unexpected(std::make_error_code(std::errc::operation_not_permitted));
        };
        return services;
    }();
    const auto cleaner = std::make_shared<const Cleaner>(folders, alone);
    AppServices services = AppServices::system(folders);
    services.clean = [cleaner](const Finding& finding, CleanMode mode, CleanRun& run) {
        return cleaner->clean(finding, mode, run);
    };
    services.emptyTrash = [cleaner](const Cleaner::TrashContents& asked, const std::stop_token& stop) {
        return cleaner->emptyTrash(asked, stop);
    };
    services.emptyTrashByDesktop = [cleaner](const Cleaner::TrashContents& asked,
                                             const std::stop_token& stop) {
        return cleaner->emptyTrashByDesktop(asked, stop);
    };
    services.reveal = [](std::span<const std::string>) { return true; };
    services.openUrl = [](std::string_view) {};
    return services;
}

int run(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    const int rounds = argc > 1 ? std::atoi(argv[1]) : 0;
    if (rounds < settledRound + 1)
        failWith("at least " + std::to_string(settledRound + 1) + " rounds are needed");
    const UserFolders folders = UserFolders::ofCurrentUser();
    refuseAnotherHome(folders);
    AppModel app(servicesWithin(folders), VerdictStore::defaultPath(folders));
    std::vector<Held> history;
    history.reserve(static_cast<std::size_t>(rounds));  // so that its own growth is not measured
    for (int round = 1; round <= rounds; ++round) {
        playRound(app);
        // What is written in the background has been written by the end of the next round.
        QCoreApplication::processEvents();
        history.push_back(held());
        const Held& now = history.back();
        std::printf("round %d: %zu bytes, %d descriptors, %d threads, %zu findings\n", round, now.memory,
                    now.descriptors, now.threads, app.findings().size());
        std::fflush(stdout);
    }
    return isFlat(history) ? 0 : 1;
}

}  // namespace
}  // namespace ulvak

int main(int argc, char* argv[]) {
    return ulvak::run(argc, argv);
}
