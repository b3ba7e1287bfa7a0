#include "ui/window_model.h"

#include <QTimer>
#include <algorithm>
#include <utility>

#include "cli/command_line.h"

namespace ulvak {
WindowModel::WindowModel(AppModel& app, QObject* parent)
    : QObject(parent),
      app_(app),
      findings_(app),
      list_(app, findings_),
      detail_(app),
      several_(app),
      disk_(app),
      scan_(app),
      summary_(app),
      trash_(app),
      analysis_(app),
      alert_(app),
      actions_(app) {
    // After the sidebar's bindings: a list being hidden must not report that it has no level.
    connect(this, &WindowModel::sidebarChanged, &list_, &LevelListModel::changed);
    connect(list_.selection(), &FindingSelection::changed, this, &WindowModel::followDetail);
    connect(&app_, &AppModel::phaseChanged, this, &WindowModel::selectFirst);
    connect(&app_, &AppModel::cleaningEnded, this, &WindowModel::stoppingChanged);
    connect(&app_, &AppModel::cleaningEnded, this, &WindowModel::closeWhenStopped);
    connect(&app_, &AppModel::alertChanged, this, &WindowModel::closeWhenStopped);
}

void WindowModel::launch(const QStringList& arguments) {
    const CommandLine line = CommandLine::parse(arguments, &QString::toStdString);
    if (const auto level = safetyLevel(line.level.value_or("")))
        setSidebar(SidebarItem{*level});
    selectsFirst_ = line.selectFirst;
    if (line.autoscan)
        app_.scan();
}

bool WindowModel::mayClose() {
    if (isClosing_ || asksNobody_ || !app_.isCleaning())
        return true;
    emit closeQuestioned();
    return false;
}

void WindowModel::stopAndClose() {
    isClosing_ = true;
    app_.stopCleaning();
    emit stoppingChanged();
    closeWhenStopped();
}

void WindowModel::closeWhenStopped() {
    // Deferred to the event loop: this may be called by something that is destroyed with the window.
    if (isClosing_ && !app_.isCleaning() && !app_.alert())
        QTimer::singleShot(0, this, &WindowModel::closeRequested);
}

void WindowModel::selectFirst() {
    const auto level = selectedLevel();
    if (!selectsFirst_ || !level || app_.phase() != AppModel::Phase::done)
        return;
    if (const Findings rows = app_.findings(*level); !rows.empty())
        list_.selection()->set({rows.front()->id});
}

std::optional<SafetyLevel> WindowModel::selectedLevel() const {
    const auto* level = sidebar_ ? std::get_if<SafetyLevel>(&sidebar_->value) : nullptr;
    return level != nullptr ? std::optional(*level) : std::nullopt;
}

int WindowModel::sidebarRow() const {
    const auto level = selectedLevel();
    if (!level)
        return sidebar_ ? 0 : -1;
    const auto levels = displayedSafetyLevels();
    return 1 + static_cast<int>(std::ranges::find(levels, *level) - levels.begin());
}

void WindowModel::setSidebarRow(int row) {
    const auto levels = displayedSafetyLevels();
    const auto place = static_cast<std::size_t>(row) - 1;
    if (row == 0)
        setSidebar(SidebarItem{SidebarItem::Overview{}});
    else
        setSidebar(place < levels.size() ? std::optional(SidebarItem{levels[place]}) : std::nullopt);
}

void WindowModel::setSidebar(std::optional<SidebarItem> item) {
    if (item == sidebar_)
        return;
    sidebar_ = item;
    list_.setLevel(selectedLevel());
    emit sidebarChanged();
}

bool WindowModel::isOverview() const {
    return !selectedLevel();
}

void WindowModel::followDetail() {
    const Findings& selected = list_.selection()->findings();
    detail_.setFinding(selected.size() == 1 ? selected.front() : nullptr);
    DetailKind kind = DetailKind::Empty;
    if (!selected.empty())
        kind = selected.size() == 1 ? DetailKind::One : DetailKind::Several;
    several_.setItems(selected.size() > 1 ? selected : Findings());
    if (std::exchange(detailKind_, kind) != kind)
        emit detailKindChanged();
}

}  // namespace ulvak
