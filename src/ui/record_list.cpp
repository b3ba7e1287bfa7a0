#include "ui/record_list.h"

#include <QMetaProperty>

namespace ulvak {
namespace {

constexpr int firstRole = Qt::UserRole + 1;

}  // namespace

int RecordList::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : count();
}

QVariant RecordList::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    return record_.property(role - firstRole).readOnGadget(at(index.row()));
}

QHash<int, QByteArray> RecordList::roleNames() const {
    QHash<int, QByteArray> names;
    for (int property = 0; property < record_.propertyCount(); ++property)
        names.insert(firstRole + property, record_.property(property).name());
    return names;
}

}  // namespace ulvak
