#include "ai/server/model_address.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <algorithm>
#include <charconv>
#include <cstring>
#include <optional>

#include "ai/server/curl_library.h"
#include "platform/ascii.h"

namespace ulvak {
namespace {

constexpr std::string_view socketPrefix = "unix:";
constexpr std::string_view versionPath = "/v1";

/// `text` without a possible user name and password: everything between the scheme and the last "@". It may
/// not be a valid address, so it cannot be parsed any better.
std::string withoutCredentials(std::string_view text) {
    const std::size_t at = text.rfind('@');
    if (at == std::string_view::npos)
        return std::string(text);
    const std::size_t mark = text.find("://");
    const bool hasScheme = mark < at && std::ranges::all_of(
                                            text.substr(0, mark),
                                            [](char c) {
                                                return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
                                                       (c >= '0' && c <= '9') || c == '+';
                                            });
    return std::string(text.substr(0, hasScheme ? mark + 3 : 0)).append("…").append(text.substr(at));
}

std::unexpected<RefusedAddress> refused(std::string_view text, std::string_view why) {
    constexpr std::size_t maxLength = 200;  // bytes of the user's own text
    // Cut last: cutting first could separate a password from the "@" that marks it.
    const std::string shown = withoutCredentials(text).substr(0, maxLength);
    return std::unexpected(RefusedAddress{"ULVAK_MODEL_URL kabul edilmedi (" + shown +
                                          "): " + std::string(why) +
                                          ". Yalnızca bu bilgisayardaki bir sunucu olabilir: "
                                          "http://127.0.0.1:8080, http://localhost:11434 ya da "
                                          "unix:/yol/soket gibi. Hiçbir veri gönderilmedi."});
}

bool isLoopback(const in_addr& address) {
    return (ntohl(address.s_addr) >> 24U) == IN_LOOPBACKNET;
}

bool isLoopback(const in6_addr& address) {
    if (IN6_IS_ADDR_LOOPBACK(&address))
        return true;
    if (!IN6_IS_ADDR_V4MAPPED(&address))
        return false;
    in_addr mapped{};
    std::memcpy(&mapped, &address.s6_addr[12], sizeof mapped);
    return isLoopback(mapped);
}

/// Whether a numeric address is a loopback one; nullopt if it is not numeric.
std::optional<bool> isLoopbackNumber(std::string host) {
    if (host.size() >= 2 && host.front() == '[' && host.back() == ']')
        host = host.substr(1, host.size() - 2);
    in_addr four{};
    if (::inet_pton(AF_INET, host.c_str(), &four) == 1)
        return isLoopback(four);
    in6_addr six{};
    if (::inet_pton(AF_INET6, host.c_str(), &six) == 1)
        return isLoopback(six);
    return std::nullopt;
}

/// Accepts only characters without special meaning in CURLOPT_RESOLVE: a name beginning with "-" would remove
/// an entry instead of pinning the name to its addresses.
bool isLocalName(std::string_view host) {
    const bool isPlain = std::ranges::all_of(host, [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-' || c == '.' || c == '_';
    });
    return isPlain && !host.starts_with('-') && (host == "localhost" || host.ends_with(".localhost"));
}

/// A path without trailing "/" and without the API version, which every request adds.
std::string rootOf(std::string path) {
    const auto dropSlashes = [&] {
        while (path.ends_with('/'))
            path.pop_back();
    };
    dropSlashes();
    if (path.ends_with(versionPath)) {
        path.resize(path.size() - versionPath.size());
        dropSlashes();
    }
    return path;
}

std::expected<ModelAddress, RefusedAddress> socketAddress(std::string_view text) {
    std::string_view path = text.substr(socketPrefix.size());
    while (path.starts_with("//"))
        path.remove_prefix(1);
    if (!path.starts_with('/') || path.size() == 1 || path.contains('\0'))
        return refused(text, "soketin tam yolu gerekli");
    if (path.size() >= sizeof(sockaddr_un::sun_path))
        return refused(text, "soketin yolu çok uzun");
    return ModelAddress{
        .origin = "http://localhost", .hostName = "localhost", .socketPath = std::string(path)};
}

/// Parsed by libcurl, which also makes the connection, so that no other opinion of where the host name ends
/// can matter.
class ParsedUrl {
public:
    ParsedUrl(const CurlLibrary& curl, const std::string& text) : curl_(curl), handle_(curl.url()) {
        isValid_ = handle_ != nullptr && curl.urlSet(handle_, CURLUPART_URL, text.c_str(), 0) == CURLUE_OK;
    }
    ~ParsedUrl() { curl_.urlCleanup(handle_); }
    ParsedUrl(const ParsedUrl&) = delete;
    ParsedUrl& operator=(const ParsedUrl&) = delete;

    [[nodiscard]] bool isValid() const { return isValid_; }

    [[nodiscard]] std::string part(CURLUPart what, unsigned flags = 0) const {
        char* found = nullptr;
        if (curl_.urlGet(handle_, what, &found, flags) != CURLUE_OK)
            return {};
        std::string text = found;
        curl_.free(found);
        return text;
    }

private:
    const CurlLibrary& curl_;
    CURLU* handle_ = nullptr;
    bool isValid_ = false;
};

}  // namespace

std::string ModelAddress::display() const {
    return socketPath.empty() ? origin + root : std::string(socketPrefix) + socketPath;
}

std::expected<ModelAddress, RefusedAddress> modelAddress(std::string_view text) {
    if (text.starts_with(socketPrefix))
        return socketAddress(text);
    const CurlLibrary* curl = CurlLibrary::instance();
    if (curl == nullptr)
        return refused(text, "adresi okuyacak libcurl kurulu değil");
    const ParsedUrl url(*curl, text.contains("://") ? std::string(text) : "http://" + std::string(text));
    if (!url.isValid() || text.contains('\0'))
        return refused(text, "bir adres değil");
    const std::string scheme = platform::lowerAscii(url.part(CURLUPART_SCHEME));
    if (scheme != "http" && scheme != "https")
        return refused(text, "http ya da https olmalı");
    const std::string host = platform::lowerAscii(url.part(CURLUPART_HOST));
    const auto number = isLoopbackNumber(host);
    if (!url.part(CURLUPART_ZONEID).empty() || !number.value_or(isLocalName(host)))
        return refused(text, "bu bilgisayarın adresi değil");
    const std::string portText = url.part(CURLUPART_PORT, CURLU_DEFAULT_PORT);
    std::uint16_t port = 0;
    std::from_chars(portText.data(), portText.data() + portText.size(), port);
    if (port == 0)
        return refused(text, "bağlantı noktası geçersiz");
    return ModelAddress{.origin = scheme + "://" + host + ":" + portText,
                        .root = rootOf(url.part(CURLUPART_PATH)),
                        .hostName = number ? std::string() : host,
                        .port = port};
}

ModelAddress loopbackAddress(std::uint16_t port) {
    return {.origin = "http://127.0.0.1:" + std::to_string(port), .port = port};
}

bool isLocal(const sockaddr& address) {
    // Copied out: a generic sockaddr need not be aligned for the specific type.
    if (address.sa_family == AF_UNIX)
        return true;
    if (address.sa_family == AF_INET) {
        sockaddr_in four{};
        std::memcpy(&four, &address, sizeof four);
        return isLoopback(four.sin_addr);
    }
    if (address.sa_family == AF_INET6) {
        sockaddr_in6 six{};
        std::memcpy(&six, &address, sizeof six);
        return isLoopback(six.sin6_addr);
    }
    return false;
}

}  // namespace ulvak
