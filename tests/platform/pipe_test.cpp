#include "platform/process.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>

#include "support/system.h"

namespace ulvak::platform {
namespace {

TEST(Pipe, CarriesBytesAndEndsWithItsWriter) {
    const std::size_t before = test::openHandles();
    auto ends = makePipe();
    ASSERT_TRUE(ends) << ends.error().message();
    ASSERT_EQ(::write(ends->write.get(), "abc", 3), 3);
    std::array<char, 8> buffer{};
    EXPECT_EQ(::read(ends->read.get(), buffer.data(), buffer.size()), 3);
    EXPECT_EQ(buffer[2], 'c');
    ends->write.close();
    EXPECT_EQ(::read(ends->read.get(), buffer.data(), buffer.size()), 0);
    ends->read.close();
    EXPECT_EQ(test::openHandles(), before);
}

TEST(Pipe, IsNotInheritedAndItsReaderWaits) {
    const auto ends = makePipe();
    ASSERT_TRUE(ends) << ends.error().message();
    for (const int end : {ends->read.get(), ends->write.get()}) {
        EXPECT_NE(::fcntl(end, F_GETFD) & FD_CLOEXEC, 0);
        EXPECT_EQ(::fcntl(end, F_GETFL) & O_NONBLOCK, 0);
    }
}

}  // namespace
}  // namespace ulvak::platform
