#pragma once

#include <QSortFilterProxyModel>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "ui/findings_model.h"

namespace ulvak {

/// The rows of one list: the findings of a level, with the list's own data for each.
///
/// Threads: the UI thread only.
class FindingListModel : public QSortFilterProxyModel {
    Q_OBJECT
    Q_PROPERTY(int count READ count NOTIFY countChanged FINAL)
public:
    /// `all` must outlive this object. Without a level there are no rows.
    explicit FindingListModel(FindingsModel& all, QObject* parent = nullptr);

    [[nodiscard]] std::optional<SafetyLevel> level() const { return level_; }
    void setLevel(std::optional<SafetyLevel> level);
    /// Whether a finding of the application belongs in this list.
    [[nodiscard]] bool shows(const Finding& finding) const { return finding.level == level_; }

    /// Sets which rows report themselves as selected, by finding id.
    void setSelected(const std::set<std::string>& ids);

    [[nodiscard]] int count() const { return rowCount(); }
    /// During `followed`: the application's findings that were removed, if nothing else changed; empty
    /// otherwise. Some may never have been in this list.
    [[nodiscard]] const Findings& removed() const { return all_.app().removed(); }
    /// Null if there is no such row.
    [[nodiscard]] FindingPointer at(int row) const;
    /// -1 if there is none.
    [[nodiscard]] int rowOf(std::string_view id) const;
    /// The rows of those findings that are in this list, ascending.
    [[nodiscard]] std::vector<int> rowsOf(const std::unordered_set<const Finding*>& findings) const;

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override { return all_.roleNames(); }

signals:
    void countChanged();
    /// See `FindingsModel::followed`.
    void followed();

protected:
    [[nodiscard]] bool filterAcceptsRow(int sourceRow, const QModelIndex& sourceParent) const override;

private:
    void follow();
    [[nodiscard]] std::int64_t largestSize() const;
    [[nodiscard]] const FindingPointer& findingAt(const QModelIndex& index) const;

    FindingsModel& all_;
    std::optional<SafetyLevel> level_;
    std::int64_t largest_ = 0;  ///< bytes
    int lastCount_ = 0;
    std::set<std::string> selected_;
};

}  // namespace ulvak
