#include "survey/simulators.h"

#include <gtest/gtest.h>

namespace ulvak {
namespace {

TEST(Simulators, NoneWithoutDeveloperTools) {
    EXPECT_TRUE(Simulators::load().empty());
}

}  // namespace
}  // namespace ulvak
