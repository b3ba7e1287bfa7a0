#include "ai/server/local_model.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <expected>
#include <map>
#include <mutex>
#include <string_view>
#include <utility>

#include "ai/server/curl_library.h"
#include "ai/server/http_exchange.h"
#include "ai/server/model_address.h"
#include "ai/server/model_reply.h"

namespace ulvak {
namespace {

using Reason = platform::ModelAbsenceReason;
using std::chrono::milliseconds;

constexpr std::string_view stoppedText = "İstek durduruldu.";
/// Maximum models of one server that are asked about, in turn, until one runs here.
constexpr int maxShown = 4;

/// A time budget shared by several requests.
class SharedTime {
public:
    explicit SharedTime(milliseconds whole) : end_(std::chrono::steady_clock::now() + whole) {}

    [[nodiscard]] milliseconds left() const {
        const auto left = std::chrono::ceil<milliseconds>(end_ - std::chrono::steady_clock::now());
        return std::max(left, milliseconds::zero());
    }

private:
    std::chrono::steady_clock::time_point end_;
};

/// A server and the model to ask there.
struct Endpoint {
    ModelAddress address;
    std::string model;
    bool isListed = false;  ///< whether the server lists the model under this name
    bool mayKnow = false;   ///< whether the server may know where its models run
};

platform::ModelAbsence absent(Reason reason, std::string_view detail) {
    return {.reason = reason, .detail = clipped(detail, platform::ModelError::maxTextLength)};
}

/// What a failed request means to the user.
std::string describe(const HttpError& error, const ModelAddress& address, milliseconds deadline) {
    const std::string place = "Model sunucusu (" + address.display() + ")";
    switch (error.kind) {
        case HttpError::Kind::unreachable:
            return place + " çalışmıyor. Sunucuyu başlat ya da adresini ULVAK_MODEL_URL ile ver.";
        case HttpError::Kind::unconnected:
            return "Model sunucusuna (" + address.display() +
                   ") ulaşılamıyor: bağlantı kurulamadı. Sunucuyu yeniden başlat ya da adresini "
                   "ULVAK_MODEL_URL ile ver.";
        case HttpError::Kind::late:
            return place + " " + std::to_string(std::chrono::ceil<std::chrono::seconds>(deadline).count()) +
                   " saniye içinde yanıt vermedi. Daha küçük bir model dene ya da sunucuyu yeniden başlat.";
        case HttpError::Kind::brokenOff:
            return place + " bağlantıyı yanıt bitmeden kesti. Sunucuyu yeniden başlatıp tekrar dene.";
        case HttpError::Kind::tooLong:
            return place + " sınırsız uzunlukta bir yanıt gönderdi. Başka bir model dene.";
        case HttpError::Kind::stopped:
            return std::string(stoppedText);
        case HttpError::Kind::other:
            break;
    }
    return place + " ile konuşulamadı: " + error.text + ". Adresin doğru olduğundan emin ol.";
}

std::string cloudRefusal(std::string_view model) {
    return "Bir bulut modeli klasör bilgilerini bu bilgisayardan çıkarır (" + clipped(model, 200) +
           "). ULVAK_MODEL ile bu bilgisayarda çalışan bir model seç.";
}

/// Why a server cannot be used.
struct Missing {
    platform::ModelAbsence absence;
    bool isModelServer = false;  ///< false: something else, or nothing
};

bool isSilence(const HttpError& error) {
    return error.kind == HttpError::Kind::late || error.kind == HttpError::Kind::unconnected;
}

std::unexpected<Missing> without(const ModelAddress& address, Reason reason, std::string_view saying) {
    return std::unexpected(Missing{
        .absence = absent(reason, "Model sunucusu (" + address.display() + ") " + std::string(saying)),
        .isModelServer = true});
}

std::unexpected<Missing> refusedCloud(Reason reason, std::string_view model) {
    return std::unexpected(Missing{.absence = absent(reason, cloudRefusal(model)), .isModelServer = true});
}

std::unexpected<Missing> notAModelServer(const ModelAddress& address, long status) {
    return std::unexpected(Missing{
        absent(Reason::other,
               address.display() + " adresinde yanıt veren program (HTTP " + std::to_string(status) +
                   ") modellerini listelemiyor. Model sunucusunun adresini ULVAK_MODEL_URL ile ver.")});
}

/// One request within the remaining time.
std::expected<HttpReply, HttpError> ask(const ModelAddress& address, std::string path,
                                        std::optional<std::string> json, const SharedTime& time,
                                        const std::stop_token& stop) {
    const milliseconds left = time.left();
    return exchange(
        address,
        {.path = std::move(path), .json = std::move(json), .connectDeadline = left, .deadline = left}, stop);
}

std::unexpected<Missing> loading(const ModelAddress& address) {
    return without(address, Reason::notReady, "modelini henüz yüklüyor. Biraz sonra tekrar dene.");
}

/// Asks one server for its models, and whether it is ready. If the user has named both server and model, the
/// server need not list any.
std::expected<ModelList, Missing> modelsAt(const ModelAddress& address, bool mayListNothing,
                                           milliseconds deadline, const std::stop_token& stop) {
    const SharedTime time(deadline);
    const auto reply = ask(address, "/v1/models", std::nullopt, time, stop);
    if (!reply) {
        Missing missing{absent(Reason::other, describe(reply.error(), address, deadline))};
        missing.absence.isSilent = isSilence(reply.error());
        return std::unexpected(std::move(missing));
    }
    ModelList list = readModelList(reply->status, reply->body);
    const bool knowsNoLists = reply->status == 404 || reply->status == 405;
    if (list.state == ModelList::State::notAList && !(mayListNothing && knowsNoLists))
        return notAModelServer(address, reply->status);
    if (list.state == ModelList::State::loading)
        return loading(address);
    // Some servers list a model that is still loading, and report here that it is not ready.
    const auto health = ask(address, "/health", std::nullopt, time, stop);
    if (!health)
        return list;
    if (isLoading(health->status, health->body))
        return loading(address);
    constexpr long serviceUnavailable = 503;
    if (health->status == serviceUnavailable)
        return without(address, Reason::other,
                       "şu an hizmet veremediğini söylüyor (HTTP 503). Sunucuyu yeniden başlat.");
    return list;
}

/// Where the models of one server run. A model is asked only if it is known to run here: facts about the
/// user's folders must not leak through a server that was too slow to say that it forwards them.
class Whereabouts {
public:
    Whereabouts(const ModelAddress& address, milliseconds deadline, const std::stop_token& stop,
                bool mayKnow = false)
        : address_(address), stop_(stop), deadline_(deadline), time_(deadline), mayKnow_(mayKnow) {}

