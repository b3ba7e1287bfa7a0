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

/// Several findings as the detail column sums them up.
///
/// Threads: the UI thread only.
class MultiSelectionModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString countText READ countText NOTIFY changed FINAL)
    Q_PROPERTY(QString totalText READ totalText NOTIFY changed FINAL)
    /// `LevelCount`s in display order, without levels that none has.
    Q_PROPERTY(ulvak::RecordList* levels READ levels CONSTANT FINAL)
    /// Empty when nothing is skipped.
    Q_PROPERTY(QString skippedText READ skippedText NOTIFY changed FINAL)
    Q_PROPERTY(bool canClean READ canClean NOTIFY changed FINAL)
    Q_PROPERTY(bool asksFirst READ asksFirst NOTIFY changed FINAL)
    /// Whether something among them is deleted for good: a simulator has no way back.
    Q_PROPERTY(bool deletesForGood READ deletesForGood NOTIFY changed FINAL)
    /// While any of them is being cleaned.
    Q_PROPERTY(bool isCleaning READ isCleaning NOTIFY busyChanged FINAL)
    Q_PROPERTY(QString cleanText READ cleanText NOTIFY changed FINAL)
    Q_PROPERTY(QString warning READ warning NOTIFY changed FINAL)
public:
    /// `app` outlives this object.
    explicit MultiSelectionModel(AppModel& app, QObject* parent = nullptr);

    void setItems(Findings items);
    [[nodiscard]] const Findings& items() const { return items_; }

    [[nodiscard]] QString countText() const;
    [[nodiscard]] QString totalText() const;
    [[nodiscard]] RecordListOf<LevelCount>* levels() { return &levels_; }
    [[nodiscard]] QString skippedText() const;
    /// Of those that can be cleaned, in order.
    [[nodiscard]] std::vector<std::string> cleanableIds() const;
    /// Keeps them as what the user is asked about, whatever is selected when the answer comes. Here and not
    /// in a view: what a view keeps of a list may be the list as it is by then.
    Q_INVOKABLE void ask() { asked_ = cleanableIds(); }
    /// All of them to the Trash, one after the other, unless it is to be asked first.
    Q_INVOKABLE void clean();
    /// The same for those that were asked about last.
    Q_INVOKABLE void cleanAsked();
    /// Once for each time that was asked.
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
    /// What the properties say, counted once when the items change: all of them are read at each change.
    struct Sums {
        std::int64_t bytes = 0;
        std::int64_t cleanableBytes = 0;
        int cleanable = 0;
        int risky = 0;  ///< of those that can be cleaned
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
