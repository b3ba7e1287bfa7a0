#include "app/finding_action.h"

#include <algorithm>
#include <array>

#include "core/paths.h"
#include "core/words.h"

namespace ulvak {
namespace {

using Problem = FindingAction::Problem;

std::optional<Problem> reveal(const AppServices& services, const Finding& finding) {
    if (services.reveal(finding.urls))
        return std::nullopt;
    return Problem{.title = "Klasör açılamadı",
                   .message = "“" + Paths::display(finding.urls.front(), services.folders) +
                              "” gösterilemedi: klasörleri açacak bir dosya yöneticisi bulunamadı."};
}

}  // namespace

std::span<const FindingAction> findingActions() {
    static const std::array actions = {
        FindingAction{
            .name = "reveal", .title = words().showInFileManager, .symbol = "folder", .perform = reveal},
    };
    return actions;
}

const FindingAction* findingAction(std::string_view name) {
    const auto actions = findingActions();
    const auto found = std::ranges::find(actions, name, &FindingAction::name);
    return found == actions.end() ? nullptr : &*found;
}

}  // namespace ulvak
