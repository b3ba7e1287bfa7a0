#include "cli/standard_streams.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <string>
#include <thread>

#include "platform/process.h"
#include "support/isolation.h"

namespace ulvak {
namespace {

TEST(StandardStreams, NonBlockingPipeGetsEverything) {
    test::inChild([] {
        auto ends = platform::makePipe();
        ASSERT_TRUE(ends);
        ASSERT_EQ(::fcntl(ends->write.get(), F_SETFL, O_NONBLOCK), 0);
        ASSERT_EQ(::dup2(ends->write.get(), STDOUT_FILENO), STDOUT_FILENO);
        ends->write.close();
        const std::string text(1'000'000, 'x');
        std::size_t received = 0;
        std::jthread reader([&] {
            std::array<char, 4096> buffer{};
            while (received < text.size()) {
                const ssize_t count = ::read(ends->read.get(), buffer.data(), buffer.size());
                ASSERT_GT(count, 0);
                received += static_cast<std::size_t>(count);
            }
        });
        print(text);
        reader.join();
        EXPECT_EQ(received, text.size());
    });
}

}  // namespace
}  // namespace ulvak
