#pragma once

#include <QObject>
#include <optional>
#include <set>
#include <string>

#include "app/app_model.h"
#include "ui/finding_list_model.h"

namespace ulvak {

/// The selection and keyboard focus in a list of findings. Holds ids, never rows: when the list changes, the
/// selection follows its findings to their new rows. A finding that leaves the list is deselected, and stays
/// so if it returns.
///
/// Threads: the UI thread only.
class FindingSelection : public QObject {
    Q_OBJECT
    /// The focused row; if it is removed, the next row takes the focus. -1 if there is none.
    Q_PROPERTY(int currentRow READ currentRow NOTIFY changed FINAL)
public:
    using Ids = std::set<std::string>;

    /// `app` and `rows` must outlive this object.
    FindingSelection(const AppModel& app, FindingListModel& rows, QObject* parent = nullptr);

    [[nodiscard]] const Ids& ids() const { return ids_; }
    /// The selected findings, in row order. Of two with the same id only the first is included, matching what
    /// actions apply to.
    [[nodiscard]] const Findings& findings() const { return findings_; }
    [[nodiscard]] int currentRow() const;
    /// Ids without a row are ignored.
    void set(Ids ids);

    /// A press on a row. Ctrl toggles it, Shift extends from the last press.
    Q_INVOKABLE void press(int row, int modifiers);
    /// A press for a context menu: keeps the selection if the row is part of it.
    Q_INVOKABLE void pressForMenu(int row);
    /// An arrow, Page, Home or End key: moves to that row, or the nearest valid one. Ctrl moves only the
    /// focus.
    Q_INVOKABLE void moveTo(int row, int modifiers);
    /// Ctrl+Space.
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
    /// Requires `findings_` to be up to date.
    void tell();
    void notify();

    const AppModel& app_;
    FindingListModel& rows_;
    Ids ids_;
    Findings findings_;
    std::string anchor_;   ///< Shift extends from here
    std::string current_;  ///< has the focus
    int place_ = -1;       ///< row of `current_` at the last notification
};

}  // namespace ulvak
