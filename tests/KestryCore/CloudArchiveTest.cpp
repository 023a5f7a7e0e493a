#include "CloudArchive.h"

#include <gtest/gtest.h>

namespace KestryCore {
namespace {

const CloudZoneID zone{"Zone"};

CloudRecord recordOf(const std::string& version)
{
    return CloudRecord{{"Client:1", zone}, "Type", version, {}};
}

TEST(CloudArchive, ARecordComesBackWithAllButItsFields)
{
    CloudRecord record = recordOf("v1");
    record.fields["schema"] = 1.0;
    EXPECT_EQ(recordFromSystemFields(archiveSystemFields(record)), recordOf("v1"));
}

TEST(CloudArchive, AVersionMayHoldAnyBytes)
{
    for (const std::string& version :
        {std::string(), std::string("\n\n"), std::string("a\0b", 3)}) {
        EXPECT_EQ(
            recordFromSystemFields(archiveSystemFields(recordOf(version))), recordOf(version));
    }
}

TEST(CloudArchive, OtherBytesAreNoRecord)
{
    for (const char* const bytes : {"", "v1", "Client:1\n", "Client:1\nZone\nType"}) {
        EXPECT_EQ(recordFromSystemFields(bytes), std::nullopt) << bytes;
    }
}

TEST(CloudArchive, ACursorComesBack)
{
    for (const std::string& bytes : {std::string(), std::string("12\n-x"), std::string("\0", 1)}) {
        EXPECT_EQ(cursorFromArchive(zone, archiveCursor(zone, {bytes})), CloudCursor{bytes});
    }
}

TEST(CloudArchive, ACursorOfAnotherZoneOrOtherBytesAreNoCursor)
{
    EXPECT_EQ(cursorFromArchive(zone, archiveCursor({"Other"}, {"12"})), std::nullopt);
    EXPECT_EQ(cursorFromArchive(zone, ""), std::nullopt);
    EXPECT_EQ(cursorFromArchive(zone, "Zone"), std::nullopt);
    EXPECT_EQ(cursorFromArchive(zone, "garbage"), std::nullopt);
}

} // namespace
} // namespace KestryCore
