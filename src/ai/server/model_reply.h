#pragma once

#include <cstdint>
#include <expected>
#include <string>
#include <string_view>
#include <vector>

#include "platform/language_model.h"

/// Interprets the replies of a local model server. Pure; no reply is trusted. The interface is the one such
/// servers share: model lists and chat completions as JSON.
namespace ulvak {

/// A list of models, or why there is none.
struct ModelList {
    enum class State {
        listed,
        loading,   ///< the server is up, its model is not loaded yet
        notAList,  ///< something else answers
    };
    State state = State::notAList;
    std::vector<std::string> names;  ///< in the server's order
};

/// Parses the reply to GET /v1/models.
[[nodiscard]] ModelList readModelList(long status, std::string_view body);

/// Whether a model of this name runs elsewhere: local servers forward requests for those. Anything after an
/// "@", usually a digest, is not part of the name.
[[nodiscard]] bool isCloudModel(std::string_view name);

/// The body of POST /api/show.
[[nodiscard]] std::string showBody(std::string_view model);

/// Where a model runs, according to its server. The name proves nothing, and a copied model can have any.
enum class ModelPlace : std::uint8_t {
    here,
    elsewhere,
    notAsked,  ///< the server does not know the request, so all its models are its own
    unclear,   ///< anything else
};

/// Parses the reply to POST /api/show.
[[nodiscard]] ModelPlace readShow(long status, std::string_view body);

/// Whether a reply says that a model is loading: an error that says so, or any JSON error with status 503. A
/// 503 without a JSON error comes from something else, such as a proxy.
[[nodiscard]] bool isLoading(long status, std::string_view body);

/// Parses the reply to POST /v1/chat/completions: the text that the model wrote, or what went wrong:
/// - guardrailViolation: a choice that ended for "content_filter", or an error whose code or type says so;
/// - refusal: a message with a "refusal", or an error whose code or type says so;
/// - unsupportedLanguage: an error whose code or type says so ("unsupported_language", "unsupported_locale"
///   and the like), or whose message literally does.
/// `server` is the server's address, for messages.
[[nodiscard]] std::expected<std::string, platform::ModelError> readAnswer(long status, std::string_view body,
                                                                          std::string_view server);

/// The body of POST /v1/chat/completions. The instructions begin the system message and the prompt is the
/// user message, both verbatim. Servers enforce the schema without showing it to the model, so it is appended
/// to the instructions as text.
[[nodiscard]] std::string chatBody(const platform::ModelRequest& request, std::string_view model);

/// At most `maxLength` bytes of a text, in whole characters; runs of white space become one space.
[[nodiscard]] std::string clipped(std::string_view text, std::size_t maxLength);

}  // namespace ulvak
