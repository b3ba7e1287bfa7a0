#include "ai/server/model_reply.h"

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>
#include <optional>

#include "platform/ascii.h"

namespace ulvak {
namespace {

/// Keys in a tree: a hostile reply with many of them costs no more than its length.
using Json = nlohmann::json;
/// Keeps key order, for what is sent.
using OrderedJson = nlohmann::ordered_json;

/// Maximum bytes of a server's own error text.
constexpr std::size_t maxServiceTextLength = 600;
constexpr std::size_t maxModelNameLength = 300;
constexpr long serviceUnavailable = 503;

struct CodeRow {
    std::string_view code;  ///< prefix of a code or type, lower case, letters only
    platform::ModelError::Kind kind;
};

/// There is no common list; every row is used by some server or is the obvious name.
constexpr std::array<CodeRow, 12> codes = {{
    {"contentfilter", platform::ModelError::Kind::guardrailViolation},
    {"contentpolicy", platform::ModelError::Kind::guardrailViolation},
    {"guardrail", platform::ModelError::Kind::guardrailViolation},
    {"moderation", platform::ModelError::Kind::guardrailViolation},
    {"safety", platform::ModelError::Kind::guardrailViolation},
    {"refusal", platform::ModelError::Kind::refusal},
    {"modelrefusal", platform::ModelError::Kind::refusal},
    {"refused", platform::ModelError::Kind::refusal},
    {"unsupportedlanguage", platform::ModelError::Kind::unsupportedLanguage},
    {"unsupportedlocale", platform::ModelError::Kind::unsupportedLanguage},
    {"languagenotsupported", platform::ModelError::Kind::unsupportedLanguage},
    {"localenotsupported", platform::ModelError::Kind::unsupportedLanguage},
}};

/// Lower case.
constexpr std::array<std::string_view, 4> languageMessages = {
    "unsupported language or locale", "unsupported locale", "language is not supported",
    "language not supported"};

std::string lettersOf(std::string_view text) {
    std::string letters = platform::lowerAscii(text);
    std::erase_if(letters, [](char c) { return c < 'a' || c > 'z'; });
    return letters;
}

Json parsed(std::string_view body) {
    return Json::parse(body, nullptr, false);
}

/// A string member; empty if there is none.
std::string text(const Json& object, const char* key) {
    if (!object.is_object())
        return {};
    const auto found = object.find(key);
    return found != object.end() && found->is_string() ? found->get<std::string>() : std::string();
}

const Json* member(const Json& object, const char* key) {
    if (!object.is_object())
        return nullptr;
    const auto found = object.find(key);
    return found != object.end() && !found->is_null() ? &*found : nullptr;
}

/// An error reported by a server.
struct ServiceError {
    std::string code;
    std::string type;
    std::string message;
};

/// Servers write {"error": {"message", "type", "code"}}, {"error": "…"}, {"message": "…"} or {"detail": "…"}.
std::optional<ServiceError> serviceError(const Json& body) {
    const Json* error = member(body, "error");
    if (error != nullptr && error->is_object())
        return ServiceError{
            .code = text(*error, "code"), .type = text(*error, "type"), .message = text(*error, "message")};
    if (error != nullptr && error->is_string())
        return ServiceError{.message = error->get<std::string>()};
    if (error != nullptr)
        return ServiceError{};
    return std::nullopt;
}

/// The best available text of a reply that is not a success.
ServiceError wordsOf(const Json& json, std::string_view body) {
    if (auto error = serviceError(json))
        return std::move(*error);
    for (const char* key : {"message", "detail"}) {
        if (std::string found = text(json, key); !found.empty())
            return {.message = std::move(found)};
    }
    const std::size_t first = body.find_first_not_of(" \t\r\n");
    const bool isForPeople = json.is_discarded() && first != std::string_view::npos && body[first] != '<';
    return {.message = isForPeople ? std::string(body.substr(0, maxServiceTextLength)) : std::string()};
}

platform::ModelError::Kind kindOf(const ServiceError& error) {
    for (const std::string& name : {lettersOf(error.code), lettersOf(error.type)}) {
        const auto row =
            std::ranges::find_if(codes, [&](const CodeRow& r) { return name.starts_with(r.code); });
        if (row != codes.end())
            return row->kind;
    }
    const std::string message = platform::lowerAscii(error.message);
    const bool isLanguage = std::ranges::any_of(
        languageMessages, [&](std::string_view words) { return message.contains(words); });
    return isLanguage ? platform::ModelError::Kind::unsupportedLanguage : platform::ModelError::Kind::other;
}

/// "error loading model" is the opposite: that model will not be ready later either.
bool speaksOfLoading(const ServiceError& error) {
    return platform::lowerAscii(error.message).starts_with("loading model") ||
           platform::lowerAscii(error.type) == "unavailable_error";
}

platform::ModelError other(std::string text) {
    return {.text = std::move(text)};
}

platform::ModelError failure(long status, const ServiceError& error, std::string_view server) {
    const std::string place = "Model sunucusu (" + std::string(server) + ")";
    const std::string words = clipped(error.message, maxServiceTextLength);
    const platform::ModelError::Kind kind = kindOf(error);
    const bool saysNothing = status == serviceUnavailable && words.empty();
    if (kind == platform::ModelError::Kind::other && (saysNothing || speaksOfLoading(error)))
        return other(place + " modeli henüz yüklüyor. Biraz sonra tekrar dene." +
                     (words.empty() ? "" : " " + words));
    if (status >= 300 && status < 400)
        return other(place +
                     " isteği başka bir adrese yönlendirdi; yönlendirmeler izlenmez. Sunucunun kendi "
                     "adresini ULVAK_MODEL_URL ile ver.");
    const std::string said = words.empty() ? "Sunucunun kendi çıktısına bak." : words;
    return {.kind = kind,
            .text = place + " isteği geri çevirdi (HTTP " + std::to_string(status) + "): " + said};
}

/// For a successful reply that is JSON.
std::expected<std::string, platform::ModelError> answerIn(const Json& body, std::string_view server) {
    const std::string unexpected =
        "Model sunucusunun (" + std::string(server) +
        ") yanıtı beklenen biçimde değil. Sunucuyu güncelle ya da başka birini dene.";
    const Json* choices = member(body, "choices");
    if (choices == nullptr || !choices->is_array() || choices->empty())
        return std::unexpected(other(unexpected));
    const Json& choice = choices->front();
    const std::string ending = text(choice, "finish_reason");
    const Json* message = member(choice, "message");
    const std::string refusal = message != nullptr ? text(*message, "refusal") : std::string();
    if (ending == "content_filter")
        return std::unexpected(
            platform::ModelError{.kind = platform::ModelError::Kind::guardrailViolation,
                                 .text = "Modelin güvenlik filtresi yanıtı durdurdu (content_filter)."});
    if (!refusal.empty())
        return std::unexpected(platform::ModelError{
            .kind = platform::ModelError::Kind::refusal,
            .text = "Model yanıt vermeyi reddetti: " + clipped(refusal, maxServiceTextLength)});
    if (ending == "length")
        return std::unexpected(other(
            "Modelin yanıtı yarım kaldı: bağlamı bu klasörün bilgilerine yetmedi. Sunucuyu daha büyük bir "
            "bağlamla başlat ya da başka bir model seç."));
    const Json* content = message != nullptr ? member(*message, "content") : nullptr;
    if (content == nullptr || !content->is_string())
        return std::unexpected(other(unexpected));
    return content->get<std::string>();
}

}  // namespace

ModelList readModelList(long status, std::string_view body) {
    if (isLoading(status, body))
        return {.state = ModelList::State::loading};
    const Json json = parsed(body);
    if (status != 200 || !json.is_object() || !json.contains("data"))
        return {};
    ModelList list{.state = ModelList::State::listed};
    const Json& data = json["data"];
    if (data.is_null())  // an empty list, as one of the servers writes it
        return list;
    if (!data.is_array())
        return {};
    for (const Json& entry : data) {
        std::string name = text(entry, "id");
        if (!name.empty() && name.size() <= maxModelNameLength)
            list.names.push_back(std::move(name));
    }
    return list;
}

bool isCloudModel(std::string_view name) {
    std::string lower = platform::lowerAscii(name.substr(0, name.find('@')));
    lower.resize(lower.find_last_not_of(" \t\n\v\f\r") + 1);
    return lower.ends_with("-cloud") || lower.ends_with(":cloud");
}

std::string showBody(std::string_view model) {
    const Json body = {{"model", model}};
    return body.dump(-1, ' ', false, Json::error_handler_t::replace);
}

ModelPlace readShow(long status, std::string_view body) {
    constexpr std::array<long, 3> unknown = {404, 405, 501};
    const Json json = parsed(body);
    if (std::ranges::find(unknown, status) != unknown.end()) {
        // A server that supports the request reports a missing model the same way.
        const auto error = serviceError(json);
        return error && platform::lowerAscii(error->message).contains("model") ? ModelPlace::unclear
                                                                               : ModelPlace::notAsked;
    }
    if (status != 200 || !json.is_object())
        return ModelPlace::unclear;
    // One of the servers returns status 200 even for requests it does not know.
    if (const auto error = serviceError(json))
        return platform::lowerAscii(error->message).starts_with("unexpected endpoint") ? ModelPlace::notAsked
                                                                                       : ModelPlace::unclear;
    for (const char* key : {"remote_host", "remote_model"}) {
        const Json* place = member(json, key);
        if (place != nullptr && !place->is_string())
            return ModelPlace::unclear;
        if (place != nullptr && !place->get_ref<const std::string&>().empty())
            return ModelPlace::elsewhere;
    }
    return ModelPlace::here;
}

bool isLoading(long status, std::string_view body) {
    if (status >= 200 && status < 300)
        return false;
    const auto error = serviceError(parsed(body));
    return error && (status == serviceUnavailable || speaksOfLoading(*error));
}

std::expected<std::string, platform::ModelError> readAnswer(long status, std::string_view body,
                                                            std::string_view server) {
    const Json json = parsed(body);
    const auto error = serviceError(json);
    if (status != 200 || error)
        return std::unexpected(failure(status, wordsOf(json, body), server));
    if (json.is_discarded())
        return std::unexpected(other("Model sunucusunun (" + std::string(server) +
                                     ") yanıtı JSON değil ya da yarım kalmış. Tekrar dene; sürerse sunucuyu "
                                     "yeniden başlat."));
    return answerIn(json, server);
}

std::string chatBody(const platform::ModelRequest& request, std::string_view model) {
    const std::string system =
        request.instructions +
        "\n\nAnswer with one JSON object and nothing else. It must match this JSON schema:\n" +
        request.answerSchema;
    const OrderedJson body = {
        {"model", model},
        {"messages",
         {{{"role", "system"}, {"content", system}}, {{"role", "user"}, {"content", request.prompt}}}},
        {"temperature", request.temperature},
        {"stream", false},
        {"response_format",
         {{"type", "json_schema"},
          {"json_schema",
           {{"name", request.answerName},
            {"strict", true},
            {"schema", OrderedJson::parse(request.answerSchema)}}}}},
    };
    return body.dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::string clipped(std::string_view text, std::size_t maxLength) {
    std::string line;
    for (const char c : text) {
        if (line.size() > maxLength)
            break;
        const bool isSpace = c == ' ' || (c >= '\t' && c <= '\r');
        if (!isSpace)
            line += c;
        else if (!line.empty() && !line.ends_with(' '))
            line += ' ';
    }
    if (line.ends_with(' '))
        line.pop_back();
    if (line.size() <= maxLength)
        return line;
    constexpr std::string_view cutMark = "…";
    std::size_t end = maxLength - std::min(maxLength, cutMark.size());
    while (end > 0 && platform::isContinuation(line[end]))
        --end;
    line.resize(end);
    return line.append(cutMark);
}

}  // namespace ulvak
