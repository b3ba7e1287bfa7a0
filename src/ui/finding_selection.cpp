#include "ui/finding_selection.h"

#include <algorithm>
#include <utility>

namespace ulvak {
namespace {

bool has(int modifiers, Qt::KeyboardModifier key) {
    return Qt::KeyboardModifiers::fromInt(static_cast<unsigned>(modifiers)).testFlag(key);
}

}  // namespace

FindingSelection::FindingSelection(const FindingListModel& rows, QObject* parent)
    : QObject(parent), rows_(rows) {
    // The row of the focus moves with what is in front of it.
    connect(&rows, &QAbstractItemModel::rowsInserted, this, &FindingSelection::notify);
    connect(&rows, &QAbstractItemModel::rowsRemoved, this, &FindingSelection::notify);
    connect(&rows, &QAbstractItemModel::modelReset, this, &FindingSelection::notify);
}

std::optional<std::string> FindingSelection::idAt(int row) const {
    const FindingPointer finding = rows_.at(row);
    return finding ? std::optional(finding->id) : std::nullopt;
}

int FindingSelection::currentRow() const {
    if (current_.empty())
        return -1;
    const int row = rows_.rowOf(current_);
    return row >= 0 ? row : std::min(place_, rows_.count() - 1);
}

void FindingSelection::set(Ids ids) {
    anchor_ = current_ = ids.empty() ? std::string() : *ids.begin();
    ids_ = std::move(ids);
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
    const int from = anchor_.empty() ? row : rows_.rowOf(anchor_);
    if (!keepsOthers)
        ids_.clear();
    const auto [first, last] = std::minmax(from < 0 ? row : from, row);
    for (int index = first; index <= last; ++index) {
        if (auto id = idAt(index))
            ids_.insert(std::move(*id));
    }
    if (from < 0 || anchor_.empty())
        anchor_ = idAt(row).value_or(std::string());
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

void FindingSelection::notify() {
    if (const int row = current_.empty() ? -1 : rows_.rowOf(current_); row >= 0 || current_.empty())
        place_ = row;
    ++revision_;
    emit changed();
}

}  // namespace ulvak
