#include "core/checked_add.h"

#include <gtest/gtest.h>

#include <limits>

namespace ulvak {
namespace {

constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();

TEST(AddChecked, AddsUpToTheLastNumber) {
    std::int64_t count = most - 5;
    addChecked(count, 5);
    EXPECT_EQ(count, most);
    std::atomic<std::int64_t> shared = most - 5;
    addChecked(shared, 5);
    EXPECT_EQ(shared, most);
}

TEST(AddCheckedDeathTest, EndsTheProgramBeforeASumThatIsNone) {
    std::int64_t count = most;
    EXPECT_DEATH(addChecked(count, 1), "");
    std::atomic<std::int64_t> shared = most;
    EXPECT_DEATH(addChecked(shared, 1), "");
}

}  // namespace
}  // namespace ulvak