    /// Whether the server seems to support the request.
    [[nodiscard]] bool mayKnow() const { return mayKnow_; }
    /// Whether the last obstacle was a timeout.
    [[nodiscard]] bool isSilent() const { return isSilent_; }

    /// nullopt if the model runs here, otherwise why it must not be asked. A server without the request has
    /// only models of its own. One that seems to support it must answer for each model.
    [[nodiscard]] std::optional<Missing> obstacle(const std::string& model, Reason ifElsewhere) {
        const auto reply = ask(address_, "/api/show", showBody(model), time_, stop_);
        isSilent_ = !reply && isSilence(reply.error());
        const ModelPlace place = reply ? readShow(reply->status, reply->body) : ModelPlace::unclear;
        if (place == ModelPlace::here || (place == ModelPlace::notAsked && !mayKnow_)) {
            mayKnow_ = mayKnow_ || place == ModelPlace::here;
            return std::nullopt;
        }
        mayKnow_ = true;
        if (place == ModelPlace::elsewhere)
            return refusedCloud(ifElsewhere, model).error();
        return unclear(model, reply
                                  ? "beklenmeyen bir yanıt verdi (HTTP " + std::to_string(reply->status) + ")"
                                  : failing(reply.error()));
    }

private:
    [[nodiscard]] std::string failing(const HttpError& error) const {
        switch (error.kind) {
            case HttpError::Kind::late:
                return std::to_string(std::chrono::ceil<std::chrono::seconds>(deadline_).count()) +
                       " saniye içinde yanıt vermedi";
            case HttpError::Kind::brokenOff:
                return "bağlantıyı yanıt bitmeden kesti";
            case HttpError::Kind::tooLong:
                return "sınırsız uzunlukta bir yanıt gönderdi";
            default:
                return "yanıt vermedi";
        }
    }

