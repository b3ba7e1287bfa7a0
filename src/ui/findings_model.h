#pragma once

#include <QAbstractListModel>
#include <set>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

#include "app/app_model.h"

namespace ulvak {

/// All findings as rows: grouped by level, because changes to many findings of a level then affect adjacent
/// rows, and within a level in the order of the application's list. Updates row by row, so that views keep
/// their scroll position: a finding that is removed or changes level gives up its row, one that changes
/// otherwise keeps it, and a new result is merged into the old one. The model is reset only if that would
/// take too many steps. Keeps each finding alive, so a row can be read at any time, even while others are
/// being removed.
///
/// Threads: the UI thread only.
class FindingsModel : public QAbstractListModel {
    Q_OBJECT
public:
    enum Role : int {
        idRole = Qt::UserRole + 1,  ///< the id, as `idText`
        titleRole,
        locationRole,
        sizeTextRole,
        iconRole,
        colorRole,  ///< its level's colour name
        sourceLabelRole,
        sourceSymbolRole,
        badgeRole,       ///< source badge text; empty for a rule's verdict
        confidenceRole,  ///< the part of the badge that says how sure a model was; may be empty
        isAnalyzingRole,
        isCleaningRole,
        // Provided only by lists that show a subset of the rows.
        fractionRole,  ///< of the largest finding in the list, 0 to 1
        isSelectedRole,
    };

    /// `app` must outlive this object.
    explicit FindingsModel(AppModel& app, QObject* parent = nullptr);

    [[nodiscard]] const AppModel& app() const { return app_; }
    [[nodiscard]] const Findings& rows() const { return rows_; }
    /// -1 if there is none.
    [[nodiscard]] int rowOf(const FindingPointer& finding) const;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

signals:
    /// The rows match the application again. Sent once after each change; the base class's signals report
    /// single steps, between which a moving row is missing.
    void followed();

private:
    using Ids = std::set<std::string>;

    void follow();
    void removeGone(const Findings& gone);
    void rearrange(const Findings& wanted);
    void removeAllBut(const std::vector<bool>& stays);
    void insertMissing(const Findings& wanted);
    void replaceChanged(const Findings& wanted);
    void markBusy();

    AppModel& app_;
    Findings rows_;
    Ids analyzing_;
    Ids cleaning_;
};

/// The findings whose ids are in exactly one of the two sets.
[[nodiscard]] std::unordered_set<const Finding*> findingsIn(const AppModel& app,
                                                            const std::set<std::string>& one,
                                                            const std::set<std::string>& other);

}  // namespace ulvak
