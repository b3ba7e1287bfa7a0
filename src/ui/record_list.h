#pragma once

#include <QAbstractListModel>
#include <QMetaObject>
#include <cstddef>
#include <iterator>
#include <utility>
#include <vector>

namespace ulvak {

/// Records as rows for a view, with one role per property. The QML-facing base of `RecordListOf`.
///
/// Threads: the UI thread only.
class RecordList : public QAbstractListModel {
    Q_OBJECT
    Q_PROPERTY(int count READ count NOTIFY countChanged FINAL)
public:
    [[nodiscard]] virtual int count() const = 0;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

signals:
    void countChanged();

protected:
    /// `record` describes the gadgets that `at` returns.
    RecordList(const QMetaObject& record, QObject* parent) : QAbstractListModel(parent), record_(record) {}

    [[nodiscard]] virtual const void* at(int row) const = 0;

private:
    const QMetaObject& record_;
};

/// A short list of gadgets, always replaced as a whole. Rows present before and after are kept, so that a
/// control showing one keeps the focus, and only actual changes are signalled.
template <typename Record>
class RecordListOf final : public RecordList {
public:
    explicit RecordListOf(QObject* parent = nullptr) : RecordList(Record::staticMetaObject, parent) {}

    [[nodiscard]] const std::vector<Record>& records() const { return records_; }
    [[nodiscard]] int count() const override { return static_cast<int>(records_.size()); }

    void assign(std::vector<Record> records) {
        const int before = count();
        const int after = static_cast<int>(records.size());
        if (after < before) {
            beginRemoveRows({}, after, before - 1);
            records_.resize(records.size());
            endRemoveRows();
        }
        for (std::size_t row = 0; row < records_.size(); ++row) {
            if (records_[row] == records[row])
                continue;
            records_[row] = std::move(records[row]);
            emit dataChanged(index(static_cast<int>(row)), index(static_cast<int>(row)));
        }
        if (after > before) {
            beginInsertRows({}, before, after - 1);
            std::move(records.begin() + before, records.end(), std::back_inserter(records_));
            endInsertRows();
        }
        if (after != before)
            emit countChanged();
    }

protected:
    [[nodiscard]] const void* at(int row) const override { return &records_[static_cast<std::size_t>(row)]; }

private:
    std::vector<Record> records_;
};

}  // namespace ulvak