    [[nodiscard]] Missing unclear(std::string_view model, const std::string& why) const {
        return without(address_, Reason::other,
                       "\"" + clipped(model, 200) + "\" modelinin nerede çalıştığı sorulunca " + why +
                           ". Klasör bilgileri bu bilgisayardan çıkmasın diye bu modele sorulmuyor. Sunucuyu "
                           "yeniden başlat ya da ULVAK_MODEL ile başka bir model seç.")
            .error();
    }

    const ModelAddress& address_;
    const std::stop_token& stop_;
    const milliseconds deadline_;
    const SharedTime time_;
    bool mayKnow_;
    bool isSilent_ = false;
};

/// The first model that runs here, or why there is none.
std::expected<Endpoint, Missing> chosenModel(const ModelList& list, const ModelAddress& address,
                                             milliseconds deadline, const std::stop_token& stop) {
    if (list.names.empty())
        return std::unexpected(
            Missing{.absence = absent(Reason::other, "Model sunucusunda (" + address.display() +
                                                         ") hiç model yok. Önce bir model indir ve yükle."),
                    .isModelServer = true});
    Whereabouts whereabouts(address, deadline, stop);
    std::optional<Missing> first;
    int shown = 0;
    for (const std::string& name : list.names) {
        if (isCloudModel(name))
            continue;
        if (++shown > maxShown)
            break;
        auto obstacle = whereabouts.obstacle(name, Reason::other);
        if (!obstacle)
            return Endpoint{
                .address = address, .model = name, .isListed = true, .mayKnow = whereabouts.mayKnow()};
        if (!first)
            first = std::move(obstacle);
    }
    if (first)
        return std::unexpected(std::move(*first));
    return refusedCloud(Reason::other, list.names.front());
}

std::expected<Endpoint, Missing> endpointAt(const ModelAddress& address, const LocalModelSettings& settings,
                                            const std::stop_token& stop) {
    const std::optional<std::string>& named = settings.model;
    const auto list = modelsAt(address, settings.url && named,
                               settings.url ? settings.namedDeadline : settings.probeDeadline, stop);
    if (!list)
        return std::unexpected(list.error());
    if (!named)
        return chosenModel(*list, address, settings.showDeadline, stop);
    Whereabouts whereabouts(address, settings.showDeadline, stop);
    if (auto obstacle = whereabouts.obstacle(*named, Reason::deviceNotEligible))
        return std::unexpected(std::move(*obstacle));
    return Endpoint{.address = address,
                    .model = *named,
                    .isListed = std::ranges::find(list->names, *named) != list->names.end(),
                    .mayKnow = whereabouts.mayKnow()};
}

/// Default ports with a listener that does not answer: each costs its timeout once, and again only after a
/// pause.
class SilentPorts {
public:
    explicit SilentPorts(milliseconds pause) : pause_(pause) {}

    [[nodiscard]] bool includes(std::uint16_t port) const {
        const std::scoped_lock lock(mutex_);
        const auto known = ports_.find(port);
        return known != ports_.end() && Clock::now() < known->second.end;
    }
    void add(std::uint16_t port) {
        constexpr milliseconds maxPause = std::chrono::minutes(5);
        const std::scoped_lock lock(mutex_);
        Silence& silence = ports_[port];
        silence.pause =
            std::min(silence.pause == milliseconds::zero() ? pause_ : 2 * silence.pause, maxPause);
        silence.end = Clock::now() + silence.pause;
    }
    void remove(std::uint16_t port) {
        const std::scoped_lock lock(mutex_);
        ports_.erase(port);
    }

private:
    using Clock = std::chrono::steady_clock;
    struct Silence {
        milliseconds pause{};
        Clock::time_point end;
    };

