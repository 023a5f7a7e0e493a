#include "SyncCloudRecord.h"

#include <gtest/gtest.h>

#include <functional>

#include "CloudArchive.h"
#include "SampleLedger.h"
#include "SyncDeliveryError.h"

namespace KestryCore {
namespace {

/// A version of a client, and the same as the cloud has it.
class SyncCloudRecordTest : public testing::Test {
protected:
    [[nodiscard]] static std::string refusalOf(const std::function<void()>& action)
    {
        try {
            action();
        } catch (const SyncDeliveryError& error) {
            return error.what();
        }
        return "(accepted)";
    }
    [[nodiscard]] std::string reading() const
    {
        return refusalOf([&] { (void)syncRecordFrom(cloud); });
    }
    [[nodiscard]] std::string making() const
    {
        return refusalOf([&] { (void)cloudRecordFor(version, systemFields); });
    }

    const SyncRecord version = Sample::record(Sample::client());
    SharedMap<std::string> systemFields;
    CloudRecord cloud = cloudRecordFor(version, systemFields);
    const std::string unsupported = "iCloud contains an unsupported record. Update Kestry before "
                                    "retrying; local data is safe.";
    const std::string incomplete =
        "An iCloud record is incomplete. Sync stopped without advancing its cursor.";
    const std::string invalid = "Saved iCloud metadata is invalid. Local changes are preserved.";
};

TEST_F(SyncCloudRecordTest, ALiveVersionHasAllFields)
{
    EXPECT_EQ(cloud.id, (CloudRecordID{version.recordID, {"KestryWorkspace"}}));
    EXPECT_EQ(cloud.type, "KestryRecord");
    EXPECT_EQ(cloud.serverVersion, "");
    EXPECT_EQ(cloud.fields,
        (std::map<std::string, CloudValue>{{"schema", 1.0}, {"revision", version.revision},
            {"writer", version.deviceID}, {"deleted", 0.0},
            {"payload", CloudBytes{*version.payload}}}));
}

TEST_F(SyncCloudRecordTest, ADeletionHasNoPayload)
{
    const CloudRecord deletion = cloudRecordFor(Sample::deletion(version.recordID), systemFields);
    EXPECT_EQ(deletion.fields.at("deleted"), CloudValue(1.0));
    EXPECT_FALSE(deletion.fields.contains("payload"));
}

TEST_F(SyncCloudRecordTest, AVersionComesBack)
{
    EXPECT_EQ(syncRecordFrom(cloud), version);
    const SyncRecord deletion = Sample::deletion(version.recordID);
    EXPECT_EQ(syncRecordFrom(cloudRecordFor(deletion, systemFields)), deletion);
}

TEST_F(SyncCloudRecordTest, ASaveIsAChangeOfTheVersionThatIsKnown)
{
    cloud.serverVersion = "v7";
    systemFields[version.recordID] = archiveSystemFields(cloud);
    EXPECT_EQ(cloudRecordFor(version, systemFields), cloud);
}

TEST_F(SyncCloudRecordTest, WhatIsNotUnderstoodIsUnsupported)
{
    const auto withField = [this](const char* name, const CloudValue& value) {
        CloudRecord changed = cloud;
        changed.fields[name] = value;
        return refusalOf([&] { (void)syncRecordFrom(changed); });
    };
    EXPECT_EQ(withField("schema", 2.0), unsupported);
    EXPECT_EQ(withField("schema", std::string("1")), unsupported);
    EXPECT_EQ(withField("revision", std::string("7")), unsupported);
    EXPECT_EQ(withField("revision", 7.0), unsupported);
    EXPECT_EQ(withField("writer", std::string()), unsupported);
    EXPECT_EQ(withField("writer", CloudBytes{"device"}), unsupported);
    EXPECT_EQ(withField("deleted", 2.0), unsupported);
    EXPECT_EQ(withField("deleted", 0.5), unsupported);
    EXPECT_EQ(withField("deleted", std::string("0")), unsupported);
}

TEST_F(SyncCloudRecordTest, SoIsARecordOfAnotherTypeOrWithAFieldMissing)
{
    for (const char* const name : {"schema", "revision", "writer", "deleted"}) {
        CloudRecord changed = cloud;
        changed.fields.erase(name);
        EXPECT_EQ(refusalOf([&] { (void)syncRecordFrom(changed); }), unsupported) << name;
    }
    cloud.type = "Other";
    EXPECT_EQ(reading(), unsupported);
}

TEST_F(SyncCloudRecordTest, ALiveRecordWithoutBytesIsIncomplete)
{
    cloud.fields["payload"] = std::string("text");
    EXPECT_EQ(reading(), incomplete);
    cloud.fields.erase("payload");
    EXPECT_EQ(reading(), incomplete);
    cloud.fields["schema"] = 2.0;
    EXPECT_EQ(reading(), unsupported);
}

TEST_F(SyncCloudRecordTest, ADeletionWithAPayloadKeepsItToBeRefusedLater)
{
    cloud.fields["deleted"] = 1.0;
    EXPECT_EQ(syncRecordFrom(cloud).payload, version.payload);
}

TEST_F(SyncCloudRecordTest, MetadataOfAnotherRecordZoneOrTypeIsRefused)
{
    systemFields[version.recordID] = "garbage";
    EXPECT_EQ(making(), invalid);
    for (const auto& change : std::initializer_list<void (*)(CloudRecord&)>{
             [](CloudRecord& record) { record.id.name = "Client:other"; },
             [](CloudRecord& record) { record.id.zone.name = "Other"; },
             [](CloudRecord& record) { record.type = "Other"; }}) {
        CloudRecord changed = cloud;
        change(changed);
        systemFields[version.recordID] = archiveSystemFields(changed);
        EXPECT_EQ(making(), invalid);
    }
    systemFields[version.recordID] = archiveSystemFields(cloud);
    EXPECT_EQ(making(), "(accepted)");
}

} // namespace
} // namespace KestryCore
