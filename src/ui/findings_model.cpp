#include "ui/findings_model.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "core/paths.h"
#include "ui/shown.h"
#include "ui/texts.h"

namespace ulvak {
namespace {

/// Each step costs every list over these rows time proportional to its length. Beyond this many, a reset is
/// cheaper: after a scan, when no view has a scroll position to keep.
constexpr std::size_t maxSteps = 100;

/// Counts the runs of false.
std::size_t gaps(const std::vector<bool>& flags) {
    std::size_t count = 0;
    bool before = true;
    for (const bool flag : flags) {
        count += before && !flag ? 1U : 0U;
        before = flag;
    }
    return count;
}

Findings byLevel(const Findings& findings) {
    Findings sorted;
    sorted.reserve(findings.size());
    for (const SafetyLevel level : allSafetyLevels) {
        std::ranges::copy_if(findings, std::back_inserter(sorted),
                             [level](const FindingPointer& finding) { return finding->level == level; });
    }
    return sorted;
}

/// Whether one can take the other's row.
bool isSameRow(const FindingPointer& one, const FindingPointer& other) {
    return one == other || (one->id == other->id && one->level == other->level);
}

/// Maps each row to its position in `wanted`; -1 if its finding is not there or would have to move up past a
/// row above it. Moved rows are removed and reinserted, because a filtering list cannot move rows. This may
/// keep fewer rows than possible, which does not matter: only a scan changes the order, and no view of the
/// rows exists while one runs.
std::vector<int> targetsOf(const Findings& rows, const Findings& wanted) {
    std::unordered_map<std::string_view, std::size_t> places;
    for (std::size_t index = 0; index < wanted.size(); ++index)
        places.emplace(wanted[index]->id, index);
    std::vector<int> targets;
    targets.reserve(rows.size());
    int last = -1;
    for (const FindingPointer& row : rows) {
        const auto place = places.find(row->id);
        const bool stays = place != places.end() && static_cast<int>(place->second) > last &&
                           isSameRow(row, wanted[place->second]);
        targets.push_back(stays ? last = static_cast<int>(place->second) : -1);
    }
    return targets;
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

FindingsModel::FindingsModel(AppModel& app, QObject* parent)
    : QAbstractListModel(parent),
      app_(app),
      rows_(byLevel(app.findings())),
      analyzing_(app.analyzing()),
      cleaning_(app.cleaning()) {
    connect(&app, &AppModel::findingsChanged, this, &FindingsModel::follow);
    connect(&app, &AppModel::analyzingChanged, this, &FindingsModel::markBusy);
    connect(&app, &AppModel::cleaningChanged, this, &FindingsModel::markBusy);
}

int FindingsModel::rowOf(const FindingPointer& finding) const {
    const auto found = std::ranges::find(rows_, finding);
    return found == rows_.end() ? -1 : static_cast<int>(found - rows_.begin());
}

int FindingsModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant FindingsModel::data(const QModelIndex& index, int role) const {
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
        default:
            return {};
    }
}

QHash<int, QByteArray> FindingsModel::roleNames() const {
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

void FindingsModel::follow() {
    if (!app_.removed().empty())
        removeGone(app_.removed());
    else
        rearrange(byLevel(app_.findings()));
    emit followed();
}

void FindingsModel::removeGone(const Findings& gone) {
    std::unordered_set<const Finding*> pointers;
    for (const FindingPointer& finding : gone)
        pointers.insert(finding.get());
    std::vector<bool> stays(rows_.size());
    for (std::size_t row = 0; row < rows_.size(); ++row)
        stays[row] = !pointers.contains(rows_[row].get());
    removeAllBut(stays);
}

void FindingsModel::rearrange(const Findings& wanted) {
    if (!std::ranges::equal(rows_, wanted, isSameRow)) {
        const std::vector<int> targets = targetsOf(rows_, wanted);
        std::vector<bool> stays(rows_.size());
        std::vector<bool> isThere(wanted.size());
        for (std::size_t row = 0; row < rows_.size(); ++row) {
            stays[row] = targets[row] >= 0;
            if (stays[row])
                isThere[static_cast<std::size_t>(targets[row])] = true;
        }
        if (gaps(stays) + gaps(isThere) > maxSteps) {
            beginResetModel();
            rows_ = wanted;
            endResetModel();
            return;
        }
        removeAllBut(stays);
        insertMissing(wanted);
    }
    replaceChanged(wanted);
}

void FindingsModel::removeAllBut(const std::vector<bool>& stays) {
    // From the end, so that the rows before keep their numbers.
    for (int last = rowCount() - 1; last >= 0; --last) {
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

void FindingsModel::insertMissing(const Findings& wanted) {
    for (std::size_t row = 0; row < wanted.size(); ++row) {
        const auto isNext = [&](std::size_t index) {
            return row < rows_.size() && isSameRow(rows_[row], wanted[index]);
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

void FindingsModel::replaceChanged(const Findings& wanted) {
    // Signalled in runs: after a scan every row holds a new record.
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

void FindingsModel::markBusy() {
    auto changed = findingsIn(app_, analyzing_, app_.analyzing());
    changed.merge(findingsIn(app_, cleaning_, app_.cleaning()));
    analyzing_ = app_.analyzing();
    cleaning_ = app_.cleaning();
    for (int row = 0; row < rowCount() && !changed.empty(); ++row) {
        const int first = row;
        while (row < rowCount() && changed.erase(rows_[static_cast<std::size_t>(row)].get()) > 0)
            ++row;
        if (row > first)
            emit dataChanged(index(first), index(row - 1), {isAnalyzingRole, isCleaningRole});
    }
}

std::unordered_set<const Finding*> findingsIn(const AppModel& app, const std::set<std::string>& one,
                                              const std::set<std::string>& other) {
    std::vector<std::string_view> ids;
    std::ranges::set_symmetric_difference(one, other, std::back_inserter(ids));
    std::unordered_set<const Finding*> findings;
    for (const std::string_view id : ids) {
        if (const FindingPointer finding = app.finding(id))
            findings.insert(finding.get());
    }
    return findings;
}

}  // namespace ulvak
