#include "ai/linux/scripted_server.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <nlohmann/json.hpp>
#include <system_error>
#include <utility>

namespace ulvak::test {

using namespace std::chrono_literals;

namespace {

int checked(int result, const char* what) {
    if (result < 0)
        throw std::system_error(errno, std::generic_category(), what);
    return result;
}

int boundAt(const std::string& address, std::uint16_t& port) {
    const int handle = checked(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0), "socket");
    sockaddr_in place{};
    place.sin_family = AF_INET;
    checked(::inet_pton(AF_INET, address.c_str(), &place.sin_addr) - 1, "address");
    socklen_t length = sizeof place;
    checked(::bind(handle, reinterpret_cast<const sockaddr*>(&place), length), "bind");
    checked(::getsockname(handle, reinterpret_cast<sockaddr*>(&place), &length), "getsockname");
    port = ntohs(place.sin_port);
    return handle;
}

int listeningAt(const std::string& address, std::uint16_t& port) {
    const int handle = boundAt(address, port);
    checked(::listen(handle, 64), "listen");
    return handle;
}

/// Waits until `handle` is ready for `events`; false if `ending` becomes readable or the time runs out first.
bool waitFor(int handle, short events, int ending, int milliseconds = -1) {
    std::array<pollfd, 2> waited = {{{.fd = handle, .events = events}, {.fd = ending, .events = POLLIN}}};
    while (::poll(waited.data(), waited.size(), milliseconds) < 0 && errno == EINTR) {
    }
    return waited[0].revents != 0 && waited[1].revents == 0;
}

/// The value of "Content-Length:", or 0 if absent.
std::size_t contentLength(const std::string& headers) {
    std::string lower = headers;
    std::ranges::transform(lower, lower.begin(),
                           [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    const std::size_t at = lower.find("content-length:");
    return at == std::string::npos ? 0 : std::stoul(lower.substr(at + std::strlen("content-length:")));
}

/// Reads one request; false if the client leaves before it is complete.
bool readRequest(int handle, int ending, ScriptedServer::Request& request) {
    std::string bytes;
    std::array<char, 65'536> buffer{};
    for (;;) {
        const std::size_t end = bytes.find("\r\n\r\n");
        if (end != std::string::npos && bytes.size() >= end + 4 + contentLength(bytes.substr(0, end))) {
            const std::size_t line = bytes.find("\r\n");
            const std::size_t blank = bytes.find(' ');
            request.method = bytes.substr(0, blank);
            request.path = bytes.substr(blank + 1, bytes.find(' ', blank + 1) - blank - 1);
            request.headers = bytes.substr(line + 2, end - line);
            request.body = bytes.substr(end + 4);
            return true;
        }
        if (!waitFor(handle, POLLIN, ending))
            return false;
        const ssize_t count = ::recv(handle, buffer.data(), buffer.size(), 0);
        if (count <= 0)
            return false;
        bytes.append(buffer.data(), static_cast<std::size_t>(count));
    }
}

}  // namespace

bool ScriptedServer::Connection::trySend(std::string_view bytes) const {
    while (!bytes.empty()) {
        if (!waitFor(handle_, POLLOUT, ending_))
            return false;
        const ssize_t count = ::send(handle_, bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
        if (count < 0 && errno == EAGAIN)
            continue;
        if (count <= 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

void ScriptedServer::Connection::waitForItsEnd() const {
    std::array<char, 4'096> buffer{};
    while (waitFor(handle_, POLLIN, ending_)) {
        if (::recv(handle_, buffer.data(), buffer.size(), 0) <= 0)
            return;
    }
}

bool ScriptedServer::Connection::isGoneWithin(std::chrono::milliseconds time) const {
    char byte = 0;
    return waitFor(handle_, POLLIN, ending_, static_cast<int>(time.count())) &&
           ::recv(handle_, &byte, 1, MSG_PEEK) <= 0;
}

void ScriptedServer::Connection::closeSending() const {
    ::shutdown(handle_, SHUT_WR);
}

void ScriptedServer::Connection::breakOff() const {
    const linger atOnce{.l_onoff = 1, .l_linger = 0};
    ::setsockopt(handle_, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
}

ScriptedServer::ScriptedServer(Script script) : script_(std::move(script)) {
    listening_ = listeningAt("127.0.0.1", port_);
    start();
}

ScriptedServer::ScriptedServer(Script script, const std::string& socketPath) : script_(std::move(script)) {
    listening_ = checked(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0), "socket");
    sockaddr_un place{};
    place.sun_family = AF_UNIX;
    std::strncpy(place.sun_path, socketPath.c_str(), sizeof place.sun_path - 1);
    checked(::bind(listening_, reinterpret_cast<const sockaddr*>(&place), sizeof place), "bind");
    checked(::listen(listening_, 64), "listen");
    start();
}

ScriptedServer::~ScriptedServer() {
    const std::uint64_t one = 1;
    (void)!::write(ending_, &one, sizeof one);
    thread_.join();
    ::close(listening_);
    ::close(ending_);
}

std::vector<ScriptedServer::Request> ScriptedServer::requests() const {
    const std::scoped_lock lock(mutex_);
    return requests_;
}

void ScriptedServer::start() {
    ending_ = checked(::eventfd(0, EFD_CLOEXEC), "eventfd");
    thread_ = std::thread([this] { serve(); });
}

void ScriptedServer::serve() {
    while (waitFor(listening_, POLLIN, ending_)) {
        const int handle = ::accept4(listening_, nullptr, nullptr, SOCK_CLOEXEC);
        if (handle < 0)
            continue;
        Request request;
        if (readRequest(handle, ending_, request)) {
            {
                const std::scoped_lock lock(mutex_);
                requests_.push_back(request);
            }
            script_(Connection(handle, ending_), request);
        }
        ::close(handle);
    }
}

SilentListener::SilentListener(const std::string& address) {
    listening_ = listeningAt(address, port_);
    url_ = "http://" + address + ":" + std::to_string(port_);
}

SilentListener::~SilentListener() {
    ::close(listening_);
}

bool SilentListener::wasContacted() const {
    const int handle = ::accept4(listening_, nullptr, nullptr, SOCK_CLOEXEC);
    if (handle >= 0)
        ::close(handle);
    return handle >= 0;
}

FullListener::FullListener() {
    listening_ = listeningAt("127.0.0.1", port_);
    checked(::listen(listening_, 0), "listen");
    sockaddr_in place{};
    socklen_t length = sizeof place;
    checked(::getsockname(listening_, reinterpret_cast<sockaddr*>(&place), &length), "getsockname");
    constexpr int more = 4;  // than the queue holds
    for (int i = 0; i < more; ++i) {
        const int handle =
            checked(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0), "socket");
        (void)::connect(handle, reinterpret_cast<const sockaddr*>(&place), length);
        waiting_.push_back(handle);
    }
}

FullListener::~FullListener() {
    for (const int handle : waiting_)
        ::close(handle);
    ::close(listening_);
}

std::uint16_t refusingPort() {
    static const std::uint16_t refusing = [] {
        std::uint16_t port = 0;
        (void)boundAt("127.0.0.1", port);  // bound for the lifetime of the process
        return port;
    }();
    return refusing;
}

LocalModel patient(LocalModelSettings settings) {
    settings.probeDeadline = settings.namedDeadline = settings.showDeadline = 60s;
    return LocalModel(std::move(settings));
}

HttpError::Kind endOfTime(const ModelAddress& address, HttpRequest request) {
    using Kind = HttpError::Kind;
    for (;;) {
        const auto reply = exchange(address, request);
        if (reply) {
            ADD_FAILURE() << "an answer came: HTTP " << reply->status;
            return Kind::other;
        }
        if (reply.error().kind != Kind::unconnected || request.deadline >= 60s)
            return reply.error().kind;
        request.deadline *= 8;
    }
}

std::string reply(int status, std::string_view body, std::string_view moreHeaders) {
    return "HTTP/1.1 " + std::to_string(status) +
           " x\r\nContent-Type: application/json\r\nContent-Length: " + std::to_string(body.size()) + "\r\n" +
           std::string(moreHeaders) + "Connection: close\r\n\r\n" + std::string(body);
}

std::string modelList(const std::vector<std::string>& names) {
    nlohmann::ordered_json data = nlohmann::ordered_json::array();
    for (const std::string& name : names)
        data.push_back({{"id", name}, {"object", "model"}});
    return nlohmann::ordered_json({{"object", "list"}, {"data", data}}).dump();
}

std::string chatReply(std::string_view content) {
    return nlohmann::ordered_json({{"choices",
                                    {{{"index", 0},
                                      {"finish_reason", "stop"},
                                      {"message", {{"role", "assistant"}, {"content", content}}}}}}})
        .dump();
}

ScriptedServer::Script modelServer(ScriptedServer::Script chat) {
    return [chat = std::move(chat)](const ScriptedServer::Connection& client,
                                    const ScriptedServer::Request& request) {
        if (request.path == "/v1/models")
            client.send(reply(200, modelList({"test-model"})));
        else if (request.path == "/health")
            client.send(reply(200, R"({"status":"ok"})"));
        else if (request.path == "/api/show")
            client.send(reply(404, "not found"));
        else
            chat(client, request);
    };
}

ScriptedServer::Script modelServer(int status, std::string body) {
    return modelServer([status, body = std::move(body)](const ScriptedServer::Connection& client,
                                                        const ScriptedServer::Request&) {
        client.send(reply(status, body));
    });
}

}  // namespace ulvak::test
