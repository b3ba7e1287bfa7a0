#include "app/finding_list_model.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "app/shown.h"
#include "app/texts.h"
#include "core/paths.h"

namespace ulvak {
namespace {

/// Which of these numbers, none of them twice and -1 for none, form a longest ascending sequence: rows that
/// can stay where they are while all others are moved around them.
std::vector<bool> longestAscending(const std::vector<int>& numbers) {
    std::vector<std::size_t> lasts;  // for each length, where the sequence with the smallest end ends
    std::vector<std::size_t> before(numbers.size());
    for (std::size_t index = 0; index < numbers.size(); ++index) {
        if (numbers[index] < 0)
            continue;
        const auto place = std::ranges::lower_bound(lasts, numbers[index], {},
                                                    [&](std::size_t last) { return numbers[last]; });
        if (place != lasts.begin())
            before[index] = *std::prev(place);
        if (place == lasts.end())
            lasts.push_back(index);
        else
            *place = index;
    }
    std::vector<bool> chosen(numbers.size());
    std::size_t index = lasts.empty() ? 0 : lasts.back();
    for (std::size_t length = lasts.size(); length > 0; --length) {
        chosen[index] = true;
        index = before[index];
    }
    return chosen;
}

QString iconOf(const Finding& finding) {
    if (std::holds_alternative<CleanAction::DeleteSimulator>(finding.action.value))
        return QStringLiteral("iphone");
    if (finding.urls.size() > 1)
        return QStringLiteral("doc.on.doc");
    const bool isApp = Paths::extension(Paths::lastComponent(finding.urls.front())) == "app";
    return isApp ? QStringLiteral("app") : QStringLiteral("folder");
}

}  // namespace

FindingListModel::FindingListModel(AppModel& app, QObject* parent)
    : QAbstractListModel(parent), app_(app), analyzing_(app.analyzing()), cleaning_(app.cleaning()) {
    connect(&app, &AppModel::findingsChanged, this, &FindingListModel::follow);
    connect(&app, &AppModel::analyzingChanged, this, &FindingListModel::markBusy);
    connect(&app, &AppModel::cleaningChanged, this, &FindingListModel::markBusy);
}

void FindingListModel::setLevel(std::optional<SafetyLevel> level) {
    if (level == level_)
        return;
    // Another list altogether: a view starts at its top.
    beginResetModel();
    level_ = level;
    rows_ = level ? app_.findings(*level) : Findings();
    largest_ = rows_.empty() ? 0 : std::ranges::max(rows_, {}, &Finding::size)->size;
    endResetModel();
    emit followed();
    emit countChanged();
}

FindingPointer FindingListModel::at(int row) const {
    return row >= 0 && row < count() ? rows_[static_cast<std::size_t>(row)] : nullptr;
}

int FindingListModel::rowOf(std::string_view id) const {
    const auto found = std::ranges::find(rows_, app_.finding(id));
    return found == rows_.end() ? -1 : static_cast<int>(found - rows_.begin());
}

int FindingListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : count();
}

QVariant FindingListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const Finding& finding = *rows_[static_cast<std::size_t>(index.row())];
    switch (role) {
        case idRole:
            return idText(finding.id);
        case Qt::DisplayRole:
        case titleRole:
            return shown(finding.title);
        case Qt::ToolTipRole:
        case locationRole:
            return shown(Paths::display(finding.urls.front(), app_.folders()));
        case sizeTextRole:
            return Texts::bytes(finding.size);
        case fractionRole:
            return largest_ > 0 ? static_cast<double>(finding.size) / static_cast<double>(largest_) : 0.0;
        case iconRole:
            return iconOf(finding);
        case colorRole:
            return Texts::fixed(info(finding.level).color);
        case sourceLabelRole:
            return Texts::fixed(info(finding.source).label);
        case sourceSymbolRole:
            return Texts::fixed(info(finding.source).symbol);
        case badgeRole:
            return Texts::badge(finding);
        case confidenceRole:
            return Texts::confidence(finding);
        case isAnalyzingRole:
            return analyzing_.contains(finding.id);
        case isCleaningRole:
            return cleaning_.contains(finding.id);
        case isSelectedRole:
            return selected_.contains(finding.id);
        default:
            return {};
    }
}

QHash<int, QByteArray> FindingListModel::roleNames() const {
    return {
        {idRole, "findingId"},
        {titleRole, "title"},
        {locationRole, "location"},
        {sizeTextRole, "sizeText"},
        {fractionRole, "fraction"},
        {iconRole, "icon"},
        {colorRole, "levelColor"},
        {sourceLabelRole, "sourceLabel"},
        {sourceSymbolRole, "sourceSymbol"},
        {badgeRole, "badge"},
        {confidenceRole, "confidenceText"},
        {isAnalyzingRole, "isAnalyzing"},
        {isCleaningRole, "isCleaning"},
        {isSelectedRole, "isSelected"},
    };
}

