#pragma once

#include <cstdint>
#include <expected>
#include <string>
#include <string_view>

struct sockaddr;

namespace ulvak {

/// Where a model server on this machine listens. Can only be made for places that are on this machine.
struct ModelAddress {
    std::string origin;  ///< "http://127.0.0.1:8080", without a "/" at the end
    std::string root;    ///< path of the server, mostly empty, without "/v1"
    /// The host when it is a name, which then stands for the loopback addresses and nothing else.
    std::string hostName;
    std::uint16_t port = 0;
    std::string socketPath;  ///< of a Unix socket; empty for a network address

    /// As the user would write it.
    [[nodiscard]] std::string display() const;

    friend bool operator==(const ModelAddress&, const ModelAddress&) = default;
};

/// Why an address is not accepted, in Turkish. Repeats it without a user name and password.
struct RefusedAddress {
    std::string text;
};

/// "http://127.0.0.1:8080", "https://localhost:8443/v1/", "[::1]:1234", "unix:/run/model.sock". Loopback
/// addresses, "localhost" and names below it, and sockets only. No name is ever looked up: the question alone
/// would leave the machine, and the answer could change between the check and the connection. Whatever else
/// the text holds (a user name, a query) is dropped.
[[nodiscard]] std::expected<ModelAddress, RefusedAddress> modelAddress(std::string_view text);

[[nodiscard]] ModelAddress loopbackAddress(std::uint16_t port);

/// Whether a connection to this address stays on this machine.
[[nodiscard]] bool isLocal(const sockaddr& address);

}  // namespace ulvak
