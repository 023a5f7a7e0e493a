#include "TargetListModel.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QSignalSpy>

namespace Kestry {
namespace {

class TargetListModelTest : public ::testing::Test {
protected:
    TargetListModel model;
    QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};
    QSignalSpy resets{&model, &QAbstractItemModel::modelReset};
    QSignalSpy updates{&model, &QAbstractItemModel::dataChanged};
};

TEST_F(TargetListModelTest, TellsWhatARowHolds)
{
    model.setRows({{"1", "Aster", "#A2A5AA", true}});
    const QModelIndex row = model.index(0);
    EXPECT_EQ(model.data(row, TargetListModel::RecordIDRole), "1");
    EXPECT_EQ(model.data(row, TargetListModel::NameRole), "Aster");
    EXPECT_EQ(model.data(row, TargetListModel::ColorRole), "#A2A5AA");
    EXPECT_EQ(model.data(row, TargetListModel::IsChosenRole), true);
}

TEST_F(TargetListModelTest, RowsOfTheSameRecordsAreUpdatedInPlace)
{
    model.setRows({{"1", "Aster", {}, true}, {"2", "Birch", {}, false}});
    model.setRows({{"1", "Aster", {}, false}, {"2", "Birch", {}, true}});
    EXPECT_EQ(resets.count(), 1);
    EXPECT_EQ(updates.count(), 1);
    EXPECT_EQ(model.data(model.index(1), TargetListModel::IsChosenRole), true);
}

TEST_F(TargetListModelTest, OtherRecordsReplaceTheRows)
{
    model.setRows({{"1", "Aster", {}, true}});
    model.setRows({{"2", "Birch", {}, true}, {"3", "Cedar", {}, false}});
    EXPECT_EQ(resets.count(), 2);
    EXPECT_EQ(model.rowCount(), 2);
}

TEST_F(TargetListModelTest, EqualRowsChangeNothing)
{
    model.setRows({{"1", "Aster", {}, true}});
    model.setRows({{"1", "Aster", {}, true}});
    EXPECT_EQ(resets.count(), 1);
    EXPECT_EQ(updates.count(), 0);
}

} // namespace
} // namespace Kestry
