// Measures whole processes over the same trees, alternating, and prints how the scan and the removal compare.
//
//     ulvak_compare --dir FOLDER [--files N] [--folders N] [--runs N] [--only NAME]... [--large] [--cold]
//
// Ratios are taken pairwise within each round, so that a slow minute of the machine affects both sides. The
// trees stay in FOLDER for the next run.

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

namespace {

namespace fs = std::filesystem;

constexpr double maxOfDu = 0.55;
constexpr double maxOfGdu = 0.45;
constexpr double maxOfFloor = 1.10;
constexpr double maxOfDuCold = 0.35;
constexpr double maxOfOthersCold = 0.45;
constexpr double maxOfDuInOneFolder = 0.60;
constexpr double maxOfRm = 0.65;
constexpr double maxMemory = 48;  // MiB
constexpr double maxMemoryGrowth = 1.10;
constexpr double maxEmptyHome = 60;  // ms
constexpr double maxOtherLoad = 5;   // percent
constexpr std::size_t emptyHomeRuns = 21;
constexpr std::size_t largeRuns = 3;
constexpr std::size_t largeFactor = 5;
constexpr std::size_t filesInOneFolder = 600'000;
constexpr std::size_t removalShare = 4;  // a quarter of the scanned files and folders is removed

struct Options {
    fs::path programs;  ///< the folder of the benchmark's own programs
    fs::path ulvak;
    fs::path dir;
    std::size_t files = 400'000;
    std::size_t folders = 35'000;
    std::size_t runs = 9;
    std::vector<std::string> only;  ///< empty: everything but "large" and "cold"
};

/// One process from start to exit.
struct Run {
    double wall = 0;    // ms
    double cpu = 0;     // ms
    double memory = 0;  // MiB
};

struct Program {
    std::string name;
    std::vector<std::string> command;
    std::vector<std::string> environment;
    std::function<void()> prepare;  ///< runs before each measured run, not timed; may be empty
};

/// The runs of one program, one per round.
using Runs = std::vector<Run>;

[[noreturn]] void failWith(const std::string& what) {
    std::fprintf(stderr, "compare: %s\n", what.c_str());
    std::exit(1);
}

double milliseconds(const timeval& time) {
    return static_cast<double>(time.tv_sec) * 1000 + static_cast<double>(time.tv_usec) / 1000;
}

std::vector<char*> pointers(std::vector<std::string>& texts) {
    std::vector<char*> result;
    result.reserve(texts.size() + 1);
    for (std::string& text : texts)
        result.push_back(text.data());
    result.push_back(nullptr);
    return result;
}

pid_t spawn(const Program& program) {
    std::vector<std::string> arguments = program.command;
    std::vector<std::string> environment = program.environment;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    pid_t child = 0;
    const int error = ::posix_spawn(&child, arguments[0].c_str(), &actions, nullptr,
                                    pointers(arguments).data(), pointers(environment).data());
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0)
        failWith(arguments[0] + ": " + std::strerror(error));
    return child;
}

/// The peak memory reported for a process includes what this one held at the spawn: a few MiB, less than any
/// measured program needs.
Run measure(const Program& program) {
    if (program.prepare)
        program.prepare();
    const auto start = std::chrono::steady_clock::now();
    const pid_t child = spawn(program);
    int status = 0;
    rusage usage{};
    while (::wait4(child, &status, 0, &usage) < 0) {
        if (errno != EINTR)
            failWith("wait4: " + std::string(std::strerror(errno)));
    }
    const std::chrono::duration<double, std::milli> wall = std::chrono::steady_clock::now() - start;
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0)
        failWith(program.name + " did not succeed");
    return {.wall = wall.count(),
            .cpu = milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime),
            .memory = static_cast<double>(usage.ru_maxrss) / 1024};
}

/// CPU time of all processes so far, in ms, including the kernel.
double machineTime() {
    std::ifstream file("/proc/stat");
    std::string label;
    std::array<double, 8> ticks = {};  // user, nice, system, idle, iowait, irq, softirq, steal
    file >> label;
    for (double& value : ticks)
        file >> value;
    const double busy = ticks[0] + ticks[1] + ticks[2] + ticks[5] + ticks[6] + ticks[7];
    return busy * 1000 / static_cast<double>(::sysconf(_SC_CLK_TCK));
}

