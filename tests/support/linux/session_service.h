#pragma once

#include <gio/gio.h>

#include <functional>
#include <future>
#include <string>
#include <thread>

namespace ulvak::test {

/// One object on the bus at an address, under its own name. Answers on its own thread; can be called as soon
/// as it is constructed.
class SessionService {
public:
    struct Object {
        const char* name;
        const char* path;
        const char* interfaces;  ///< XML, for one interface
    };
    /// A call's result, floating; null for none. Runs on the service's thread.
    using Answer = std::function<GVariant*(const std::string& method, GVariant* parameters)>;

    SessionService(std::string address, Object place, Answer answer);
    ~SessionService();
    SessionService(const SessionService&) = delete;
    SessionService& operator=(const SessionService&) = delete;

    /// Takes ownership of `parameters`, floating. Threads: any.
    void emitSignal(const char* interface, const char* signal, GVariant* parameters);

private:
    void serve();
    static gboolean sayItIsThere(gpointer self);
    static void call(GDBusConnection* bus, const char* sender, const char* path, const char* interface,
                     const char* method, GVariant* parameters, GDBusMethodInvocation* invocation,
                     gpointer self);

    const std::string address_;
    const Object place_;
    const Answer answer_;
    std::promise<void> isThere_;
    GMainLoop* loop_ = nullptr;       ///< set before `isThere_`
    GDBusConnection* bus_ = nullptr;  ///< set before `isThere_`
    std::thread thread_;
};

}  // namespace ulvak::test
