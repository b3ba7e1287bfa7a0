#include "app/standard_streams.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <string>
#include <thread>

#include "support/isolation.h"

namespace ulvak {
namespace {

TEST(StandardStreams, NonBlockingPipeGetsEverything) {
    test::inChild([] {
        std::array<int, 2> ends{};
        ASSERT_EQ(::pipe2(ends.data(), O_NONBLOCK), 0);
        ASSERT_EQ(::dup2(ends[1], STDOUT_FILENO), STDOUT_FILENO);
        ::close(ends[1]);
        const std::string text(1'000'000, 'x');
        std::size_t received = 0;
        std::jthread reader([&] {
            std::array<char, 4096> buffer{};
            ::fcntl(ends[0], F_SETFL, 0);
            while (received < text.size()) {
                const ssize_t count = ::read(ends[0], buffer.data(), buffer.size());
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
