#include "ui/finding_selection.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

namespace ulvak {
namespace {

bool has(int modifiers, Qt::KeyboardModifier key) {
    return Qt::KeyboardModifiers::fromInt(static_cast<unsigned>(modifiers)).testFlag(key);
}

}  // namespace

FindingSelection::FindingSelection(const AppModel& app, FindingListModel& rows, QObject* parent)
    : QObject(parent), app_(app), rows_(rows) {
    connect(&rows, &FindingListModel::followed, this, &FindingSelection::followRows);
}

std::optional<std::string> FindingSelection::idAt(int row) const {
    const FindingPointer finding = rows_.at(row);
    return finding ? std::optional(finding->id) : std::nullopt;
}

int FindingSelection::currentRow() const {
    return current_.empty() ? -1 : rows_.rowOf(current_);
}

void FindingSelection::set(Ids ids) {
    ids_ = std::move(ids);
    keepWhatHasRows();
    anchor_ = current_ = ids_.empty() ? std::string() : *ids_.begin();
    notify();
}

void FindingSelection::press(int row, int modifiers) {
    const auto id = idAt(row);
    if (!id)
        return;
    const bool extends = has(modifiers, Qt::ShiftModifier);
    const bool toggles = has(modifiers, Qt::ControlModifier);
    if (extends) {
        extendTo(row, toggles);
    } else if (toggles) {
        if (ids_.erase(*id) == 0)
            ids_.insert(*id);
        anchor_ = *id;
    } else {
        ids_ = {*id};
        anchor_ = *id;
    }
    current_ = *id;
    notify();
}

void FindingSelection::pressForMenu(int row) {
    const auto id = idAt(row);
    if (id && !ids_.contains(*id))
        press(row, Qt::NoModifier);
}

void FindingSelection::moveTo(int row, int modifiers) {
    if (rows_.count() == 0)
        return;
    const int nearest = std::clamp(row, 0, rows_.count() - 1);
    const bool extends = has(modifiers, Qt::ShiftModifier);
    if (extends || !has(modifiers, Qt::ControlModifier)) {
        press(nearest, extends ? Qt::ShiftModifier : Qt::NoModifier);
        return;
    }
    current_ = idAt(nearest).value_or(std::string());
    notify();
}

void FindingSelection::toggleCurrent() {
    press(currentRow(), Qt::ControlModifier);
}

void FindingSelection::extendTo(int row, bool keepsOthers) {
    if (anchor_.empty())
        anchor_ = idAt(row).value_or(std::string());
    if (!keepsOthers)
        ids_.clear();
    const int from = rows_.rowOf(anchor_);
    const auto [first, last] = std::minmax(from, row);
    for (int index = first; index <= last; ++index) {
        if (auto id = idAt(index))
            ids_.insert(std::move(*id));
    }
}

void FindingSelection::selectAll() {
    for (int row = 0; row < rows_.count(); ++row) {
        if (auto id = idAt(row))
            ids_.insert(std::move(*id));
    }
    notify();
}

void FindingSelection::clear() {
    ids_.clear();
    notify();
}

void FindingSelection::keepWhatHasRows() {
    std::erase_if(ids_, [this](const std::string& id) {
        const FindingPointer finding = app_.finding(id);
        return !finding || !rows_.shows(*finding);
    });
}

void FindingSelection::followRows() {
    if (rows_.removed().empty()) {
        keepWhatHasRows();
        collect();
    } else {
        dropRemoved();
    }
    if (rows_.rowOf(anchor_) < 0)
        anchor_.clear();
    // Focus moves to the row that took its place.
    if (currentRow() < 0)
        current_ = idAt(std::min(place_, rows_.count() - 1)).value_or(std::string());
    tell();
}

void FindingSelection::dropRemoved() {
    // Thousands may be selected while a few at a time are removed.
    std::unordered_set<const Finding*> gone;
    for (const FindingPointer& finding : rows_.removed()) {
        ids_.erase(finding->id);
        gone.insert(finding.get());
    }
    std::erase_if(findings_, [&](const FindingPointer& finding) { return gone.contains(finding.get()); });
}

void FindingSelection::collect() {
    std::unordered_set<const Finding*> chosen;
    for (const std::string& id : ids_)
        chosen.insert(app_.finding(id).get());
    findings_.clear();
    for (const int row : rows_.rowsOf(chosen))
        findings_.push_back(rows_.at(row));
}

void FindingSelection::notify() {
    collect();
    tell();
}

void FindingSelection::tell() {
    place_ = currentRow();
    rows_.setSelected(ids_);
    emit changed();
}

}  // namespace ulvak
