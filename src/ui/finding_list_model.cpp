#include "ui/finding_list_model.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace ulvak {

FindingListModel::FindingListModel(FindingsModel& all, QObject* parent)
    : QSortFilterProxyModel(parent), all_(all) {
    connect(&all, &FindingsModel::followed, this, &FindingListModel::follow);
}

void FindingListModel::setLevel(std::optional<SafetyLevel> level) {
    if (level == level_)
        return;
    // A different list: a new source resets views to their top; a new filter alone would remove and insert
    // every row.
    setSourceModel(nullptr);
    level_ = level;
    largest_ = largestSize();
    setSourceModel(&all_);
    follow();
}

const FindingPointer& FindingListModel::findingAt(const QModelIndex& index) const {
    return all_.rows()[static_cast<std::size_t>(mapToSource(index).row())];
}

FindingPointer FindingListModel::at(int row) const {
    return row >= 0 && row < count() ? findingAt(index(row, 0)) : nullptr;
}

int FindingListModel::rowOf(std::string_view id) const {
    const FindingPointer finding = all_.app().finding(id);
    const bool isHere = finding && shows(*finding) && sourceModel() != nullptr;
    return isHere ? mapFromSource(all_.index(all_.rowOf(finding))).row() : -1;
}

std::vector<int> FindingListModel::rowsOf(const std::unordered_set<const Finding*>& findings) const {
    std::vector<int> rows;
    // One pass, which stops after the last of them: most often few are asked for.
    for (std::size_t row = 0, met = 0; row < all_.rows().size() && met < findings.size(); ++row) {
        const Finding* finding = all_.rows()[row].get();
        if (!findings.contains(finding))
            continue;
        ++met;
        if (shows(*finding))
            rows.push_back(mapFromSource(all_.index(static_cast<int>(row))).row());
    }
    std::ranges::sort(rows);
    return rows;
}

QVariant FindingListModel::data(const QModelIndex& index, int role) const {
    if (role != FindingsModel::fractionRole && role != FindingsModel::isSelectedRole)
        return QSortFilterProxyModel::data(index, role);
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const Finding& finding = *findingAt(index);
    if (role == FindingsModel::isSelectedRole)
        return selected_.contains(finding.id);
    return largest_ > 0 ? static_cast<double>(finding.size) / static_cast<double>(largest_) : 0.0;
}

bool FindingListModel::filterAcceptsRow(int sourceRow, const QModelIndex& /*sourceParent*/) const {
    return shows(*all_.rows()[static_cast<std::size_t>(sourceRow)]);
}

std::int64_t FindingListModel::largestSize() const {
    std::int64_t largest = 0;
    for (const FindingPointer& finding : all_.rows()) {
        if (shows(*finding))
            largest = std::max(largest, finding->size);
    }
    return largest;
}

void FindingListModel::follow() {
    const std::int64_t largest = largestSize();
    if (std::exchange(largest_, largest) != largest && count() > 0)
        emit dataChanged(index(0, 0), index(count() - 1, 0), {FindingsModel::fractionRole});
    emit followed();
    const int now = count();
    if (std::exchange(lastCount_, now) != now)
        emit countChanged();
}

void FindingListModel::setSelected(const std::set<std::string>& ids) {
    const std::vector<int> rows = rowsOf(findingsIn(all_.app(), selected_, ids));
    selected_ = ids;
    // Signalled in runs: all rows may be selected at once.
    for (auto first = rows.begin(); first != rows.end();) {
        const auto last =
            std::ranges::adjacent_find(first, rows.end(), [](int row, int next) { return next != row + 1; });
        const auto end = last == rows.end() ? last : std::next(last);
        emit dataChanged(index(*first, 0), index(*std::prev(end), 0), {FindingsModel::isSelectedRole});
        first = end;
    }
}

}  // namespace ulvak
