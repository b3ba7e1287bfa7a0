// Creates a tree to measure on; the same arguments always give the same tree.
//
//     ulvak_make_tree FOLDER [--files N] [--folders N] [--large N] [--shape spread|deep] [--seed N]
//
// FOLDER must not exist. `spread` fans out from many folders at the top, as a home does; `deep` has
// everything in the dependencies of one project, far below the third level.

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace {

enum class Shape { spread, deep };

struct Request {
    std::string root;
    std::size_t files = 400'000;
    std::size_t folders = 35'000;
    std::size_t largeFiles = 12;
    Shape shape = Shape::spread;
    std::uint64_t seed = 1;
};

struct Folder {
    std::string path;  ///< relative to the root; empty for the root itself
    std::size_t depth = 0;
    std::size_t files = 0;
    std::size_t largeFiles = 0;
};

/// Parents before children; the first is the root.
using Plan = std::vector<Folder>;

/// The standard's distributions may differ between libraries, but the engine may not: values derived from it
/// here give the same tree everywhere.
class Dice {
public:
    explicit Dice(std::uint64_t seed) : engine_(seed) {}

    std::size_t below(std::size_t bound) { return static_cast<std::size_t>(engine_() % bound); }
    bool chance(std::size_t percent) { return below(100) < percent; }
    /// In (0, 1].
    double fraction() { return (static_cast<double>(engine_() >> 11U) + 1.0) * 0x1p-53; }

private:
    std::mt19937_64 engine_;
};

std::string numbered(std::string_view stem, std::size_t number) {
    return std::string(stem).append("-").append(std::to_string(number));
}

std::size_t addFolder(Plan& plan, std::size_t parent, const std::string& name) {
    const Folder& above = plan[parent];
    plan.push_back({.path = above.path.empty() ? name : above.path + '/' + name, .depth = above.depth + 1});
    return plan.size() - 1;
}

Plan spreadFolders(const Request& request, Dice& dice) {
    constexpr std::array<std::string_view, 8> names = {"src",  "Resources", "2023",  "images",
                                                       "data", "lib",       "notes", "tr.lproj"};
    constexpr std::size_t topFolders = 40;
    constexpr std::size_t deepest = 14;
    Plan plan(1);
    while (plan.size() <= request.folders) {
        // A parent drawn from all folders gives a recursive tree: the older a folder, the bushier.
        std::size_t parent = plan.size() <= topFolders ? 0 : 1 + dice.below(plan.size() - 1);
        if (plan[parent].depth >= deepest)
            parent = 1 + dice.below(topFolders);
        const std::string name = numbered(names[dice.below(names.size())], plan.size());
        addFolder(plan, parent, parent == 0 && dice.chance(40) ? "." + name : name);
    }
    return plan;
}

Plan deepFolders(const Request& request, Dice& dice) {
    constexpr std::size_t deepest = 24;
    Plan plan(1);
    std::size_t packages = 0;  // the project's "node_modules" folder
    for (const char* name : {"work", "app", "node_modules"})
        packages = addFolder(plan, packages, name);
    while (plan.size() <= request.folders) {
        std::size_t package = addFolder(plan, packages, numbered("package", plan.size()));
        const std::size_t parts = 1 + dice.below(9);
        for (std::size_t part = 0; part < parts && plan.size() <= request.folders; ++part) {
            const bool nests = dice.chance(20) && plan[package].depth + 2 <= deepest;
            if (nests && plan.size() + 2 <= request.folders + 1)
                package = addFolder(plan, addFolder(plan, package, numbered("node_modules", plan.size())),
                                    numbered("nested", plan.size()));
            else
                addFolder(plan, dice.chance(30) ? plan.size() - 1 : package, numbered("lib", plan.size()));
        }
    }
    return plan;
}

/// Most folders hold a handful of files, a few hold hundreds.
void spreadFiles(Plan& plan, std::size_t files, Dice& dice) {
    std::vector<double> weights(plan.size());
    double sum = 0;
    for (double& weight : weights)
        sum += weight = std::min(std::pow(dice.fraction(), -0.7), 60.0);
    std::size_t given = 0;
    double reached = 0;
    for (std::size_t index = 0; index < plan.size(); ++index) {
        reached += weights[index] / sum * static_cast<double>(files);
        const bool isLast = index + 1 == plan.size();
        const std::size_t target = isLast ? files : std::min(files, static_cast<std::size_t>(reached));
        plan[index].files = target - given;
        given = target;
    }
}

/// Large files are taken from the files already planned, so that the file count stays as requested.
void addLargeFiles(Plan& plan, std::size_t largeFiles, Dice& dice) {
    for (std::size_t placed = 0; placed < largeFiles;) {
        Folder& folder = plan[dice.below(plan.size())];
        if (folder.largeFiles >= folder.files)
            continue;
        ++folder.largeFiles;
        ++placed;
    }
}

Plan planTree(const Request& request) {
    Dice dice(request.seed);
    Plan plan = request.shape == Shape::spread ? spreadFolders(request, dice) : deepFolders(request, dice);
    spreadFiles(plan, request.files, dice);
    addLargeFiles(plan, std::min(request.largeFiles, request.files), dice);
    return plan;
}

[[noreturn]] void failWith(const std::string& path) {
    std::fprintf(stderr, "%s: %s\n", path.c_str(), std::strerror(errno));
    std::exit(1);
}

/// Allocates a file's blocks without writing them; if the file system cannot, writes one byte.
bool occupy(int file, off_t bytes) {
    if (bytes == 0 || ::fallocate(file, 0, 0, bytes) == 0)
        return true;
    return ::pwrite(file, "", 1, bytes - 1) == 1;
}

off_t sizeOf(const Folder& folder, std::size_t index) {
    constexpr off_t megabyte = 1'000'000;
    if (index < folder.largeFiles)
        return (60 + static_cast<off_t>((index + folder.path.size()) % 20)) * megabyte;
    return index % 4 == 0 ? 1 : 0;
}

void fillFolder(int root, const Folder& folder) {
    const char* path = folder.path.empty() ? "." : folder.path.c_str();
    const int directory = ::openat(root, path, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (directory < 0)
        failWith(folder.path);
    for (std::size_t index = 0; index < folder.files; ++index) {
        const std::string name = numbered("file", index) + (index % 3 == 0 ? ".js" : ".txt");
        const int file = ::openat(directory, name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
        if (file < 0 || !occupy(file, sizeOf(folder, index)))
            failWith(folder.path + '/' + name);
        ::close(file);
    }
    ::close(directory);
}

void makeTree(const std::string& rootPath, const Plan& plan) {
    if (::mkdir(rootPath.c_str(), 0755) != 0)
        failWith(rootPath);
    const int root = ::open(rootPath.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (root < 0)
        failWith(rootPath);
    for (const Folder& folder : plan) {
        if (!folder.path.empty() && ::mkdirat(root, folder.path.c_str(), 0755) != 0)
            failWith(folder.path);
    }
    {
        std::atomic<std::size_t> next = 0;
        std::vector<std::jthread> threads;
        for (unsigned count = std::clamp(std::thread::hardware_concurrency(), 1U, 8U); count > 0; --count) {
            threads.emplace_back([&] {
                for (std::size_t index = next++; index < plan.size(); index = next++)
                    fillFolder(root, plan[index]);
            });
        }
    }
    // Otherwise pending writes would happen during the measurement.
    ::syncfs(root);
    ::close(root);
}

std::optional<std::uint64_t> number(const std::string& text) {
    char* end = nullptr;
    const std::uint64_t value = std::strtoull(text.c_str(), &end, 10);
    if (text.empty() || text.front() == '-' || *end != '\0')
        return std::nullopt;
    return value;
}

bool setOption(Request& request, const std::string& name, const std::string& value) {
    if (name == "--shape") {
        request.shape = value == "deep" ? Shape::deep : Shape::spread;
        return value == "deep" || value == "spread";
    }
    const auto count = number(value);
    if (!count)
        return false;
    if (name == "--files")
        request.files = *count;
    else if (name == "--folders")
        request.folders = *count;
    else if (name == "--large")
        request.largeFiles = *count;
    else if (name == "--seed")
        request.seed = *count;
    else
        return false;
    return true;
}

std::optional<Request> parse(const std::vector<std::string>& arguments) {
    if (arguments.size() % 2 == 0)  // the folder, and pairs
        return std::nullopt;
    Request request{.root = arguments.front()};
    for (std::size_t index = 1; index < arguments.size(); index += 2) {
        if (!setOption(request, arguments[index], arguments[index + 1]))
            return std::nullopt;
    }
    return request;
}

}  // namespace

int main(int argc, char** argv) {
    const auto request = parse({argv + 1, argv + argc});
    if (!request) {
        std::fprintf(
            stderr,
            "usage: %s FOLDER [--files N] [--folders N] [--large N] [--shape spread|deep] [--seed N]\n",
            argv[0]);
        return 2;
    }
    makeTree(request->root, planTree(*request));
    return 0;
}
