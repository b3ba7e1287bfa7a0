#include "ai/server/http_exchange.h"

#include <sys/socket.h>

#include <algorithm>
#include <csignal>
#include <ctime>
#include <string>
#include <utility>

#include "ai/server/curl_library.h"

namespace ulvak {
namespace {

using Clock = std::chrono::steady_clock;

/// Maximum total bytes of all header lines.
constexpr std::size_t maxHeaderBytes = 64U * 1024;

/// Blocks SIGPIPE, which would end the program when a peer closes early: TLS libraries write without
/// MSG_NOSIGNAL.
class PipeSignalBlocked {
public:
    PipeSignalBlocked() {
        sigemptyset(&pipeOnly_);
        sigaddset(&pipeOnly_, SIGPIPE);
        sigset_t pending;
        sigpending(&pending);
        wasPending_ = sigismember(&pending, SIGPIPE) == 1;
        pthread_sigmask(SIG_BLOCK, &pipeOnly_, &before_);
    }
    ~PipeSignalBlocked() {
        const timespec noTime{};
        if (!wasPending_)
            while (sigtimedwait(&pipeOnly_, nullptr, &noTime) > 0) {
            }
        pthread_sigmask(SIG_SETMASK, &before_, nullptr);
    }
    PipeSignalBlocked(const PipeSignalBlocked&) = delete;
    PipeSignalBlocked& operator=(const PipeSignalBlocked&) = delete;

private:
    sigset_t pipeOnly_{};
    sigset_t before_{};
    bool wasPending_ = false;
};

/// Filled by libcurl's callbacks.
struct Received {
    std::string body;
    std::size_t headerBytes = 0;
    bool isTooLong = false;
};

std::size_t takeBody(char* data, std::size_t, std::size_t count, void* target) {
    auto& received = *static_cast<Received*>(target);
    if (count > maxReplyBytes - received.body.size()) {
        received.isTooLong = true;
        return 0;
    }
    received.body.append(data, count);
    return count;
}

/// Headers are not used, but libcurl stores them, and a server could send them without end.
std::size_t takeHeader(char*, std::size_t, std::size_t count, void* target) {
    auto& received = *static_cast<Received*>(target);
    received.headerBytes += count;
    received.isTooLong = received.isTooLong || received.headerBytes > maxHeaderBytes;
    return received.isTooLong ? 0 : count;
}

/// The last check, passed by every connection: whatever the address was before, this is what gets connected.
curl_socket_t openSocket(void*, curlsocktype purpose, curl_sockaddr* address) {
    if (purpose != CURLSOCKTYPE_IPCXN || !isLocal(address->addr))
        return CURL_SOCKET_BAD;
    return ::socket(address->family, address->socktype | SOCK_CLOEXEC, address->protocol);
}

/// One libcurl request and everything that belongs to it.
class Exchange {
public:
    Exchange(const CurlLibrary& curl, const ModelAddress& address, const HttpRequest& request)
        : curl_(curl),
          deadline_(Clock::now() + request.deadline),
          easy_(curl.easyInit()),
          multi_(curl.multiInit()) {
        isReady_ = easy_ != nullptr && multi_ != nullptr;
        if (!isReady_)
            return;
        setAddress(address, request.path);
        setLimits(request);
        setContents(request);
    }

    ~Exchange() {
        if (isAdded_)
            curl_.multiRemoveHandle(multi_, easy_);
        if (easy_ != nullptr)
            curl_.easyCleanup(easy_);
        if (multi_ != nullptr)
            curl_.multiCleanup(multi_);
        curl_.slistFreeAll(headers_);
        curl_.slistFreeAll(addresses_);
    }
    Exchange(const Exchange&) = delete;
    Exchange& operator=(const Exchange&) = delete;

    std::expected<HttpReply, HttpError> run(const std::stop_token& stop) {
        if (!isReady_ || curl_.multiAddHandle(multi_, easy_) != CURLM_OK)
            return failed(HttpError::Kind::other, "libcurl kullanılamadı");
        isAdded_ = true;
        const std::stop_callback wake(stop, [this] { curl_.multiWakeup(multi_); });
        for (;;) {
            // Before the first step too: that one connects, and may already send.
            if (stop.stop_requested())
                return failed(HttpError::Kind::stopped);
            const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline_ - Clock::now());
            if (left.count() <= 0)
                return failed(lateKind());
            int running = 0;
            if (curl_.multiPerform(multi_, &running) != CURLM_OK)
                return failed(HttpError::Kind::other, "libcurl çalışmadı");
            if (running == 0)
                return result();
            constexpr std::chrono::milliseconds maxWait{60'000};
            const int wait = static_cast<int>(std::min(left, maxWait).count());
            if (curl_.multiPoll(multi_, nullptr, 0, wait, nullptr) != CURLM_OK)
                return failed(HttpError::Kind::other, "libcurl çalışmadı");
        }
    }

private:
    static std::unexpected<HttpError> failed(HttpError::Kind kind, std::string text = {}) {
        return std::unexpected(HttpError{.kind = kind, .text = std::move(text)});
    }

    /// If libcurl rejects an option, no request is made.
    template <typename Value>
    void set(CURLoption option, Value value) {
        isReady_ = isReady_ && curl_.easySetopt(easy_, option, value) == CURLE_OK;
    }
    void set(CURLoption option, const std::string& value) { set(option, value.c_str()); }