/// Measures how much CPU other processes use while this lives. More than a little invalidates the comparison.
class OtherLoad {
public:
    /// Percent of all cores, excluding the runs in `results`.
    [[nodiscard]] double percent(const std::vector<Runs>& results) const {
        const std::chrono::duration<double, std::milli> wall = std::chrono::steady_clock::now() - start_;
        double own = 0;
        for (const Runs& runs : results) {
            for (const Run& run : runs)
                own += run.cpu;
        }
        const double others = machineTime() - busyAtStart_ - own;
        return std::max(0.0, 100 * others / (wall.count() * std::thread::hardware_concurrency()));
    }

private:
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
    double busyAtStart_ = machineTime();
};

/// One warm-up round, then `rounds` measured ones. Each round starts with a different program, so that none
/// always runs after the same one.
std::vector<Runs> measureInTurn(const std::vector<Program>& programs, std::size_t rounds) {
    std::vector<Runs> results(programs.size());
    for (const Program& program : programs)
        measure(program);
    const OtherLoad others;
    for (std::size_t round = 0; round < rounds; ++round) {
        for (std::size_t step = 0; step < programs.size(); ++step) {
            const std::size_t index = (round + step) % programs.size();
            results[index].push_back(measure(programs[index]));
        }
    }
    // Preparation between runs would count as load.
    const bool isTold =
        std::ranges::none_of(programs, [](const Program& program) { return !!program.prepare; });
    if (const double percent = others.percent(results); isTold && percent > maxOtherLoad)
        std::printf("\nnote: other programs took %.0f %% of the cores during the next figures\n", percent);
    return results;
}

