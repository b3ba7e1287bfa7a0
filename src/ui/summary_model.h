#pragma once

#include <QObject>
#include <QString>

#include "app/app_model.h"
#include "ui/record_list.h"
#include "ui/records.h"

namespace ulvak {

/// Totals over all findings and what was done with them since the start, formatted.
///
/// Threads: the UI thread only.
class SummaryModel : public QObject {
    Q_OBJECT
    /// `LevelLine`s, in display order.
    Q_PROPERTY(ulvak::RecordList* levels READ levels CONSTANT FINAL)
    /// `LargestLine`s: at most eight, largest first.
    Q_PROPERTY(ulvak::RecordList* largest READ largest CONSTANT FINAL)
    Q_PROPERTY(QString reclaimableText READ reclaimableText NOTIFY changed FINAL)
    // Banners; an empty text hides the banner.
    Q_PROPERTY(QString freedText READ freedText NOTIFY changed FINAL)
    Q_PROPERTY(QString deniedText READ deniedText NOTIFY changed FINAL)
    Q_PROPERTY(bool hasPrivacySettings READ hasPrivacySettings CONSTANT FINAL)
public:
    /// `app` must outlive this object.
    explicit SummaryModel(AppModel& app, QObject* parent = nullptr);

    [[nodiscard]] RecordListOf<LevelLine>* levels() { return &levels_; }
    [[nodiscard]] RecordListOf<LargestLine>* largest() { return &largest_; }
    [[nodiscard]] QString reclaimableText() const;
    [[nodiscard]] QString freedText() const;
    [[nodiscard]] QString deniedText() const;
    [[nodiscard]] bool hasPrivacySettings() const { return app_.hasPrivacySettings(); }

    Q_INVOKABLE void openFullDiskAccessSettings() { app_.openFullDiskAccessSettings(); }

signals:
    void changed();

private:
    void summarize();

    AppModel& app_;
    RecordListOf<LevelLine> levels_;
    RecordListOf<LargestLine> largest_;
};

}  // namespace ulvak
