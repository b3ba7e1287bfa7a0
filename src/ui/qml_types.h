#pragma once

#include <QtQml/qqml.h>
#include <QAbstractItemModel>

#include "ui/actions_model.h"
#include "ui/alert_model.h"
#include "ui/analysis_model.h"
#include "ui/detail_model.h"
#include "ui/disk_model.h"
#include "ui/finding_list_model.h"
#include "ui/finding_selection.h"
#include "ui/level.h"
#include "ui/level_list_model.h"
#include "ui/multi_selection_model.h"
#include "ui/record_list.h"
#include "ui/records.h"
#include "ui/scan_model.h"
#include "ui/summary_model.h"
#include "ui/trash_model.h"
#include "ui/window_model.h"

// The types QML may use, and their QML names. The classes themselves are in libraries compiled with our
// warnings, which the generated code here is not.

namespace ulvak::qml {

// The base of our lists, for which the oldest supported Qt has no QML type information.
struct ItemModelType {
    Q_GADGET
    QML_FOREIGN(QAbstractItemModel)
    QML_ANONYMOUS
};

namespace LevelType {
Q_NAMESPACE
QML_FOREIGN_NAMESPACE(ulvak::Level)
QML_NAMED_ELEMENT(Level)
}  // namespace LevelType

struct ActionsModelType {
    Q_GADGET
    QML_FOREIGN(ulvak::ActionsModel)
    QML_NAMED_ELEMENT(ActionsModel)
    QML_UNCREATABLE("The window is given it.")
};

struct AlertModelType {
    Q_GADGET
    QML_FOREIGN(ulvak::AlertModel)
    QML_NAMED_ELEMENT(AlertModel)
    QML_UNCREATABLE("The window is given it.")
};

struct AnalysisModelType {
    Q_GADGET
    QML_FOREIGN(ulvak::AnalysisModel)
    QML_NAMED_ELEMENT(AnalysisModel)
    QML_UNCREATABLE("The window is given it.")
};

struct DetailModelType {
    Q_GADGET
    QML_FOREIGN(ulvak::DetailModel)
    QML_NAMED_ELEMENT(DetailModel)
    QML_UNCREATABLE("The window is given it.")
};

struct DiskModelType {
    Q_GADGET
    QML_FOREIGN(ulvak::DiskModel)
    QML_NAMED_ELEMENT(DiskModel)
    QML_UNCREATABLE("The window is given it.")
};

struct FindingListModelType {
    Q_GADGET
    QML_FOREIGN(ulvak::FindingListModel)
    QML_NAMED_ELEMENT(FindingListModel)
    QML_UNCREATABLE("The window is given it.")
};

struct FindingSelectionType {
    Q_GADGET
    QML_FOREIGN(ulvak::FindingSelection)
    QML_NAMED_ELEMENT(FindingSelection)
    QML_UNCREATABLE("The window is given it.")
};

struct LevelListModelType {
    Q_GADGET
    QML_FOREIGN(ulvak::LevelListModel)
    QML_NAMED_ELEMENT(LevelListModel)
    QML_UNCREATABLE("The window is given it.")
};

struct MultiSelectionModelType {
    Q_GADGET
    QML_FOREIGN(ulvak::MultiSelectionModel)
    QML_NAMED_ELEMENT(MultiSelectionModel)
    QML_UNCREATABLE("The window is given it.")
};

struct RecordListType {
    Q_GADGET
    QML_FOREIGN(ulvak::RecordList)
    QML_NAMED_ELEMENT(RecordList)
    QML_UNCREATABLE("The window is given it.")
};

struct ScanModelType {
    Q_GADGET
    QML_FOREIGN(ulvak::ScanModel)
    QML_NAMED_ELEMENT(ScanModel)
    QML_UNCREATABLE("The window is given it.")
};

struct SummaryModelType {
    Q_GADGET
    QML_FOREIGN(ulvak::SummaryModel)
    QML_NAMED_ELEMENT(SummaryModel)
    QML_UNCREATABLE("The window is given it.")
};

struct TrashModelType {
    Q_GADGET
    QML_FOREIGN(ulvak::TrashModel)
    QML_NAMED_ELEMENT(TrashModel)
    QML_UNCREATABLE("The window is given it.")
};

struct WindowModelType {
    Q_GADGET
    QML_FOREIGN(ulvak::WindowModel)
    QML_NAMED_ELEMENT(WindowModel)
    QML_UNCREATABLE("The window is given it.")
};

struct LevelInfoType {
    Q_GADGET
    QML_FOREIGN(ulvak::LevelInfo)
    QML_VALUE_TYPE(levelInfo)
};

struct RowMenuInfoType {
    Q_GADGET
    QML_FOREIGN(ulvak::RowMenuInfo)
    QML_VALUE_TYPE(rowMenuInfo)
};

}  // namespace ulvak::qml
