#pragma once

#include <QObject>
#include <QString>
#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "app/app_model.h"
#include "ui/record_list.h"
#include "ui/records.h"

namespace ulvak {

/// Several findings, summed up for the detail column.
///
/// Threads: the UI thread only.
class MultiSelectionModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString countText READ countText NOTIFY changed FINAL)
    Q_PROPERTY(QString totalText READ totalText NOTIFY changed FINAL)
    /// `LevelCount`s in display order, omitting empty levels.
    Q_PROPERTY(ulvak::RecordList* levels READ levels CONSTANT FINAL)
    /// Empty if nothing is skipped.
    Q_PROPERTY(QString skippedText READ skippedText NOTIFY changed FINAL)
    Q_PROPERTY(bool canClean READ canClean NOTIFY changed FINAL)
    Q_PROPERTY(bool asksFirst READ asksFirst NOTIFY changed FINAL)
    /// Whether any of them is deleted permanently: a simulator cannot be restored.
    Q_PROPERTY(bool deletesForGood READ deletesForGood NOTIFY changed FINAL)
    /// Whether any of them is being cleaned.
    Q_PROPERTY(bool isCleaning READ isCleaning NOTIFY busyChanged FINAL)
    Q_PROPERTY(QString cleanText READ cleanText NOTIFY changed FINAL)
    Q_PROPERTY(QString warning READ warning NOTIFY changed FINAL)
public:
    /// `app` must outlive this object.
    explicit MultiSelectionModel(AppModel& app, QObject* parent = nullptr);

    void setItems(Findings items);
    [[nodiscard]] const Findings& items() const { return items_; }

    [[nodiscard]] QString countText() const;
    [[nodiscard]] QString totalText() const;
    [[nodiscard]] RecordListOf<LevelCount>* levels() { return &levels_; }
    [[nodiscard]] QString skippedText() const;
    /// Those that can be cleaned, in order.
    [[nodiscard]] std::vector<std::string> cleanableIds() const;
    /// Stores them as what the user is being asked about, whatever is selected when the answer comes. Done
    /// here because a list held by a view may be a live reference.
    Q_INVOKABLE void ask() { asked_ = cleanableIds(); }
    /// Moves all of them to the Trash one by one, unless confirmation is required first.
    Q_INVOKABLE void clean();
    /// The same for those that were last asked about.
    Q_INVOKABLE void cleanAsked();
    /// Can be taken only once per `ask`.
    [[nodiscard]] std::vector<std::string> takeAsked() { return std::exchange(asked_, {}); }
    [[nodiscard]] bool canClean() const;
    [[nodiscard]] bool asksFirst() const;
    [[nodiscard]] bool deletesForGood() const;
    [[nodiscard]] bool isCleaning() const;
    [[nodiscard]] QString cleanText() const;
    [[nodiscard]] QString warning() const;

signals:
    void changed();
    void busyChanged();

private:
    /// Backs the properties. Computed once per change, because all of them are read on each change.
    struct Sums {
        std::int64_t bytes = 0;
        std::int64_t cleanableBytes = 0;
        int cleanable = 0;
        int risky = 0;  ///< among those that can be cleaned
        std::map<SafetyLevel, int> levels;
        bool deletesForGood = false;
    };
    void count(const Finding& finding);
    void countLevels();

    AppModel& app_;
    Findings items_;
    std::vector<std::string> asked_;
    Sums sums_;
    RecordListOf<LevelCount> levels_;
};

}  // namespace ulvak
