#pragma once

#include <QObject>
#include <QString>

#include "app/app_model.h"
#include "ui/record_list.h"
#include "ui/records.h"

namespace ulvak {

/// The disk's space, formatted.
///
/// Threads: the UI thread only.
class DiskModel : public QObject {
    Q_OBJECT
    /// False if the disk's capacity is unknown; there is then nothing to show.
    Q_PROPERTY(bool isKnown READ isKnown NOTIFY changed FINAL)
    Q_PROPERTY(double usedFraction READ usedFraction NOTIFY changed FINAL)
    Q_PROPERTY(bool isLow READ isLow NOTIFY changed FINAL)
    Q_PROPERTY(QString text READ text NOTIFY changed FINAL)
    Q_PROPERTY(QString usedText READ usedText NOTIFY changed FINAL)
    Q_PROPERTY(QString freeText READ freeText NOTIFY changed FINAL)
    /// `DiskSegment`s; empty without a disk.
    Q_PROPERTY(ulvak::RecordList* segments READ segments CONSTANT FINAL)
public:
    /// `app` must outlive this object.
    explicit DiskModel(const AppModel& app, QObject* parent = nullptr);

    [[nodiscard]] bool isKnown() const { return app_.disk().has_value(); }
    [[nodiscard]] double usedFraction() const;
    [[nodiscard]] bool isLow() const;
    [[nodiscard]] QString text() const;
    [[nodiscard]] QString usedText() const;
    [[nodiscard]] QString freeText() const;
    [[nodiscard]] RecordListOf<DiskSegment>* segments() { return &segments_; }

signals:
    void changed();

private:
    void measureSegments();

    const AppModel& app_;
    RecordListOf<DiskSegment> segments_;
};

}  // namespace ulvak
