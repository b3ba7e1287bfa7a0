#pragma once

#include <cstdint>
#include <expected>
#include <string>
#include <string_view>

struct sockaddr;

namespace ulvak {

/// The address of a model server on this machine. Can only be created for addresses on this machine.
struct ModelAddress {
    std::string origin;  ///< "http://127.0.0.1:8080", no trailing "/"
    std::string root;    ///< the server's path, usually empty, without "/v1"
    /// The host if it is a name; stands for the loopback addresses only.
    std::string hostName;
    std::uint16_t port = 0;
    std::string socketPath;  ///< of a Unix socket; empty for a network address

    /// As the user would write it.
    [[nodiscard]] std::string display() const;

    friend bool operator==(const ModelAddress&, const ModelAddress&) = default;
};

/// Why an address is refused, in Turkish. Quotes it without user name and password.
struct RefusedAddress {
    std::string text;
};

/// Parses "http://127.0.0.1:8080", "https://localhost:8443/v1/", "[::1]:1234", "unix:/run/model.sock".
/// Accepts only loopback addresses, "localhost" and its subdomains, and sockets. No name is ever resolved:
/// the query itself would leave the machine, and the answer could change between check and connection.
/// Anything else in the text (a user name, a query) is dropped.
[[nodiscard]] std::expected<ModelAddress, RefusedAddress> modelAddress(std::string_view text);

[[nodiscard]] ModelAddress loopbackAddress(std::uint16_t port);

/// Whether a connection to this address stays on this machine.
[[nodiscard]] bool isLocal(const sockaddr& address);

}  // namespace ulvak
