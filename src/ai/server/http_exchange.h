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
    std::string path;  ///< below the server's root: "/v1/models"
    /// Sent with POST; without one the request is a GET.
    std::optional<std::string> json;
    std::chrono::milliseconds connectDeadline{1'000};
    std::chrono::milliseconds deadline{5'000};  ///< for all of it; nothing is sent when it has passed
};

struct HttpReply {
    long status = 0;
    std::string body;
};

struct HttpError {
    enum class Kind : std::uint8_t {
        unreachable,  ///< nobody listens there
        unconnected,  ///< somebody does, but no connection came about in time; nothing was sent
        late,         ///< connected, but no complete reply before the deadline
        brokenOff,    ///< closed before the reply was complete
        tooLong,      ///< more than `maxReplyBytes` bytes
        stopped,      ///< at the caller's wish
        other,        ///< not HTTP, no trust, no libcurl
    };
    Kind kind = Kind::other;
    std::string text;  ///< why, of `other`: Turkish, for people, without a full stop
};

/// Bytes of a reply's body; no answer of a model comes near.
inline constexpr std::size_t maxReplyBytes = 512U * 1024;

/// One request to a server on this machine, on a connection of its own. Follows no redirection, uses no proxy
/// whatever the environment says, speaks HTTP only, looks no name up, and refuses at the socket any
/// connection that would leave the machine.
/// Threads: any, several at once. Blocks, at most until the deadline; a stop ends it at once, and nothing is
/// sent after one.
[[nodiscard]] std::expected<HttpReply, HttpError> exchange(const ModelAddress& address,
                                                           const HttpRequest& request,
                                                           const std::stop_token& stop = {});

}  // namespace ulvak
