#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/language_model.h"

namespace ulvak {

struct LocalModelSettings {
    /// The server, if the user names one. Format as in `modelAddress`.
    std::optional<std::string> url;
    /// The model, if the user names one; otherwise the first listed one that runs here.
    std::optional<std::string> model;
    bool isOff = false;
    /// Default ports; tried in this order when no server is named.
    std::vector<std::uint16_t> ports = {8080, 11434, 1234};
    std::chrono::milliseconds probeDeadline{
        1'000};  ///< for everything asked to identify the server on such a port
    std::chrono::milliseconds namedDeadline{5'000};     ///< the same for the server that the user names
    std::chrono::milliseconds showDeadline{5'000};      ///< for asking a known server where its models run
    std::chrono::milliseconds answerDeadline{180'000};  ///< for a model's answer
    /// Delay before a default port whose server did not answer is tried again; doubles each time.
    std::chrono::milliseconds silencePause{10'000};

    /// Reads ULVAK_MODEL_URL, ULVAK_MODEL, and ULVAK_MODEL_OFF (anything but "0"). An empty variable counts
    /// as unset.
    [[nodiscard]] static LocalModelSettings fromEnvironment();
};

/// A language model behind a server on this machine. A server once found is remembered while it answers, or
/// is too busy to; one started later, or restarted elsewhere, is found.
class LocalModel : public platform::LanguageModel {
public:
    explicit LocalModel(LocalModelSettings settings);
    ~LocalModel() override;
    LocalModel(const LocalModel&) = delete;
    LocalModel& operator=(const LocalModel&) = delete;

    [[nodiscard]] std::optional<platform::ModelAbsence> absence(std::stop_token stop = {}) const override;
    [[nodiscard]] std::expected<std::string, platform::ModelError> respond(
        const platform::ModelRequest& request, std::stop_token stop = {}) const override;

private:
    class Memory;

    const LocalModelSettings settings_;
    std::unique_ptr<Memory> memory_;
};

}  // namespace ulvak
