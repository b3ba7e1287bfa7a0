#pragma once

#include <string>
#include <vector>

namespace ulvak::test {

/// Records the process's network calls since construction, whichever library made them: the test program
/// overrides the C library's functions.
class SocketWatch {
public:
    SocketWatch();

    /// Number of network sockets opened, IPv4 and IPv6.
    [[nodiscard]] int sockets() const;
    /// Number of name lookups.
    [[nodiscard]] int lookups() const;
    /// Targets of connections and datagrams: "127.0.0.1", "::1", "unix", or something worse.
    [[nodiscard]] std::vector<std::string> destinations() const;

private:
    int socketsBefore_;
    int lookupsBefore_;
    std::size_t destinationsBefore_;
};

}  // namespace ulvak::test
