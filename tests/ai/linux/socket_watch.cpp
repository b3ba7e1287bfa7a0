#include "ai/linux/socket_watch.h"

#include <arpa/inet.h>
#include <dlfcn.h>
#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <array>
#include <atomic>
#include <cstring>
#include <mutex>

namespace ulvak::test {
namespace {

std::atomic<int> socketCount = 0;
std::atomic<int> lookupCount = 0;
std::mutex destinationMutex;

/// Guarded by `destinationMutex`.
std::vector<std::string>& allDestinations() {
    static std::vector<std::string> all;
    return all;
}

std::string textOf(const sockaddr* address, socklen_t length) {
    std::array<char, INET6_ADDRSTRLEN> text{};
    if (address->sa_family == AF_UNIX)
        return "unix";
    if (address->sa_family == AF_INET && length >= sizeof(sockaddr_in)) {
        sockaddr_in four{};
        std::memcpy(&four, address, sizeof four);
        return ::inet_ntop(AF_INET, &four.sin_addr, text.data(), text.size());
    }
    if (address->sa_family == AF_INET6 && length >= sizeof(sockaddr_in6)) {
        sockaddr_in6 six{};
        std::memcpy(&six, address, sizeof six);
        return ::inet_ntop(AF_INET6, &six.sin6_addr, text.data(), text.size());
    }
    return "family " + std::to_string(address->sa_family);
}

void note(const sockaddr* address, socklen_t length) {
    if (address == nullptr)
        return;
    const std::scoped_lock lock(destinationMutex);
    allDestinations().push_back(textOf(address, length));
}

template <typename Function>
Function next(const char* name) {
    return reinterpret_cast<Function>(::dlsym(RTLD_NEXT, name));
}

}  // namespace

SocketWatch::SocketWatch() : socketsBefore_(socketCount), lookupsBefore_(lookupCount) {
    const std::scoped_lock lock(destinationMutex);
    destinationsBefore_ = allDestinations().size();
}

int SocketWatch::sockets() const {
    return socketCount - socketsBefore_;
}

int SocketWatch::lookups() const {
    return lookupCount - lookupsBefore_;
}

std::vector<std::string> SocketWatch::destinations() const {
    const std::scoped_lock lock(destinationMutex);
    const auto& all = allDestinations();
    return {all.begin() + static_cast<std::ptrdiff_t>(destinationsBefore_), all.end()};
}

}  // namespace ulvak::test

// Replaces the C library's function, for every library in the process.

extern "C" int socket(int family, int type, int protocol) noexcept {
    static const auto real = ulvak::test::next<int (*)(int, int, int)>("socket");
    if (family == AF_INET || family == AF_INET6)
        ++ulvak::test::socketCount;
    return real(family, type, protocol);
}

extern "C" int connect(int handle, const sockaddr* address, socklen_t length) {
    static const auto real = ulvak::test::next<int (*)(int, const sockaddr*, socklen_t)>("connect");
    ulvak::test::note(address, length);
    return real(handle, address, length);
}

extern "C" ssize_t sendto(int handle, const void* bytes, size_t count, int flags, const sockaddr* address,
                          socklen_t length) {
    using Function = ssize_t (*)(int, const void*, size_t, int, const sockaddr*, socklen_t);
    static const auto real = ulvak::test::next<Function>("sendto");
    ulvak::test::note(address, length);
    return real(handle, bytes, count, flags, address, length);
}

extern "C" int getaddrinfo(const char* name, const char* service, const addrinfo* hints, addrinfo** found) {
    using Function = int (*)(const char*, const char*, const addrinfo*, addrinfo**);
    static const auto real = ulvak::test::next<Function>("getaddrinfo");
    // libcurl passes literal addresses here too; those need no lookup.
    if (hints == nullptr || (hints->ai_flags & AI_NUMERICHOST) == 0)
        ++ulvak::test::lookupCount;
    return real(name, service, hints, found);
}
