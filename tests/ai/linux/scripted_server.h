#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "ai/server/http_exchange.h"
#include "ai/server/local_model.h"

namespace ulvak::test {

/// A server on this machine that says what a test wants it to, over a real socket. Takes one connection after
/// the other, one request from each. Ends with the object, whatever a connection is waiting for.
class ScriptedServer {
public:
    struct Request {
        std::string method;
        std::string path;
        std::string headers;
        std::string body;
    };

    /// One end of an accepted connection.
    class Connection {
    public:
        Connection(int handle, int ending) : handle_(handle), ending_(ending) {}

        void send(std::string_view bytes) const { (void)trySend(bytes); }
        /// False once the client is gone or the server is to end.
        [[nodiscard]] bool trySend(std::string_view bytes) const;
        /// Says nothing until the client has gone or the server is to end.
        void waitForItsEnd() const;
        /// Whether the client leaves before that long has passed.
        [[nodiscard]] bool isGoneWithin(std::chrono::milliseconds time) const;
        /// Nothing more will be sent; the other direction stays open.
        void closeSending() const;
        /// The connection is broken off with an error rather than closed.
        void breakOff() const;

    private:
        int handle_;
        int ending_;
    };

    using Script = std::function<void(const Connection&, const Request&)>;

    /// At a free port of 127.0.0.1.
    explicit ScriptedServer(Script script);
    /// At a Unix socket.
    ScriptedServer(Script script, const std::string& socketPath);
    ~ScriptedServer();
    ScriptedServer(const ScriptedServer&) = delete;
    ScriptedServer& operator=(const ScriptedServer&) = delete;

    [[nodiscard]] std::uint16_t port() const { return port_; }
    [[nodiscard]] std::string url() const { return "http://127.0.0.1:" + std::to_string(port_); }
    /// All that has come so far.
    [[nodiscard]] std::vector<Request> requests() const;

private:
    void start();
    void serve();

    Script script_;
    int listening_ = -1;
    int ending_ = -1;  ///< readable once the server is to end
    std::uint16_t port_ = 0;
    mutable std::mutex mutex_;
    std::vector<Request> requests_;  ///< guarded by `mutex_`
    std::thread thread_;
};

/// A place at which nobody must ever knock.
class SilentListener {
public:
    /// At a free port of this IPv4 address.
    explicit SilentListener(const std::string& address = "127.0.0.1");
    ~SilentListener();
    SilentListener(const SilentListener&) = delete;
    SilentListener& operator=(const SilentListener&) = delete;

    [[nodiscard]] std::uint16_t port() const { return port_; }
    [[nodiscard]] const std::string& url() const { return url_; }
    /// Whether anybody has connected, also if they have left again.
    [[nodiscard]] bool wasContacted() const;

private:
    int listening_ = -1;
    std::uint16_t port_ = 0;
    std::string url_;
};

/// A place at which nobody answers the door: somebody listens, but takes no more connections.
class FullListener {
public:
    FullListener();
    ~FullListener();
    FullListener(const FullListener&) = delete;
    FullListener& operator=(const FullListener&) = delete;

    [[nodiscard]] std::uint16_t port() const { return port_; }

private:
    int listening_ = -1;
    std::uint16_t port_ = 0;
    std::vector<int> waiting_;
};

/// A port of 127.0.0.1 at which nobody listens, and nobody else will while this process lives: a free one
/// would be given to the next who wants any.
[[nodiscard]] std::uint16_t refusingPort();

/// A model whose deadlines no machine misses that stalls for a while, for tests that wait for none.
[[nodiscard]] LocalModel patient(LocalModelSettings settings);

/// How a request ends that is never answered. One whose time was over before it was connected is made again
/// with more: on a machine that stalls, a short time is over too soon to say anything of the server.
[[nodiscard]] HttpError::Kind endOfTime(const ModelAddress& address, HttpRequest request);

/// A whole reply with its headers.
[[nodiscard]] std::string reply(int status, std::string_view body, std::string_view moreHeaders = "");

/// A list of models as servers give it.
[[nodiscard]] std::string modelList(const std::vector<std::string>& names);

/// A chat completion with this text as its content.
[[nodiscard]] std::string chatReply(std::string_view content);

/// A server that lists a model, is ready, and leaves chat completions to `chat`.
[[nodiscard]] ScriptedServer::Script modelServer(ScriptedServer::Script chat);

/// The same with one fixed chat completion.
[[nodiscard]] ScriptedServer::Script modelServer(int status, std::string body);

}  // namespace ulvak::test