void FindingListModel::follow() {
    if (!level_)
        return;
    const int before = count();
    if (!app_.removed().empty())
        removeGone(app_.removed());
    else
        rearrange(app_.findings(*level_));
    emit followed();
    if (count() != before)
        emit countChanged();
}

void FindingListModel::removeGone(const Findings& gone) {
    std::unordered_set<const Finding*> pointers;
    for (const FindingPointer& finding : gone)
        pointers.insert(finding.get());
    std::vector<bool> stays(rows_.size());
    for (std::size_t row = 0; row < rows_.size(); ++row)
        stays[row] = !pointers.contains(rows_[row].get());
    removeAllBut(stays);
    if (std::ranges::max(gone, {}, &Finding::size)->size >= largest_)
        setLargest(rows_.empty() ? 0 : std::ranges::max(rows_, {}, &Finding::size)->size);
}

void FindingListModel::rearrange(const Findings& wanted) {
    std::unordered_map<std::string_view, int> places;
    for (std::size_t index = 0; index < wanted.size(); ++index)
        places.emplace(wanted[index]->id, static_cast<int>(index));
    std::vector<int> targets;
    for (const FindingPointer& row : rows_) {
        const auto place = places.find(row->id);
        targets.push_back(place == places.end() ? -1 : place->second);
    }
    removeAllBut(longestAscending(targets));
    insertMissing(wanted);
    replaceChanged(wanted);
}

void FindingListModel::removeAllBut(const std::vector<bool>& stays) {
    // From the end, so that the rows in front keep their numbers.
    for (int last = count() - 1; last >= 0; --last) {
        if (stays[static_cast<std::size_t>(last)])
            continue;
        int first = last;
        while (first > 0 && !stays[static_cast<std::size_t>(first - 1)])
            --first;
        beginRemoveRows({}, first, last);
        rows_.erase(rows_.begin() + first, rows_.begin() + last + 1);
        endRemoveRows();
        last = first;
    }
}

void FindingListModel::insertMissing(const Findings& wanted) {
    for (std::size_t row = 0; row < wanted.size(); ++row) {
        const auto isNext = [&](std::size_t index) {
            return row < rows_.size() && rows_[row]->id == wanted[index]->id;
        };
        std::size_t end = row;
        while (end < wanted.size() && !isNext(end))
            ++end;
        if (end == row)
            continue;
        const auto at = static_cast<std::ptrdiff_t>(row);
        beginInsertRows({}, static_cast<int>(row), static_cast<int>(end) - 1);
        rows_.insert(rows_.begin() + at, wanted.begin() + at,
                     wanted.begin() + static_cast<std::ptrdiff_t>(end));
        endInsertRows();
        row = end;
    }
}

void FindingListModel::replaceChanged(const Findings& wanted) {
    setLargest(wanted.empty() ? 0 : std::ranges::max(wanted, {}, &Finding::size)->size);
    // Run by run: after a scan every row holds another record.
    for (std::size_t row = 0; row < rows_.size(); ++row) {
        const std::size_t first = row;
        while (row < rows_.size() && rows_[row] != wanted[row]) {
            rows_[row] = wanted[row];
            ++row;
        }
        if (row > first)
            emit dataChanged(index(static_cast<int>(first)), index(static_cast<int>(row) - 1));
    }
}

void FindingListModel::setLargest(std::int64_t largest) {
    if (std::exchange(largest_, largest) != largest && !rows_.empty())
        emit dataChanged(index(0), index(count() - 1), {fractionRole});
}

void FindingListModel::markBusy() {
    mark({{&analyzing_, &app_.analyzing()}, {&cleaning_, &app_.cleaning()}},
         {isAnalyzingRole, isCleaningRole});
}

void FindingListModel::mark(const Marks& marks, const QList<int>& roles) {
    std::unordered_set<const Finding*> findings;
    for (const auto& [shown, now] : marks) {
        std::vector<std::string_view> changed;
        std::ranges::set_symmetric_difference(*shown, *now, std::back_inserter(changed));
        for (const std::string_view id : changed) {
            if (const FindingPointer finding = app_.finding(id))
                findings.insert(finding.get());
        }
        *shown = *now;
    }
    tellChanged(std::move(findings), roles);
}

void FindingListModel::tellChanged(std::unordered_set<const Finding*> findings, const QList<int>& roles) {
    // Run by run: all may be selected at once.
    for (int row = 0; row < count() && !findings.empty(); ++row) {
        const int first = row;
        while (row < count() && findings.erase(rows_[static_cast<std::size_t>(row)].get()) > 0)
            ++row;
        if (row > first)
            emit dataChanged(index(first), index(row - 1), roles);
    }
}

}  // namespace ulvak
