#pragma once

#include <QAbstractListModel>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

#include "app/app_model.h"

namespace ulvak {

/// The findings of one level as rows for a view, in the order of the application's list. Follows the
/// application row by row: a finding that goes takes its row along, one that changes keeps its row, and a new
/// result is laid over the old one, so that a view keeps its place. Has a hold of its own on each finding: a
/// row can be read at any time, also while others are being removed.
///
/// Threads: the UI thread only.
class FindingListModel : public QAbstractListModel {
    Q_OBJECT
    Q_PROPERTY(int count READ count NOTIFY countChanged FINAL)
public:
    enum Role : int {
        idRole = Qt::UserRole + 1,  ///< the id, as `idText`
        titleRole,
        locationRole,
        sizeTextRole,
        fractionRole,  ///< of the level's largest finding, 0 to 1
        iconRole,
        colorRole,  ///< the name of its level's colour
        sourceLabelRole,
        sourceSymbolRole,
        badgeRole,       ///< the text of the source badge; empty for a rule's verdict
        confidenceRole,  ///< what that ends in when a model has said how sure it is; else empty
        isAnalyzingRole,
        isCleaningRole,
        isSelectedRole,
    };

    /// `app` outlives this object. Without a level there are no rows.
    explicit FindingListModel(AppModel& app, QObject* parent = nullptr);

    [[nodiscard]] std::optional<SafetyLevel> level() const { return level_; }
    void setLevel(std::optional<SafetyLevel> level);

    /// Which rows are told to be selected: those of the findings with these ids.
    void setSelected(const std::set<std::string>& ids) { mark({{&selected_, &ids}}, {isSelectedRole}); }

    [[nodiscard]] int count() const { return static_cast<int>(rows_.size()); }
    [[nodiscard]] const Findings& rows() const { return rows_; }
    /// Of these those that have gone, while `followed` is told and if nothing else has changed; empty
    /// otherwise. Some of them may be of other levels.
    [[nodiscard]] const Findings& removed() const { return app_.removed(); }
    /// Null when there is no such row.
    [[nodiscard]] FindingPointer at(int row) const;
    /// -1 when there is none.
    [[nodiscard]] int rowOf(std::string_view id) const;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

signals:
    void countChanged();
    /// The rows are the application's again: after each change as a whole, where the signals of the base
    /// class tell of its steps, in which a row that moves has gone for a moment.
    void followed();

private:
    void follow();
    /// Some of them may be of other levels.
    void removeGone(const Findings& gone);
    void rearrange(const Findings& wanted);
    void setLargest(std::int64_t largest);
    void removeAllBut(const std::vector<bool>& stays);
    void insertMissing(const Findings& wanted);
    void replaceChanged(const Findings& wanted);
    /// A set of ids that rows show, and what it is to be.
    using Marks = std::vector<std::pair<std::set<std::string>*, const std::set<std::string>*>>;
    void mark(const Marks& marks, const QList<int>& roles);
    void markBusy();
    void tellChanged(std::unordered_set<const Finding*> findings, const QList<int>& roles);

    AppModel& app_;
    std::optional<SafetyLevel> level_;
    Findings rows_;
    std::int64_t largest_ = 0;
    std::set<std::string> analyzing_;
    std::set<std::string> cleaning_;
    std::set<std::string> selected_;
};

}  // namespace ulvak
