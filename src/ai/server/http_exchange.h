#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <expected>
#include <optional>
#include <stop_token>
#include <string>

#include "ai/server/model_address.h"

namespace ulvak {

struct HttpRequest {
    std::string path;  ///< relative to the server's root: "/v1/models"
    /// Sent with POST; without it, the request is a GET.
    std::optional<std::string> json;
    std::chrono::milliseconds connectDeadline{1'000};
    std::chrono::milliseconds deadline{5'000};  ///< for the whole exchange; nothing is sent after it
};

struct HttpReply {
    long status = 0;
    std::string body;
};

struct HttpError {
    enum class Kind : std::uint8_t {
        unreachable,  ///< nobody listens there
        unconnected,  ///< somebody listens, but no connection was made in time; nothing was sent
        late,         ///< connected, but no complete reply before the deadline
        brokenOff,    ///< closed before the reply was complete
        tooLong,      ///< more than `maxReplyBytes` bytes
        stopped,      ///< by a stop request
        other,        ///< not HTTP, untrusted certificate, no libcurl
    };
    Kind kind = Kind::other;
    std::string text;  ///< for `other`, why: Turkish, for people, no full stop
};

/// Maximum bytes of a reply's body; no model's answer comes close.
inline constexpr std::size_t maxReplyBytes = 512U * 1024;

/// Sends one request to a server on this machine, on its own connection. Follows no redirects, ignores
/// proxies (whatever the environment says), speaks HTTP only, resolves no names, and refuses at the socket
/// any connection that would leave the machine.
///
/// Threads: any, concurrently. Blocks until the deadline at most; a stop request ends it at once, and nothing
/// is sent after one.
[[nodiscard]] std::expected<HttpReply, HttpError> exchange(const ModelAddress& address,
                                                           const HttpRequest& request,
                                                           const std::stop_token& stop = {});

}  // namespace ulvak