    const milliseconds pause_;
    mutable std::mutex mutex_;
    std::map<std::uint16_t, Silence> ports_;  ///< guarded by `mutex_`
};

/// The first server on the default ports that has the named model, else the first that has any. `last` is
/// where it was found before, if it was: then silence on another port does not mean that it is busy, and its
/// own port is always asked again.
std::expected<Endpoint, platform::ModelAbsence> discovered(const LocalModelSettings& settings,
                                                           SilentPorts& silent,
                                                           std::optional<std::uint16_t> last,
                                                           const std::stop_token& stop) {
    std::optional<Endpoint> second;
    std::optional<platform::ModelAbsence> nearest;
    platform::ModelAbsence none =
        absent(Reason::other,
               "Bu bilgisayarda çalışan bir model sunucusu bulunamadı. llama-server, Ollama "
               "ya da LM Studio gibi bir "
               "sunucu başlat ya da adresini ULVAK_MODEL_URL ile ver.");
    for (const std::uint16_t port : settings.ports) {
        const bool mayBeIt = !last || *last == port;
        if (port != last && silent.includes(port)) {
            none.isSilent = none.isSilent || mayBeIt;
            continue;
        }
        auto endpoint = endpointAt(loopbackAddress(port), settings, stop);
        if (stop.stop_requested())
            return std::unexpected(absent(Reason::other, stoppedText));
        const bool isSilent = !endpoint && endpoint.error().absence.isSilent;
        none.isSilent = none.isSilent || (isSilent && mayBeIt);
        if (isSilent)
            silent.add(port);
        else
            silent.remove(port);
        if (isSilent && port == last)
            none.detail = endpoint.error().absence.detail;
        if (endpoint && endpoint->isListed)
            return std::move(*endpoint);
        if (endpoint && !second)
            second = std::move(*endpoint);
        if (endpoint || !endpoint.error().isModelServer)
            continue;
        platform::ModelAbsence& absence = endpoint.error().absence;
        if (!nearest || (absence.reason == Reason::notReady && nearest->reason != Reason::notReady))
            nearest = std::move(absence);
    }
    if (second)
        return std::move(*second);
    if (nearest)
        return std::unexpected(std::move(*nearest));
    return std::unexpected(std::move(none));
}

/// Why no server is asked at all, if so. A stop request counts as an absence.
std::optional<platform::ModelAbsence> obstacleToAsking(const LocalModelSettings& settings,
                                                       const std::stop_token& stop) {
    if (settings.isOff)
        return absent(Reason::notEnabled,
                      "Model ULVAK_MODEL_OFF ile kapatılmış. Açmak için bu değişkeni kaldır.");
    if (CurlLibrary::instance() == nullptr)
        return absent(Reason::other, "libcurl bu sistemde kurulu değil (Debian'da libcurl4).");
    if (stop.stop_requested())
        return absent(Reason::other, stoppedText);
    if (settings.model && isCloudModel(*settings.model))
        return absent(Reason::deviceNotEligible, cloudRefusal(*settings.model));
    return std::nullopt;
}

/// The server and the model to ask. Nothing more is sent to a server that turns out not to be a model server.
/// A stop request counts as an absence, whatever was found until then.
std::expected<Endpoint, platform::ModelAbsence> findEndpoint(const LocalModelSettings& settings,
                                                             SilentPorts& silent,
                                                             std::optional<std::uint16_t> last,
                                                             const std::stop_token& stop) {
    if (!settings.url)
        return discovered(settings, silent, last, stop);
    auto address = modelAddress(*settings.url);
    if (!address)
        return std::unexpected(absent(Reason::deviceNotEligible, address.error().text));
    auto endpoint = endpointAt(*address, settings, stop);
    if (stop.stop_requested())
        return std::unexpected(absent(Reason::other, stoppedText));
    if (!endpoint)
        return std::unexpected(std::move(endpoint.error().absence));
    return std::move(*endpoint);
}

/// An environment variable; nullopt when empty.
std::optional<std::string> variable(const char* name) {
    const char* value = std::getenv(name);  // NOLINT(concurrency-mt-unsafe): nobody sets it
    return value != nullptr && *value != '\0' ? std::optional<std::string>(value) : std::nullopt;
}

}  // namespace

LocalModelSettings LocalModelSettings::fromEnvironment() {
    return {.url = variable("ULVAK_MODEL_URL"),
            .model = variable("ULVAK_MODEL"),
            .isOff = variable("ULVAK_MODEL_OFF").value_or("0") != "0"};
}

/// What is known of this machine's servers. Thread-safe.
class LocalModel::Memory {
public:
    explicit Memory(const LocalModelSettings& settings) : silent_(settings.silencePause) {}

