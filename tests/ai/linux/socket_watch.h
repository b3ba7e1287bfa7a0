#pragma once

#include <string>
#include <vector>

namespace ulvak::test {

/// What this process has asked the system about networks since the object was made, whichever library asked:
/// the test program stands in for the C library's functions.
class SocketWatch {
public:
    SocketWatch();

    /// Network sockets opened, IPv4 and IPv6.
    [[nodiscard]] int sockets() const;
    /// Names looked up.
    [[nodiscard]] int lookups() const;
    /// Where connections were begun and datagrams sent: "127.0.0.1", "::1", "unix", or something worse.
    [[nodiscard]] std::vector<std::string> destinations() const;

private:
    int socketsBefore_;
    int lookupsBefore_;
    std::size_t destinationsBefore_;
};

}  // namespace ulvak::test
