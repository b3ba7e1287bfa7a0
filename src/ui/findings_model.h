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

/// All findings as rows: level by level, because what happens to many of a level then happens to neighbours,
/// and within a level in the order of the application's list. Follows the application row by row: a finding
/// that goes, or changes its level, gives up its row, one that changes otherwise keeps it, and a new result
/// is laid over the old one. So a view keeps its place. Only where that would take very many steps is the
/// model reset. Keeps each finding alive: a row can be read at any time, also while others are being removed.
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
        colorRole,  ///< the name of its level's colour
        sourceLabelRole,
        sourceSymbolRole,
        badgeRole,       ///< the text of the source badge; empty for a rule's verdict
        confidenceRole,  ///< what that ends in when a model has said how sure it is; else empty
        isAnalyzingRole,
        isCleaningRole,
        // Only a list that shows some of the rows knows these.
        fractionRole,  ///< of the largest finding in the list, 0 to 1
        isSelectedRole,
    };

    /// `app` must outlive this object.
    explicit FindingsModel(AppModel& app, QObject* parent = nullptr);

    [[nodiscard]] const AppModel& app() const { return app_; }
    [[nodiscard]] const Findings& rows() const { return rows_; }
    /// -1 when there is none.
    [[nodiscard]] int rowOf(const FindingPointer& finding) const;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

signals:
    /// The rows are the application's again. Comes once after each change; the signals of the base class tell
    /// of its steps, between which a row that moves is missing.
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

/// The findings whose ids are in one of the sets only.
[[nodiscard]] std::unordered_set<const Finding*> findingsIn(const AppModel& app,
                                                            const std::set<std::string>& one,
                                                            const std::set<std::string>& other);

}  // namespace ulvak