    [[nodiscard]] std::optional<Endpoint> endpoint() const {
        const std::scoped_lock lock(mutex_);
        return endpoint_;
    }
    void forget() {
        const std::scoped_lock lock(mutex_);
        endpoint_.reset();
    }
    std::expected<Endpoint, platform::ModelAbsence> find(const LocalModelSettings& settings,
                                                         const std::stop_token& stop) {
        auto endpoint = findEndpoint(settings, silent_, last(), stop);
        const std::scoped_lock lock(mutex_);
        if (endpoint) {
            endpoint_ = *endpoint;
            last_ = endpoint->address.port;
        }
        return endpoint;
    }

private:
    [[nodiscard]] std::optional<std::uint16_t> last() const {
        const std::scoped_lock lock(mutex_);
        return last_;
    }

    SilentPorts silent_;
    mutable std::mutex mutex_;
    std::optional<Endpoint> endpoint_;  ///< the last that answered; guarded by `mutex_`
    std::optional<std::uint16_t>
        last_;  ///< its port, kept even when `endpoint_` is dropped; guarded by `mutex_`
};

LocalModel::LocalModel(LocalModelSettings settings)
    : settings_(std::move(settings)), memory_(std::make_unique<Memory>(settings_)) {}

LocalModel::~LocalModel() = default;

std::optional<platform::ModelAbsence> LocalModel::absence(std::stop_token stop) const {
    if (auto obstacle = obstacleToAsking(settings_, stop))
        return obstacle;
    if (const auto known = memory_->endpoint()) {
        const auto list = modelsAt(known->address, settings_.url && settings_.model,
                                   settings_.url ? settings_.namedDeadline : settings_.probeDeadline, stop);
        if (stop.stop_requested())
            return absent(Reason::other, stoppedText);
        if (list && (!known->isListed || std::ranges::find(list->names, known->model) != list->names.end()))
            return std::nullopt;
        if (!list && list.error().absence.isSilent)
            return list.error().absence;
        memory_->forget();
    }
    auto endpoint = memory_->find(settings_, stop);
    if (endpoint)
        return std::nullopt;
    return std::move(endpoint.error());
}

std::expected<std::string, platform::ModelError> LocalModel::respond(const platform::ModelRequest& request,
                                                                     std::stop_token stop) const {
    if (const auto obstacle = obstacleToAsking(settings_, stop))
        return std::unexpected(platform::ModelError{.text = obstacle->detail});
    auto known = memory_->endpoint();
    if (known) {
        // The model may run elsewhere by now. A busy server answers this late, but before it is told
        // anything.
        Whereabouts whereabouts(known->address, settings_.answerDeadline, stop, known->mayKnow);
        if (const auto obstacle = whereabouts.obstacle(known->model, Reason::other)) {
            if (whereabouts.isSilent())
                return std::unexpected(
                    platform::ModelError{.text = obstacle->absence.detail, .isSilent = true});
            memory_->forget();
            known.reset();
        }
    }
    const auto endpoint =
        known ? std::expected<Endpoint, platform::ModelAbsence>(*known) : memory_->find(settings_, stop);
    if (!endpoint)
        return std::unexpected(
            platform::ModelError{.text = endpoint.error().detail, .isSilent = endpoint.error().isSilent});
    const auto reply = exchange(endpoint->address,
                                {.path = "/v1/chat/completions",
                                 .json = chatBody(request, endpoint->model),
                                 .connectDeadline = settings_.namedDeadline,
                                 .deadline = settings_.answerDeadline},
                                stop);
    constexpr long ok = 200;
    if (reply ? reply->status != ok : !isSilence(reply.error()))
        memory_->forget();
    if (!reply)
        return std::unexpected(platform::ModelError{
            .text = clipped(describe(reply.error(), endpoint->address, settings_.answerDeadline),
                            platform::ModelError::maxTextLength),
            .isSilent = isSilence(reply.error())});
    auto answer = readAnswer(reply->status, reply->body, endpoint->address.display());
    if (!answer)
        answer.error().text = clipped(answer.error().text, platform::ModelError::maxTextLength);
    return answer;
}

}  // namespace ulvak