    void setAddress(const ModelAddress& address, const std::string& path) {
        isSecure_ = address.origin.starts_with("https:");
        set(CURLOPT_URL, address.origin + address.root + path);
        set(CURLOPT_PROTOCOLS_STR, "http,https");
        set(CURLOPT_FOLLOWLOCATION, 0L);
        set(CURLOPT_PROXY, "");
        set(CURLOPT_NOPROXY, "*");
        set(CURLOPT_NETRC, static_cast<long>(CURL_NETRC_IGNORED));
        set(CURLOPT_OPENSOCKETFUNCTION, &openSocket);
        if (!address.socketPath.empty()) {
            set(CURLOPT_UNIX_SOCKET_PATH, address.socketPath);
        } else if (!address.hostName.empty()) {
            const std::string pinned =
                address.hostName + ":" + std::to_string(address.port) + ":127.0.0.1,[::1]";
            addresses_ = curl_.slistAppend(addresses_, pinned.c_str());
            isReady_ = isReady_ && addresses_ != nullptr;
            set(CURLOPT_RESOLVE, addresses_);
        }
    }

    void setLimits(const HttpRequest& request) {
        set(CURLOPT_NOSIGNAL, 1L);
        // To libcurl, zero means no limit.
        const auto limit = [](std::chrono::milliseconds time) {
            return static_cast<long>(std::clamp<std::int64_t>(time.count(), 1, INT32_MAX));
        };
        set(CURLOPT_CONNECTTIMEOUT_MS, limit(request.connectDeadline));
        set(CURLOPT_TIMEOUT_MS, limit(request.deadline));
        set(CURLOPT_WRITEFUNCTION, &takeBody);
        set(CURLOPT_WRITEDATA, &received_);
        set(CURLOPT_HEADERFUNCTION, &takeHeader);
        set(CURLOPT_HEADERDATA, &received_);
    }

    void setContents(const HttpRequest& request) {
        const auto add = [&](const char* header) {
            curl_slist* longer = curl_.slistAppend(headers_, header);
            isReady_ = isReady_ && longer != nullptr;
            headers_ = longer != nullptr ? longer : headers_;
        };
        add("Accept: application/json");
        if (request.json) {
            add("Content-Type: application/json");
            add("Expect:");
            set(CURLOPT_POST, 1L);
            set(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(request.json->size()));
            set(CURLOPT_COPYPOSTFIELDS, *request.json);
        }
        set(CURLOPT_HTTPHEADER, headers_);
    }

    std::expected<HttpReply, HttpError> result() {
        int waiting = 0;
        const CURLMsg* message = curl_.multiInfoRead(multi_, &waiting);
        const CURLcode code = message != nullptr ? message->data.result : CURLE_FAILED_INIT;
        if (code != CURLE_OK)
            return failed(kindOf(code), wordsOf(code));
        HttpReply reply{.body = std::move(received_.body)};
        curl_.easyGetinfo(easy_, CURLINFO_RESPONSE_CODE, &reply.status);
        return reply;
    }

    /// Turkish; libcurl's own messages are English.
    static std::string wordsOf(CURLcode code) {
        switch (code) {
            case CURLE_UNSUPPORTED_PROTOCOL:
            case CURLE_WEIRD_SERVER_REPLY:
                return "gelen yanıt HTTP değil";
            case CURLE_COULDNT_RESOLVE_HOST:
                return "bu ad bu bilgisayarı göstermiyor";
            case CURLE_SSL_CONNECT_ERROR:
                return "güvenli bağlantı kurulamadı";
            case CURLE_PEER_FAILED_VERIFICATION:
                return "sunucunun sertifikası güvenilir değil";
            case CURLE_BAD_CONTENT_ENCODING:
                return "yanıtın kodlaması bozuk";
            case CURLE_OUT_OF_MEMORY:
                return "bellek yetmedi";
            default:
                return "libcurl hatası " + std::to_string(static_cast<int>(code));
        }
    }

    /// Whether connecting or answering took too long. With TLS, connected means after the handshake.
    [[nodiscard]] HttpError::Kind lateKind() const {
        curl_off_t connected = 0;
        curl_.easyGetinfo(easy_, isSecure_ ? CURLINFO_APPCONNECT_TIME_T : CURLINFO_CONNECT_TIME_T,
                          &connected);
        return connected > 0 ? HttpError::Kind::late : HttpError::Kind::unconnected;
    }

    [[nodiscard]] HttpError::Kind kindOf(CURLcode code) const {
        if (received_.isTooLong)
            return HttpError::Kind::tooLong;
        switch (code) {
            case CURLE_COULDNT_CONNECT:
                return HttpError::Kind::unreachable;
            case CURLE_OPERATION_TIMEDOUT:
                return lateKind();
            case CURLE_PARTIAL_FILE:
            case CURLE_GOT_NOTHING:
            case CURLE_SEND_ERROR:
            case CURLE_RECV_ERROR:
                return HttpError::Kind::brokenOff;
            default:
                return HttpError::Kind::other;
        }
    }

    const PipeSignalBlocked noPipeSignal_;
    const CurlLibrary& curl_;
    Clock::time_point deadline_;
    Received received_;
    CURL* easy_ = nullptr;
    CURLM* multi_ = nullptr;
    curl_slist* headers_ = nullptr;
    curl_slist* addresses_ = nullptr;
    bool isSecure_ = false;
    bool isReady_ = false;
    bool isAdded_ = false;
};

}  // namespace

std::expected<HttpReply, HttpError> exchange(const ModelAddress& address, const HttpRequest& request,
                                             const std::stop_token& stop) {
    const CurlLibrary* curl = CurlLibrary::instance();
    if (curl == nullptr)
        return std::unexpected(HttpError{.text = "libcurl kurulu değil"});
    return Exchange(*curl, address, request).run(stop);
}

}  // namespace ulvak
