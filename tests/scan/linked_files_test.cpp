#include "scan/linked_files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <utility>
#include <vector>

namespace ulvak {
namespace {

LinkedFile name(std::uint64_t number, std::uint16_t names, std::int64_t size = 100,
                std::uint32_t volume = 1) {
    return {.number = number, .size = size, .volume = volume, .names = names, .seen = 1};
}

TEST(LinkedFiles, HoldNothingAtFirst) {
    LinkedFiles files;
    EXPECT_TRUE(files.isEmpty());
    EXPECT_EQ(files.bytes(), 0);
    LinkedFiles none;
    EXPECT_EQ(files.absorb(none).repeated, 0);
}

TEST(LinkedFiles, AFileLeavesWithItsLastName) {
    LinkedFiles files;
    EXPECT_EQ(files.add(name(1, 3)).repeated, 0);
    EXPECT_EQ(files.add(name(1, 3)).repeated, 100);
    EXPECT_EQ(files.bytes(), 100);
    const LinkedFiles::Effect last = files.add(name(1, 3));
    EXPECT_EQ(last.repeated, 100);
    EXPECT_EQ(last.completed, 100);
    EXPECT_TRUE(files.isEmpty());
    EXPECT_EQ(files.bytes(), 0);
}

TEST(LinkedFiles, OneNumberOnTwoVolumesIsTwoFiles) {
    LinkedFiles files;
    files.add(name(1, 2, 100, 1));
    EXPECT_EQ(files.add(name(1, 2, 100, 2)).repeated, 0);
    EXPECT_EQ(files.size(), 2U);
}

TEST(LinkedFiles, AFileThatGrewMeanwhileCountsWithItsLargerSize) {
    for (const auto& [first, second] : {std::pair(100, 140), std::pair(140, 100)}) {
        LinkedFiles files;
        files.add(name(1, 3, first));
        EXPECT_EQ(files.add(name(1, 3, second)).repeated, 100) << "100 + 140 - 100 is 140";
        EXPECT_EQ(files.bytes(), 140);
    }
}

TEST(LinkedFiles, AFileWithMoreNamesThanAreCountedStaysAndCountsOnce) {
    constexpr std::uint16_t most = LinkedFile::maxNames;
    LinkedFiles files;
    files.add(name(1, most));
    for (int i = 0; i < 70'000; ++i)
        ASSERT_EQ(files.add(name(1, most)).repeated, 100);
    EXPECT_EQ(files.bytes(), 100);
    LinkedFiles others;
    others.add(name(1, most));
    EXPECT_EQ(others.absorb(files).repeated, 100);
    EXPECT_EQ(others.bytes(), 100);
}

/// Names are distributed over collections and the collections merged in random order; the result matches a
/// map of all names.
TEST(LinkedFiles, AreTheSameWhateverTheOrder) {
    std::mt19937 random(7);
    const auto number = [&](int from, int to) { return std::uniform_int_distribution(from, to)(random); };
    for (int round = 0; round < 300; ++round) {
        std::vector<LinkedFiles> places(static_cast<std::size_t>(number(1, 20)));
        std::map<std::uint64_t, std::pair<int, int>> truth;  // names on the disk, names seen
        std::vector<std::uint64_t> names;
        for (int i = number(0, 200); i > 0; --i) {
            // Consecutive numbers, and some that collide in one slot.
            const std::uint64_t file = static_cast<std::uint64_t>(i) << (i % 3 == 0 ? 32 : 0);
            const int here = number(1, 5);
            truth[file] = {std::max(here + number(-1, 1), 2), here};
            names.insert(names.end(), static_cast<std::size_t>(here), file);
        }
        for (auto& [file, counts] : truth)
            counts.first = std::max(counts.first, counts.second);
        std::ranges::shuffle(names, random);
        std::int64_t size = 0;
        std::int64_t completed = 0;
        const auto count = [&](const LinkedFiles::Effect& effect) {
            size -= effect.repeated;
            completed += effect.completed;
        };
        for (const std::uint64_t file : names) {
            const auto place = static_cast<std::size_t>(number(0, static_cast<int>(places.size()) - 1));
            size += 100;
            count(places[place].add(name(file, static_cast<std::uint16_t>(truth[file].first))));
        }
        while (places.size() > 1) {
            std::ranges::shuffle(places, random);
            count(places.front().absorb(places.back()));
            ASSERT_TRUE(places.back().isEmpty());
            ASSERT_EQ(places.back().bytes(), 0);
            places.pop_back();
        }
        const auto isOutside = [](const auto& entry) { return entry.second.second < entry.second.first; };
        const std::int64_t held = 100 * std::ranges::count_if(truth, isOutside);
        ASSERT_EQ(size, 100 * std::ssize(truth)) << round;
        ASSERT_EQ(places.front().bytes(), held) << round;
        ASSERT_EQ(static_cast<std::int64_t>(places.front().size()) * 100, held);
        ASSERT_EQ(completed, size - held) << round;
    }
}

}  // namespace
}  // namespace ulvak
