#include "SessionsModel.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QSignalSpy>

namespace Kestry {
namespace {

using KestryCore::Date;
using KestryCore::LedgerData;
using KestryCore::TimeEntry;
using KestryCore::Uuid;

/// A list of the sessions of a ledger, the latest first.
class SessionsModelTest : public ::testing::Test {
protected:
    SessionsModelTest()
    {
        KestryCore::Client client;
        client.id = Uuid::random();
        client.name = "Aster Studio";
        client.colorHex = "B7A5FF";
        KestryCore::Project project;
        project.id = Uuid::random();
        project.clientID = client.id;
        project.name = "Website";
        ledger.clients.append(client);
        ledger.projects.append(project);
        model.setWords({KestryCore::DayText(KestryCore::ZoneCalendar("UTC", "en_US")),
            KestryCore::MoneyText("en_US")});
        for (const char* title : {"One", "Two", "Three"}) {
            add(title);
        }
        model.show(ledger, latestFirst());
        resets.clear();
    }

    void add(const std::string& title)
    {
        const Date start = KestryCore::dateInUtc({KestryCore::CalendarDay{2026, 3, 14}, 9, 0, 0.0})
            + 60.0 * static_cast<double>(ledger.entries.size());
        TimeEntry entry;
        entry.id = Uuid::random();
        entry.projectID = ledger.projects.front().id;
        entry.title = title;
        entry.hourlyRateCents = 15000;
        entry.spans = {{start, start + 9000.0}};
        ledger.entries.append(entry);
    }

    [[nodiscard]] SessionsModel::Entries latestFirst() const
    {
        SessionsModel::Entries result;
        for (const TimeEntry& entry : ledger.entries) {
            result.insert(result.begin(), &entry);
        }
        return result;
    }

    [[nodiscard]] QString text(int row, SessionsModel::Role role = SessionsModel::LabelRole) const
    {
        return model.data(model.index(row), role).toString();
    }

    LedgerData ledger;
    SessionsModel model;
    QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};
    QSignalSpy resets{&model, &QAbstractItemModel::modelReset};
    QSignalSpy changes{&model, &QAbstractItemModel::dataChanged};
    QSignalSpy insertions{&model, &QAbstractItemModel::rowsInserted};
    QSignalSpy removals{&model, &QAbstractItemModel::rowsRemoved};
    QSignalSpy moves{&model, &QAbstractItemModel::rowsMoved};
};

TEST_F(SessionsModelTest, ARowSaysWhatTheTableShows)
{
    EXPECT_EQ(text(0), "Three");
    EXPECT_EQ(text(0, SessionsModel::DetailRole), "Aster Studio · Website");
    EXPECT_EQ(text(0, SessionsModel::DateRole), "Mar 14");
    EXPECT_EQ(text(0, SessionsModel::DurationRole), "2h 30m");
    EXPECT_EQ(text(0, SessionsModel::ValueRole), "$375.00");
    EXPECT_EQ(text(0, SessionsModel::ClientNameRole), "Aster Studio");
    EXPECT_EQ(text(0, SessionsModel::SpokenRole),
        "Three, Aster Studio, Website, March 14, 2 hours 30 minutes, $375.00");
}

TEST_F(SessionsModelTest, TheValueIsWordsWhereThereIsNoPrice)
{
    ledger.entries.modify(
        ledger.entries.back().id, [](TimeEntry& each) { each.rateIsKnown = false; });
    model.update(ledger, latestFirst());
    EXPECT_EQ(text(0, SessionsModel::ValueRole), "Rate not set");
    ledger.entries.modify(
        ledger.entries.back().id, [](TimeEntry& each) { each.isBillable = false; });
    model.update(ledger, latestFirst());
    EXPECT_EQ(text(0, SessionsModel::ValueRole), "Nonbillable");
}

TEST_F(SessionsModelTest, ANewSessionIsInserted)
{
    add("Four");
    model.update(ledger, latestFirst());
    EXPECT_EQ(text(0), "Four");
    EXPECT_EQ(insertions.count(), 1);
    EXPECT_EQ(changes.count() + removals.count() + moves.count() + resets.count(), 0);
}

TEST_F(SessionsModelTest, ADeletedSessionIsRemoved)
{
    ledger.entries.remove(ledger.entries.front().id);
    model.update(ledger, latestFirst());
    EXPECT_EQ(model.rowCount(), 2);
    EXPECT_EQ(removals.count(), 1);
    EXPECT_EQ(changes.count() + insertions.count() + moves.count() + resets.count(), 0);
}

TEST_F(SessionsModelTest, AnEditedSessionChangesItsRowAlone)
{
    ledger.entries.modify(
        ledger.entries.front().id, [](TimeEntry& each) { each.title = "Renamed"; });
    model.update(ledger, latestFirst());
    ASSERT_EQ(changes.count(), 1);
    EXPECT_EQ(changes[0][0].toModelIndex().row(), 2);
    EXPECT_EQ(text(2), "Renamed");
    EXPECT_EQ(removals.count() + insertions.count() + moves.count() + resets.count(), 0);
}

TEST_F(SessionsModelTest, ASessionThatIsSortedElsewhereMoves)
{
    SessionsModel::Entries other = latestFirst();
    std::swap(other[0], other[1]);
    std::swap(other[1], other[2]);
    model.update(ledger, other);
    EXPECT_EQ(text(2), "Three");
    EXPECT_EQ(moves.count(), 1);
    EXPECT_EQ(changes.count() + removals.count() + insertions.count() + resets.count(), 0);
}

TEST_F(SessionsModelTest, ARenamedClientChangesAllRows)
{
    ledger.clients.modify(
        ledger.clients.front().id, [](KestryCore::Client& each) { each.name = "Birch"; });
    model.update(ledger, latestFirst());
    ASSERT_EQ(changes.count(), 1);
    EXPECT_EQ(changes[0][1].toModelIndex().row(), 2);
    EXPECT_EQ(text(1, SessionsModel::DetailRole), "Birch · Website");
}

TEST_F(SessionsModelTest, VeryManyChangesShowTheListAnewInItsPlace)
{
    bool keptPlace = false;
    QObject::connect(
        &model, &QAbstractItemModel::modelReset, &model, [&] { keptPlace = model.keepsPlace(); });
    for (int count = 0; count < 300; ++count) {
        add("New");
    }
    SessionsModel::Entries every;
    for (const TimeEntry& entry : ledger.entries) {
        every.insert(every.size() % 2 == 0 ? every.begin() : every.end(), &entry);
    }
    model.update(ledger, every);
    SessionsModel::Entries turned(every.rbegin(), every.rend());
    model.update(ledger, turned);
    EXPECT_TRUE(keptPlace);
    EXPECT_EQ(resets.count(), 1);
    EXPECT_EQ(model.rowCount(), 303);
}

TEST_F(SessionsModelTest, ARowIsFoundByItsSession)
{
    EXPECT_EQ(model.rowOf(model.recordID(1)), 1);
    EXPECT_EQ(model.rowOf("nobody"), -1);
    EXPECT_EQ(model.recordID(3), "");
    EXPECT_EQ(model.entry(-1), nullptr);
}

TEST_F(SessionsModelTest, RowsOutliveTheLedgerThatTheyCameFrom)
{
    ledger = LedgerData();
    EXPECT_EQ(text(2), "One");
}

} // namespace
} // namespace Kestry
