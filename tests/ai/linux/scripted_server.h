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

/// A local server that follows a test's script, over a real socket. Handles one connection at a time, one
/// request each. Stops on destruction, whatever a connection is waiting for.
class ScriptedServer {
public:
    struct Request {
        std::string method;
        std::string path;
        std::string headers;
        std::string body;
    };

    /// The server's end of an accepted connection.
    class Connection {
    public:
        Connection(int handle, int ending) : handle_(handle), ending_(ending) {}

        void send(std::string_view bytes) const { (void)trySend(bytes); }
        /// False once the client is gone or the server is stopping.
        [[nodiscard]] bool trySend(std::string_view bytes) const;
        /// Sends nothing until the client is gone or the server is stopping.
        void waitForItsEnd() const;
        /// Whether the client leaves within this time.
        [[nodiscard]] bool isGoneWithin(std::chrono::milliseconds time) const;
        /// Ends sending; the other direction stays open.
        void closeSending() const;
        /// Aborts the connection with an error instead of closing it.
        void breakOff() const;

    private:
        int handle_;
        int ending_;
    };

    using Script = std::function<void(const Connection&, const Request&)>;

    /// On a free port of 127.0.0.1.
    explicit ScriptedServer(Script script);
    /// On a Unix socket.
    ScriptedServer(Script script, const std::string& socketPath);
    ~ScriptedServer();
    ScriptedServer(const ScriptedServer&) = delete;
    ScriptedServer& operator=(const ScriptedServer&) = delete;

    [[nodiscard]] std::uint16_t port() const { return port_; }
    [[nodiscard]] std::string url() const { return "http://127.0.0.1:" + std::to_string(port_); }
    /// All requests so far.
    [[nodiscard]] std::vector<Request> requests() const;

private:
    void start();
    void serve();

    Script script_;
    int listening_ = -1;
    int ending_ = -1;  ///< readable once the server is stopping
    std::uint16_t port_ = 0;
    mutable std::mutex mutex_;
    std::vector<Request> requests_;  ///< guarded by `mutex_`
    std::thread thread_;
};

/// A listener that must never be contacted.
class SilentListener {
public:
    /// On a free port of this IPv4 address.
    explicit SilentListener(const std::string& address = "127.0.0.1");
    ~SilentListener();
    SilentListener(const SilentListener&) = delete;
    SilentListener& operator=(const SilentListener&) = delete;

    [[nodiscard]] std::uint16_t port() const { return port_; }
    [[nodiscard]] const std::string& url() const { return url_; }
    /// Whether anyone has connected, even if they have left again.
    [[nodiscard]] bool wasContacted() const;

private:
    int listening_ = -1;
    std::uint16_t port_ = 0;
    std::string url_;
};

/// A listener whose queue is full: connecting to it never completes.
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

/// A port of 127.0.0.1 without a listener, reserved for the lifetime of the process: a merely free port could
/// be given to someone else.
[[nodiscard]] std::uint16_t refusingPort();

/// A model with deadlines that even a stalled machine meets, for tests that do not test deadlines.
[[nodiscard]] LocalModel patient(LocalModelSettings settings);

/// The outcome of a request that is never answered. Retries with a longer deadline if it ran out before
/// connecting: on a stalled machine, that says nothing about the server.
[[nodiscard]] HttpError::Kind endOfTime(const ModelAddress& address, HttpRequest request);

/// A complete reply with headers.
[[nodiscard]] std::string reply(int status, std::string_view body, std::string_view moreHeaders = "");

/// A list of models in the servers' format.
[[nodiscard]] std::string modelList(const std::vector<std::string>& names);

/// A chat completion with this text as its content.
[[nodiscard]] std::string chatReply(std::string_view content);

/// A server that lists a model, is ready, and leaves chat completions to `chat`.
[[nodiscard]] ScriptedServer::Script modelServer(ScriptedServer::Script chat);

/// The same with one fixed chat completion.
[[nodiscard]] ScriptedServer::Script modelServer(int status, std::string body);

}  // namespace ulvak::test
