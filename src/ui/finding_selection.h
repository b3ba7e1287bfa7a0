#pragma once

#include <QObject>
#include <optional>
#include <set>
#include <string>

#include "app/app_model.h"
#include "ui/finding_list_model.h"

namespace ulvak {

/// What is selected in a list of findings, and where the keyboard is in it. Bound to ids, never to rows: when
/// the list changes, what is selected stays selected wherever its row is then. It holds only what has a row:
/// what leaves the list leaves the selection with it, and does not come back with the row.
///
/// Threads: the UI thread only.
class FindingSelection : public QObject {
    Q_OBJECT
    /// The row with the focus, which passes on to the row that follows one that goes; -1 when there is none.
    Q_PROPERTY(int currentRow READ currentRow NOTIFY changed FINAL)
public:
    using Ids = std::set<std::string>;

    /// `app` and its `rows` outlive this object.
    FindingSelection(const AppModel& app, FindingListModel& rows, QObject* parent = nullptr);

    [[nodiscard]] const Ids& ids() const { return ids_; }
    /// Those, in the order of the rows. Of two with one id the first counts, as for what is done with it.
    [[nodiscard]] const Findings& findings() const { return findings_; }
    [[nodiscard]] int currentRow() const;
    /// Ids without a row are left out.
    void set(Ids ids);

    /// A press on a row. Ctrl takes it in or out, Shift extends from where the last press was.
    Q_INVOKABLE void press(int row, int modifiers);
    /// A press for a menu: on what is selected it leaves the selection alone.
    Q_INVOKABLE void pressForMenu(int row);
    /// An arrow, page, home or end key: to that row, or the nearest there is. Ctrl moves the focus alone.
    Q_INVOKABLE void moveTo(int row, int modifiers);
    /// The space key with Ctrl.
    Q_INVOKABLE void toggleCurrent();
    Q_INVOKABLE void selectAll();
    Q_INVOKABLE void clear();

signals:
    void changed();

private:
    [[nodiscard]] std::optional<std::string> idAt(int row) const;
    void extendTo(int row, bool keepsOthers);
    void keepWhatHasRows();
    void followRows();
    void dropRemoved();
    void collect();
    /// With `findings_` up to date.
    void tell();
    void notify();

    const AppModel& app_;
    FindingListModel& rows_;
    Ids ids_;
    Findings findings_;
    std::string anchor_;   ///< from where Shift extends
    std::string current_;  ///< has the focus
    int place_ = -1;       ///< its row when somebody was told last
};

}  // namespace ulvak
