#pragma once

#include <array>
#include <string_view>

namespace ulvak::platform {

/// What this system's users call things, in the forms that our Turkish texts need.
struct Words {
    std::string_view model;              ///< the language model, as a name: "Apple Intelligence"
    std::string_view ofModel;            ///< "Apple Intelligence'ın", at the beginning of a sentence
    std::string_view withModel;          ///< "Apple Intelligence ile", within a sentence
    std::string_view withModelFirst;     ///< the same at the beginning of one
    std::string_view withModelOnButton;  ///< the same on a button
    std::string_view inFileManager;      ///< "Finder'da", within a sentence
    std::string_view showInFileManager;  ///< on a button
    std::string_view unknownSummary;     ///< of the level of what nobody knows
    std::string_view cleaningDoes;       ///< what cleaning does to items, none of which is a simulator
    std::string_view denied;             ///< after the number of folders that could not be listed
    /// Why the model is unavailable, by `ModelAbsenceReason`.
    std::array<std::string_view, 4> modelAbsence;
};

[[nodiscard]] const Words& words();

}  // namespace ulvak::platform
