#include "SyncComparison.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "LogoImages.h"
#include "SampleLedger.h"
#include "SyncRecords.h"

namespace KestryCore {
namespace {

using namespace Sample;

using Fields = std::vector<ComparedField>;

Fields compare(const SyncRecord& local, const SyncRecord& remote)
{
    const SyncComparison comparison(ZoneCalendar("UTC", "en_US"));
    return comparison.fields({local.recordID, local, remote}, ledger());
}

std::vector<std::string> differing(const Fields& fields)
{
    std::vector<std::string> names;
    for (const ComparedField& field : fields) {
        if (field.differs) {
            names.push_back(field.name);
        }
    }
    return names;
}

ComparedField field(const Fields& fields, const std::string& name)
{
    const auto found = std::ranges::find(fields, name, &ComparedField::name);
    return found == fields.end() ? ComparedField{} : *found;
}

using Names = std::vector<std::string>;

TEST(SyncComparison, AClientIsComparedInAllThatPeopleKnowOfIt)
{
    Client other = client();
    other.name = "Harbor Books";
    other.hourlyRateCents = 17'550;
    other.colorHex = "00FF00";
    other.logoData = LogoImages::png();
    const Fields fields = compare(record(client()), record(other));
    EXPECT_EQ(differing(fields), (Names{"Name", "Rate", "Color", "Logo"}));
    EXPECT_EQ(field(fields, "Rate"), (ComparedField{"Rate", "$150.00/hr", "$175.50/hr", true}));
    EXPECT_EQ(field(fields, "Logo"), (ComparedField{"Logo", "None", "Image, 1 KB", true}));
    EXPECT_EQ(field(fields, "Projects"), (ComparedField{"Projects", "Yes", "Yes", false}));
}

TEST(SyncComparison, AProjectNamesItsClient)
{
    Project other = project();
    other.clientID = clientID(8);
    other.rateIsKnown = false;
    const Fields fields = compare(record(project()), record(other));
    EXPECT_EQ(field(fields, "Client"),
        (ComparedField{"Client", "Harbour Books", "Unknown client", true}));
    EXPECT_EQ(field(fields, "Rate"), (ComparedField{"Rate", "$150.00/hr", "Unpriced", true}));
}

TEST(SyncComparison, ASessionIsComparedToTheSecond)
{
    TimeEntry longer = entry();
    longer.spans.back().end = longer.spans.back().end + 1.0;
    const Fields fields = compare(record(synced(entry())), record(synced(longer)));
    EXPECT_EQ(field(fields, "Duration"), (ComparedField{"Duration", "01:00:00", "01:00:01", true}));
    EXPECT_EQ(field(fields, "Project").local, "Harbour Books · Catalogue");
    EXPECT_FALSE(field(fields, "Started").differs);
}

TEST(SyncComparison, AHiddenProjectIsItsClient)
{
    LedgerData data = ledger();
    Project hidden = project(2);
    hidden.isClientDefault = true;
    data.projects.append(hidden);
    TimeEntry session = entry();
    session.projectID = hidden.id;
    const SyncRecord version = record(synced(session));
    const Fields fields = SyncComparison(ZoneCalendar("UTC", "en_US"))
                              .fields({version.recordID, version, version}, data);
    EXPECT_EQ(field(fields, "Project").local, "Harbour Books");
}

TEST(SyncComparison, ATimerIsComparedWithTheSessionThatItBecame)
{
    ActiveSession running = runningSession();
    TimeEntry saved = entry(9);
    saved.isBillable = false;
    const Fields fields = compare(record(synced(running)), record(synced(saved)));
    EXPECT_EQ(field(fields, "Ended").local, "Running");
    EXPECT_EQ(field(fields, "Duration"), (ComparedField{"Duration", "01:10:00", "01:00:00", true}));
    EXPECT_EQ(field(fields, "Intervals"), (ComparedField{"Intervals", "2", "1", true}));
    EXPECT_EQ(field(fields, "Value"), (ComparedField{"Value", "$175.00", "Nonbillable", true}));
}

TEST(SyncComparison, APausedTimerEndsWithItsPause)
{
    const SyncRecord version = record(synced(pausedSession()));
    const Fields fields = compare(version, version);
    EXPECT_EQ(field(fields, "Ended").local, "Paused");
    EXPECT_EQ(field(fields, "Intervals").local, "1");
}

TEST(SyncComparison, ADeletionStandsBesideWhatItWouldRemove)
{
    const Fields fields = compare(deletion(record(client()).recordID), record(client()));
    EXPECT_EQ(fields.front(), (ComparedField{"Record", "Deleted", "Kept", true}));
    EXPECT_EQ(field(fields, "Name"), (ComparedField{"Name", "—", "Harbour Books", false}));
}

TEST(SyncComparison, WhatCannotBeReadIsUnavailable)
{
    SyncRecord broken = record(client());
    broken.payload = "{";
    const Fields fields = compare(record(client()), broken);
    EXPECT_EQ(fields.front(), (ComparedField{"Record", "Kept", "Unavailable", true}));
    EXPECT_EQ(field(fields, "Name"), (ComparedField{"Name", "Harbour Books", "—", false}));
}

TEST(SyncComparison, ADifferenceThatIsNotShownIsTold)
{
    TimeEntry imported = entry();
    imported.sourceID = "import-7";
    const Fields fields = compare(record(synced(entry())), record(synced(imported)));
    EXPECT_EQ(differing(fields), (Names{"Other details"}));
}

TEST(SyncComparison, EqualVersionsDifferInNothing)
{
    EXPECT_EQ(differing(compare(record(client()), record(client()))), Names{});
}

} // namespace
} // namespace KestryCore
