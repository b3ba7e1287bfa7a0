#include "ui/record_list.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QMetaEnum>
#include <QSignalSpy>
#include <QString>

#include "core/safety_level.h"
#include "ui/level.h"
#include "ui/records.h"

namespace ulvak {
namespace {

class RecordListTest : public testing::Test {
protected:
    static MetadataLine line(const char* value) {
        return {.label = QStringLiteral("x"), .value = QString::fromLatin1(value)};
    }
    QString value(int row) { return list.data(list.index(row), list.roleNames().key("value")).toString(); }

    RecordListOf<MetadataLine> list;
    QAbstractItemModelTester tester{&list, QAbstractItemModelTester::FailureReportingMode::Fatal};
};

TEST_F(RecordListTest, EachPropertyOfARecordIsARole) {
    list.assign({line("a")});
    const QList<QByteArray> names = list.roleNames().values();
    EXPECT_EQ(QSet<QByteArray>(names.begin(), names.end()), QSet<QByteArray>({"label", "value"}));
    EXPECT_EQ(value(0), QStringLiteral("a"));
    EXPECT_FALSE(list.data(list.index(0), Qt::DisplayRole).isValid());
    EXPECT_FALSE(list.data(list.index(1), list.roleNames().key("value")).isValid());
}

TEST_F(RecordListTest, OnlyTheRowThatHasChangedIsTold) {
    list.assign({line("a"), line("b"), line("c")});
    QSignalSpy changed(&list, &QAbstractItemModel::dataChanged);
    QSignalSpy gone(&list, &QAbstractItemModel::rowsRemoved);
    QSignalSpy come(&list, &QAbstractItemModel::rowsInserted);
    QSignalSpy counted(&list, &RecordList::countChanged);
    list.assign({line("a"), line("x"), line("c")});
    ASSERT_EQ(changed.count(), 1);
    EXPECT_EQ(changed[0][0].toModelIndex().row(), 1);
    EXPECT_EQ(changed[0][1].toModelIndex().row(), 1);
    EXPECT_EQ(gone.count() + come.count() + counted.count(), 0);
    EXPECT_EQ(value(1), QStringLiteral("x"));
}

TEST_F(RecordListTest, RowsGoAndComeAtTheEndAndTheOthersStay) {
    list.assign({line("a"), line("b"), line("c")});
    QSignalSpy gone(&list, &QAbstractItemModel::rowsRemoved);
    QSignalSpy come(&list, &QAbstractItemModel::rowsInserted);
    list.assign({line("b")});
    ASSERT_EQ(gone.count(), 1);
    EXPECT_EQ(gone[0][1].toInt(), 1);
    EXPECT_EQ(gone[0][2].toInt(), 2);
    EXPECT_EQ(value(0), QStringLiteral("b"));
    list.assign({line("b"), line("y"), line("z")});
    ASSERT_EQ(come.count(), 1);
    EXPECT_EQ(come[0][1].toInt(), 1);
    EXPECT_EQ(come[0][2].toInt(), 2);
    EXPECT_EQ(value(2), QStringLiteral("z"));
    list.assign({});
    EXPECT_EQ(list.count(), 0);
}

TEST(Level, ViewsCanNameEveryLevel) {
    const auto names = QMetaEnum::fromType<Level::Value>();
    ASSERT_EQ(names.keyCount(), static_cast<int>(allSafetyLevels.size()));
    for (const SafetyLevel level : allSafetyLevels) {
        const QByteArray name = names.valueToKey(static_cast<int>(level));
        EXPECT_EQ(name.toLower().toStdString(), info(level).rawValue);
    }
}

}  // namespace
}  // namespace ulvak
