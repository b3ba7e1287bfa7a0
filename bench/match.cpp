// How long it takes to find the rules for a made-up home: by the common rules alone, and by all of this
// system.
//
//   ulvak_match [FILES]
//
// As in a scan, what lies in the folders was noted by the walk: nothing that is evidence.

#include <chrono>
#include <cstdlib>
#include <iostream>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "classify/analyzer.h"
#include "classify/folder_evidence.h"
#include "classify/rule_book.h"
#include "classify/rule_matcher.h"

namespace {

using Clock = std::chrono::steady_clock;

const ulvak::UserFolders user{.home = "/home/nobody-at-all", .temp = "/tmp", .cache = "/C", .trash = ""};

std::vector<std::string> paths(std::size_t count) {
    constexpr std::string_view tops[] = {".cache",        ".config",      ".local/share", "Belgeler",
                                         "Projeler/site", ".local/bin",   ".npm",         ".var/app/a.b",
                                         "Resimler",      "snap/x/common"};
    constexpr std::string_view names[] = {"node_modules", "src",     "Cache", "build",
                                          "2024",         "mozilla", "a",     "lib",
                                          "target",       "Steam",   "data",  "index-dir"};
    std::mt19937 random(7);
    std::vector<std::string> result;
    result.reserve(count);
    while (result.size() < count) {
        std::string path = user.home + "/" + std::string(tops[random() % std::size(tops)]);
        for (auto depth = random() % 6; depth > 0; --depth)
            path += "/" + std::string(names[random() % std::size(names)]);
        result.push_back(path + "/" + std::to_string(random() % 100000));
    }
    return result;
}

void measure(std::string_view what, const std::vector<ulvak::Rule>& rules,
             const std::vector<std::string>& items, bool areFolders) {
    const auto start = Clock::now();
    const ulvak::RuleMatcher matcher(rules, user);
    const ulvak::NotedNames names = ulvak::Analyzer::evidence(rules);
    const auto prepared = Clock::now();
    std::size_t matched = 0;
    for (const std::string& item : items) {
        ulvak::FolderEvidence inside(item, {.names = &names, .seen = {}});
        ulvak::FolderEvidence around(std::string(ulvak::Paths::parent(item)), {.names = &names, .seen = {}});
        matched += static_cast<std::size_t>(
            matcher.match(item, areFolders, ulvak::ScanContext::normal, inside, around) != nullptr);
    }
    const auto end = Clock::now();
    const auto ms = [](auto time) { return std::chrono::duration<double, std::milli>(time).count(); };
    std::cout << what << ", " << items.size() << (areFolders ? " folders: " : " files: ")
              << ms(end - prepared) << " ms, prepared in " << ms(prepared - start) << " ms, " << matched
              << " matched\n";
}

}  // namespace

int main(int argc, char* argv[]) {
    const std::size_t count = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 400'000;
    const auto start = Clock::now();
    std::cout << ulvak::RuleBook::all().size() << " rules built in "
              << std::chrono::duration<double, std::milli>(Clock::now() - start).count() << " ms\n";
    const std::vector<std::string> items = paths(count);
    for (const bool areFolders : {false, true}) {
        measure("common rules", ulvak::RuleBook::reference(), items, areFolders);
        measure("all rules", ulvak::RuleBook::all(), items, areFolders);
    }
    return 0;
}
