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
    /// The server, when the user names one. As `modelAddress` takes it.
    std::optional<std::string> url;
    /// The model, when the user names one; else the first that the server lists and that runs here.
    std::optional<std::string> model;
    bool isOff = false;
    /// Where servers listen by default; tried in this order when none is named.
    std::vector<std::uint16_t> ports = {8080, 11434, 1234};
    std::chrono::milliseconds probeDeadline{
        1'000};  ///< for all that is asked to find out what such a port is
    std::chrono::milliseconds namedDeadline{5'000};     ///< the same for the server that the user names
    std::chrono::milliseconds showDeadline{5'000};      ///< for asking a server found where its models run
    std::chrono::milliseconds answerDeadline{180'000};  ///< until a model has answered
    /// Before somebody on a usual port who has not answered is asked again; twice as long each time.
    std::chrono::milliseconds silencePause{10'000};

    /// ULVAK_MODEL_URL, ULVAK_MODEL, and ULVAK_MODEL_OFF (anything but "0"); an empty one counts as unset.
    [[nodiscard]] static LocalModelSettings fromEnvironment();
};

/// A language model behind a server on this machine. A server that was found is remembered while it answers,
/// and while it is too busy to; one that is started later, or again elsewhere, is found.
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
