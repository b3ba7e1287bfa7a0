#include "support/linux/dead_mount.h"

#include <fcntl.h>
#include <linux/fuse.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "support/isolation.h"
#include "support/temp_tree.h"

namespace ulvak::test {
namespace {

constexpr std::size_t largestRequest = std::size_t{256} * 1024;

/// The kernel sends no requests before this handshake.
bool greet(int device) {
    std::string request(largestRequest, '\0');
    fuse_in_header header{};
    fuse_init_in wish{};
    const ssize_t length = ::read(device, request.data(), request.size());
    if (length < static_cast<ssize_t>(sizeof header + sizeof wish))
        return false;
    std::memcpy(&header, request.data(), sizeof header);
    std::memcpy(&wish, request.data() + sizeof header, sizeof wish);
    if (header.opcode != FUSE_INIT)
        return false;
    fuse_init_out answer{};
    answer.major = FUSE_KERNEL_VERSION;
    answer.minor = wish.minor < FUSE_KERNEL_MINOR_VERSION ? wish.minor : FUSE_KERNEL_MINOR_VERSION;
    answer.max_write = 4096;
    const fuse_out_header out{
        .len = sizeof(fuse_out_header) + sizeof answer, .error = 0, .unique = header.unique};
    std::string reply(reinterpret_cast<const char*>(&out), sizeof out);
    reply.append(reinterpret_cast<const char*>(&answer), sizeof answer);
    return ::write(device, reply.data(), reply.size()) == static_cast<ssize_t>(reply.size());
}

}  // namespace

std::optional<std::string> DeadMount::whyNone() {
    if (auto reason = whyNoPrivateMounts())
        return reason;
    const int device = ::open("/dev/fuse", O_RDWR | O_CLOEXEC);
    if (device < 0)
        return "this user cannot serve a file system";
    ::close(device);
    return std::nullopt;
}

DeadMount::DeadMount(const std::string& path)
    : path_(path), device_(::open("/dev/fuse", O_RDWR | O_CLOEXEC)), quit_(::eventfd(0, EFD_CLOEXEC)) {
    const std::string options = "fd=" + std::to_string(device_) +
                                ",rootmode=40000,allow_other,user_id=" + std::to_string(::geteuid()) +
                                ",group_id=" + std::to_string(::getegid());
    isMounted_ = device_ >= 0 && quit_ >= 0 &&
                 ::mount("dead", path.c_str(), "fuse", MS_NOSUID | MS_NODEV, options.c_str()) == 0 &&
                 greet(device_);
    if (isMounted_)
        server_ = std::thread([this] { serve(); });
}

DeadMount::~DeadMount() {
    const std::uint64_t one = 1;
    if (server_.joinable()) {
        (void)!::write(quit_, &one, sizeof one);
        server_.join();
    }
    if (device_ >= 0)
        ::close(device_);
    if (quit_ >= 0)
        ::close(quit_);
    (void)::umount2(path_.c_str(), MNT_DETACH);
}

void DeadMount::serve() {
    std::array<pollfd, 2> both = {
        {{.fd = device_, .events = POLLIN, .revents = 0}, {.fd = quit_, .events = POLLIN, .revents = 0}}};
    while (::poll(both.data(), both.size(), -1) < 0) {
    }
    if (both[0].revents == 0)
        return;
    wasAsked_ = true;
    ::close(device_);
    device_ = -1;
}

}  // namespace ulvak::test
