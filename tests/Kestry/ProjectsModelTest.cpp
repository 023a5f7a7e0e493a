#include "ProjectsModel.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QSignalSpy>

namespace Kestry {
namespace {

class ProjectsModelTest : public ::testing::Test {
protected:
    [[nodiscard]] static ProjectRow projectNamed(const QString& name)
    {
        return {KestryCore::Uuid::random(), name, "0 saved sessions", "$1.00 / hr", name};
    }
    [[nodiscard]] QStringList names() const
    {
        QStringList result;
        for (int row = 0; row < model.rowCount(); ++row) {
            result << model.data(model.index(row), ProjectsModel::NameRole).toString();
        }
        return result;
    }

    ProjectsModel model;
    QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};
    std::vector<ProjectRow> rows{
        projectNamed("Website"), projectNamed("Poster"), projectNamed("Book")};
    QSignalSpy resets{&model, &QAbstractItemModel::modelReset};
    QSignalSpy changes{&model, &QAbstractItemModel::dataChanged};
};

TEST_F(ProjectsModelTest, ShowsAllOfARow)
{
    model.show(rows);
    EXPECT_EQ(names(), (QStringList{"Website", "Poster", "Book"}));
    const QModelIndex first = model.index(0);
    EXPECT_EQ(
        model.data(first, ProjectsModel::RecordIDRole).toString().toStdString(), rows[0].id.text());
    EXPECT_EQ(model.data(first, ProjectsModel::CountRole).toString(), "0 saved sessions");
    EXPECT_EQ(model.data(first, ProjectsModel::RateRole).toString(), "$1.00 / hr");
    EXPECT_EQ(model.data(first, ProjectsModel::SpokenRole).toString(), "Website");
}

TEST_F(ProjectsModelTest, ARowThatDiffersAloneIsTold)
{
    model.show(rows);
    changes.clear();
    rows[1].count = "1 saved sessions";
    model.show(rows);
    ASSERT_EQ(changes.size(), 1);
    EXPECT_EQ(changes.front().front().toModelIndex().row(), 1);
    EXPECT_EQ(resets.size(), 0);
}

TEST_F(ProjectsModelTest, RowsThatComeGoAndMoveLeaveTheOthersInPlace)
{
    model.show(rows);
    model.show({rows[2], projectNamed("Logo"), rows[0]});
    EXPECT_EQ(names(), (QStringList{"Book", "Logo", "Website"}));
    model.show({});
    EXPECT_EQ(names(), QStringList());
    EXPECT_EQ(resets.size(), 0);
}

TEST_F(ProjectsModelTest, AListThatIsAllOthersIsShownAnew)
{
    std::vector<ProjectRow> many(100, projectNamed(""));
    for (ProjectRow& row : many) {
        row.id = KestryCore::Uuid::random();
    }
    model.show(rows);
    std::vector<ProjectRow> alternating;
    for (const ProjectRow& row : many) {
        alternating.push_back(row);
        alternating.push_back(projectNamed("New"));
    }
    model.show(many);
    resets.clear();
    model.show(alternating);
    EXPECT_EQ(model.rowCount(), 200);
    EXPECT_EQ(resets.size(), 1);
}

} // namespace
} // namespace Kestry