double median(std::vector<double> values) {
    std::ranges::sort(values);
    const std::size_t middle = values.size() / 2;
    return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

std::vector<double> column(const Runs& runs, double Run::* field) {
    std::vector<double> values;
    values.reserve(runs.size());
    for (const Run& run : runs)
        values.push_back(run.*field);
    return values;
}

/// The median, over the rounds, of `runs`' time relative to `others`' in the same round.
double wallRatio(const Runs& runs, const Runs& others) {
    std::vector<double> ratios;
    ratios.reserve(runs.size());
    for (std::size_t round = 0; round < runs.size(); ++round)
        ratios.push_back(runs[round].wall / others[round].wall);
    return median(std::move(ratios));
}

void printRuns(const std::string& name, const Runs& runs) {
    const std::vector<double> wall = column(runs, &Run::wall);
    std::printf("  %-6s %11.1f %11.1f %11.1f %11.1f\n", name.c_str(), median(wall), std::ranges::min(wall),
                median(column(runs, &Run::cpu)), std::ranges::max(column(runs, &Run::memory)));
}

void printTargetsHead() {
    std::printf("\n  %-34s %9s %9s\n", "", "measured", "at most");
}

void printTarget(const char* what, double measured, double most, const char* unit) {
    std::printf("  %-34s %9.2f %9.2f %-4s %s\n", what, measured, most, unit,
                measured <= most ? "ok" : "OVER");
}

/// The program's path; empty if it is not installed.
std::string installed(const std::string& name) {
    for (const char* folder : {"/usr/bin/", "/bin/", "/usr/local/bin/"}) {
        if (::access((folder + name).c_str(), X_OK) == 0)
            return folder + name;
    }
    return {};
}

std::string findProgram(const std::string& name) {
    std::string path = installed(name);
    if (path.empty())
        failWith(name + " is not installed");
    return path;
}

/// Drops the kernel's page cache for all disks.
void dropCaches() {
    ::sync();
    std::ofstream file("/proc/sys/vm/drop_caches");
    if (!(file << "3\n" << std::flush))
        failWith("dropping the caches takes root");
}

std::vector<std::string> joined(std::vector<std::string> words, const std::vector<std::string>& more) {
    words.insert(words.end(), more.begin(), more.end());
    return words;
}

/// Trees that are created once. A note beside each records how it was made, or that it is unfinished; a
/// folder without a note belongs to somebody else and is not touched.
class Trees {
public:
    explicit Trees(const Options& options) : options_(options) { fs::create_directories(options.dir); }

    [[nodiscard]] fs::path make(const std::string& name, std::size_t files, std::size_t folders,
                                const std::string& shape, std::size_t seed) const {
        const std::vector<std::string> wanted = {
            "--files", std::to_string(files), "--folders", std::to_string(folders), "--shape", shape,
            "--seed",  std::to_string(seed)};
        fs::path tree = options_.dir / name;
        const fs::path note = noteOf(name);
        if (fs::exists(tree)) {
            if (!fs::exists(note))
                failWith(tree.string() + " is in the way");
            if (contents(note) == lines(wanted))
                return tree;
        }
        std::fprintf(stderr, "making %s: %zu files in %zu folders\n", tree.c_str(), files, folders);
        std::ofstream(note) << "not finished\n";
        fs::remove_all(tree);
        fs::create_directories(tree.parent_path());
        measure({.name = "ulvak_make_tree",
                 .command = joined({(options_.programs / "ulvak_make_tree").string(), tree.string()}, wanted),
                 .environment = {}});
        std::ofstream(note) << lines(wanted);
        return tree;
    }

    /// A tree to be removed; created anew for each run.
    void makeToRemove(const fs::path& tree, std::size_t files, std::size_t folders) const {
        measure({.name = "ulvak_make_tree",
                 .command = {(options_.programs / "ulvak_make_tree").string(), tree.string(), "--files",
                             std::to_string(files), "--folders", std::to_string(folders)},
                 .environment = {}});
    }

    /// An empty folder.
    [[nodiscard]] fs::path empty(const std::string& name) const {
        fs::path folder = options_.dir / name;
        fs::create_directories(folder);
        if (!fs::is_empty(folder))
            failWith(folder.string() + " is not empty");
        return folder;
    }

private:
    [[nodiscard]] fs::path noteOf(std::string name) const {
        std::ranges::replace(name, '/', '-');
        return options_.dir / (name + ".made");
    }

    static std::string lines(const std::vector<std::string>& words) {
        std::string text;
        for (const std::string& word : words)
            text += word + '\n';
        return text;
    }

    static std::string contents(const fs::path& path) {
        std::ifstream file(path);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    const Options& options_;
};

class Comparison {
public:
    explicit Comparison(const Options& options) : options_(options), trees_(options) {}

    void shape(const std::string& shape) const {
        const fs::path tree = trees_.make(shape + "-" + std::to_string(options_.files), options_.files,
                                          options_.folders, shape, 1);
        compare({.title = shape}, {tree.string()}, tree, dump(tree, noTemp()));
    }

    /// With cold caches: everything has to come from the disk.
    void cold() const {
        const fs::path tree = trees_.make("spread-" + std::to_string(options_.files), options_.files,
                                          options_.folders, "spread", 1);
        compare({.title = "cold", .ofDu = maxOfDuCold, .ofOthers = maxOfOthersCold, .prepare = dropCaches},
                {tree.string()}, tree, dump(tree, noTemp()));
    }

    /// A folder for one worker, unless several share it.
    void oneFolder() const {
        const fs::path tree = trees_.make("one-folder", filesInOneFolder, 1, "spread", 1);
        compare({.title = "one folder", .files = filesInOneFolder, .folders = 1, .ofDu = maxOfDuInOneFolder},
                {tree.string()}, tree, dump(tree, noTemp()));
    }

    /// The tree in three parts: the home, the temporary folder and the cache beside it. The other roots are
    /// absolute paths, with whatever this machine has there.
    void manyRoots() const {
        const std::string base = "roots-" + std::to_string(options_.files) + "/";
        const std::array<std::string, 3> names = {"home", "user/T", "user/C"};
        std::vector<std::string> parts;
        parts.reserve(names.size());
        for (const std::string& name : names)
            parts.push_back(trees_
                                .make(base + name, options_.files / names.size(),
                                      options_.folders / names.size(), "spread", 2 + parts.size())
                                .string());
        compare({.title = "many roots"}, parts, options_.dir / base, dump(parts[0], parts[1]));
    }

    void emptyHome() const {
        const Program program = dump(trees_.empty("empty/home"), noTemp());
        const Runs runs = measureInTurn({program}, emptyHomeRuns)[0];
        std::printf("\nempty home, %zu runs\n", emptyHomeRuns);
        printTargetsHead();
        printTarget("wall", median(column(runs, &Run::wall)), maxEmptyHome, "ms");
    }

    /// Permanent removal, as a finding with one item; the tree is created anew for every run.
    void removal() const {
        const std::size_t files = options_.files / removalShare;
        const std::size_t folders = options_.folders / removalShare;
        const fs::path home = trees_.empty("removal");
        const std::string tree = (home / "tree").string();
        const auto prepare = [&] { trees_.makeToRemove(tree, files, folders); };
        const std::vector<std::string> environment = {"HOME=" + home.string(), "TMPDIR=" + noTemp().string()};
        const std::vector<Program> programs = {
            {.name = "ulvak",
             .command = {(options_.programs / "ulvak_remove").string(), tree},
             .environment = environment,
             .prepare = prepare},
            {.name = "rm -rf",
             .command = {findProgram("rm"), "-rf", tree},
             .environment = environment,
             .prepare = prepare}};
        const std::vector<Runs> results = measureInTurn(programs, options_.runs);
        std::printf("\nremoval: %zu files in %zu folders, %zu runs each\n", files, folders, options_.runs);
        std::printf("  %-6s %11s %11s %11s %11s\n", "", "wall ms", "least ms", "cpu ms", "peak MiB");
        for (std::size_t index = 0; index < programs.size(); ++index)
            printRuns(programs[index].name, results[index]);
        printTargetsHead();
        printTarget("wall against rm -rf", wallRatio(results[0], results[1]), maxOfRm, "");
        std::fflush(stdout);
    }

    void large() const {
        const fs::path small = trees_.make("spread-" + std::to_string(options_.files), options_.files,
                                           options_.folders, "spread", 1);
        const std::size_t files = options_.files * largeFactor;
        const fs::path big = trees_.make("spread-" + std::to_string(files), files,
                                         options_.folders * largeFactor, "spread", 1);
        const std::vector<Runs> results =
            measureInTurn({dump(small, noTemp()), dump(big, noTemp())}, largeRuns);
        std::printf("\n%zu files against %zu, %zu runs\n", files, options_.files, largeRuns);
        std::printf("  %-6s %11s %11s %11s %11s\n", "", "wall ms", "least ms", "cpu ms", "peak MiB");
        printRuns("fewer", results[0]);
        printRuns("more", results[1]);
        printTargetsHead();
        printTarget("peak memory, more against fewer",
                    std::ranges::max(column(results[1], &Run::memory)) /
                        std::ranges::max(column(results[0], &Run::memory)),
                    maxMemoryGrowth, "");
    }

private:
    struct Case {
        std::string title;
        std::size_t files = 0;    ///< 0: as given by the options
        std::size_t folders = 0;  ///< likewise
        double ofDu = maxOfDu;
        double ofOthers = maxOfGdu;
        std::function<void()> prepare;
    };

    void compare(const Case& what, const std::vector<std::string>& parts, const fs::path& whole,
                 const Program& ulvak) const {
        const std::vector<std::string> plain = {"HOME=" + (options_.dir / "empty/home").string()};
        const std::string floor = (options_.programs / "ulvak_floor").string();
        std::vector<Program> programs = {
            ulvak,
            {.name = "floor", .command = joined({floor}, parts), .environment = plain},
            {.name = "du -s", .command = joined({findProgram("du"), "-s"}, parts), .environment = plain},
            {.name = "gdu -n", .command = {findProgram("gdu"), "-n", whole.string()}, .environment = plain}};
        // Not packaged in every Debian release.
        if (const std::string dust = installed("dust"); !dust.empty())
            programs.push_back({.name = "dust", .command = joined({dust}, parts), .environment = plain});
        for (Program& program : programs)
            program.prepare = what.prepare;
        const std::vector<Runs> results = measureInTurn(programs, options_.runs);

        std::printf("\n%s: %zu files in %zu folders, %zu runs each\n", what.title.c_str(),
                    what.files != 0 ? what.files : options_.files,
                    what.folders != 0 ? what.folders : options_.folders, options_.runs);
        std::printf("  %-6s %11s %11s %11s %11s\n", "", "wall ms", "least ms", "cpu ms", "peak MiB");
        for (std::size_t index = 0; index < programs.size(); ++index)
            printRuns(programs[index].name, results[index]);
        printTargetsHead();
        // With cold caches the disk sets the speed, and the floor means nothing.
        if (!what.prepare)
            printTarget("wall against the floor", wallRatio(results[0], results[1]), maxOfFloor, "");
        printTarget("wall against du -s", wallRatio(results[0], results[2]), what.ofDu, "");
        for (std::size_t index = 3; index < programs.size(); ++index)
            printTarget(("wall against " + programs[index].name).c_str(),
                        wallRatio(results[0], results[index]), what.ofOthers, "");
        printTarget("peak memory", std::ranges::max(column(results[0], &Run::memory)), maxMemory, "MiB");
        std::fflush(stdout);
    }

    /// The cache is the folder "C" beside `temp`.
    [[nodiscard]] Program dump(const fs::path& home, const fs::path& temp) const {
        return {.name = "ulvak",
                .command = {options_.ulvak.string(), "--dump"},
                .environment = {"HOME=" + home.string(), "TMPDIR=" + temp.string()}};
    }

    [[nodiscard]] fs::path noTemp() const { return trees_.empty("empty/T"); }

    const Options& options_;
    Trees trees_;
};

void noteOtherRoots() {
    for (const char* root :
         {"/Applications", "/Library", "/private/var/vm", "/opt/homebrew", "/Users/Shared"}) {
        if (::access(root, F_OK) == 0)
            std::printf("note: %s exists, and only ulvak scans it\n", root);
    }
}

std::size_t count(const std::string& name, const std::string& value) {
    char* end = nullptr;
    const std::size_t number = std::strtoull(value.c_str(), &end, 10);
    if (value.empty() || value.front() == '-' || *end != '\0' || number == 0)
        failWith(name + " takes a number above 0");
    return number;
}

void addOnly(Options& options, const std::string& name) {
    constexpr std::array<std::string_view, 8> known = {"spread",     "deep",    "one-folder", "many-roots",
                                                       "empty-home", "removal", "large",      "cold"};
    if (std::ranges::find(known, name) == known.end())
        failWith("--only takes spread, deep, one-folder, many-roots, empty-home, removal, large or cold");
    options.only.push_back(name);
}

void setOption(Options& options, const std::string& name, const std::string& value) {
    if (name == "--dir")
        options.dir = fs::absolute(value);
    else if (name == "--ulvak")
        options.ulvak = fs::absolute(value);
    else if (name == "--files")
        options.files = count(name, value);
    else if (name == "--folders")
        options.folders = count(name, value);
    else if (name == "--runs")
        options.runs = count(name, value);
    else if (name == "--only")
        addOnly(options, value);
    else
        failWith("unknown option " + name);
}

Options parse(const std::vector<std::string>& arguments) {
    Options options;
    options.programs = fs::read_symlink("/proc/self/exe").parent_path();
    options.ulvak = options.programs.parent_path() / "src/ulvak";
    std::vector<std::string> besides;
    for (std::size_t index = 0; index < arguments.size(); ++index) {
        if (arguments[index] == "--large" || arguments[index] == "--cold") {
            besides.push_back(arguments[index].substr(2));
            continue;
        }
        if (index + 1 == arguments.size())
            failWith(arguments[index] + " takes a value, or is unknown");
        setOption(options, arguments[index], arguments[index + 1]);
        ++index;
    }
    if (options.dir.empty())
        failWith("--dir is missing");
    if (options.only.empty())
        options.only = {"spread", "deep", "one-folder", "many-roots", "empty-home", "removal"};
    std::ranges::move(besides, std::back_inserter(options.only));
    return options;
}

void runAll(const Options& options) {
    const Comparison comparison(options);
    std::printf("%u cores\n", std::thread::hardware_concurrency());
    noteOtherRoots();
    for (const std::string& name : options.only) {
        if (name == "many-roots")
            comparison.manyRoots();
        else if (name == "empty-home")
            comparison.emptyHome();
        else if (name == "removal")
            comparison.removal();
        else if (name == "large")
            comparison.large();
        else if (name == "cold")
            comparison.cold();
        else if (name == "one-folder")
            comparison.oneFolder();
        else
            comparison.shape(name);
    }
}

}  // namespace

int main(int argc, char** argv) {
    try {
        runAll(parse({argv + 1, argv + argc}));
    } catch (const std::exception& error) {
        failWith(error.what());
    }
    return 0;
}
