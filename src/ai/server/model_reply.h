#pragma once

#include <cstdint>
#include <expected>
#include <string>
#include <string_view>
#include <vector>

#include "platform/language_model.h"

/// What the replies of a local model server mean. Pure; nothing of a reply is trusted. The interface is the
/// one that such servers have in common: lists of models and chat completions as JSON.
namespace ulvak {

/// A list of models, or why there is none.
struct ModelList {
    enum class State {
        listed,
        loading,   ///< the server is there, its model is not yet
        notAList,  ///< something else answers
    };
    State state = State::notAList;
    std::vector<std::string> names;  ///< in the server's order
};

/// The reply to GET /v1/models.
[[nodiscard]] ModelList readModelList(long status, std::string_view body);

/// Whether a model of this name runs elsewhere: servers on this machine pass on requests for those. What
/// follows an "@", a digest mostly, does not belong to the name.
[[nodiscard]] bool isCloudModel(std::string_view name);

/// The body of POST /api/show.
[[nodiscard]] std::string showBody(std::string_view model);

/// Where a model runs, by what its server says: a name can be anything, a copied model's too.
enum class ModelPlace : std::uint8_t {
    here,
    elsewhere,
    notAsked,  ///< the server does not know the question, so that all its models are its own
    unclear,   ///< anything else
};

/// The reply to it.
[[nodiscard]] ModelPlace readShow(long status, std::string_view body);

/// Whether a reply says that a model is being loaded: by an error that speaks of it, or any with status 503.
/// Without an error in JSON a 503 is that of something else, a proxy's for instance.
[[nodiscard]] bool isLoading(long status, std::string_view body);

/// The reply to POST /v1/chat/completions: the text that the model wrote, or what went wrong, told apart by
/// - guardrailViolation: a choice that ended for "content_filter", or an error whose code or type says so;
/// - refusal: a message with a "refusal", or an error whose code or type says so;
/// - unsupportedLanguage: an error whose code or type says so ("unsupported_language", "unsupported_locale"
///   and their like), or whose message does in so many words.
/// `server` is the server's address for the user.
[[nodiscard]] std::expected<std::string, platform::ModelError> readAnswer(long status, std::string_view body,
                                                                          std::string_view server);

/// The body of POST /v1/chat/completions. The instructions begin the system message and the prompt is the
/// user message, both unchanged. Servers hold an answer to the schema without showing it to the model, so it
/// follows the instructions as text.
[[nodiscard]] std::string chatBody(const platform::ModelRequest& request, std::string_view model);

/// At most `maxLength` bytes of a text, whole characters, runs of white space as one blank.
[[nodiscard]] std::string clipped(std::string_view text, std::size_t maxLength);

}  // namespace ulvak
