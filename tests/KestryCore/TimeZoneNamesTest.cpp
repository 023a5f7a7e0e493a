#include "TimeZoneNames.h"

#include <gmock/gmock.h>

#include "LedgerError.h"

namespace KestryCore {
namespace {

using testing::ThrowsMessage;

const ZoneFiles files("/usr/share/zoneinfo");
const ZoneFiles noFiles("/nonexistent");

TEST(TimeZoneNames, RefusesAMisspeltZoneAndNamesANearOne)
{
    EXPECT_THAT([] { requireTimeZone("Europe/Berln", files); },
        ThrowsMessage<LedgerError>(
            "There is no time zone \"Europe/Berln\". Did you mean \"Europe/Berlin\"?"));
}

TEST(TimeZoneNames, FindsTheZoneOfACityNamedAlone)
{
    EXPECT_THAT([] { requireTimeZone("tokio", files); },
        ThrowsMessage<LedgerError>(
            "There is no time zone \"tokio\". Did you mean \"Asia/Tokyo\"?"));
}

TEST(TimeZoneNames, RefusesAZoneLikeNoOther)
{
    EXPECT_THAT([] { requireTimeZone("Middle of nowhere", files); },
        ThrowsMessage<LedgerError>("There is no time zone \"Middle of nowhere\". Give one as in "
                                   "\"Europe/Berlin\" or \"UTC\"."));
}

TEST(TimeZoneNames, RefusesAbbreviationsAndOffsetsThatAreNoZoneNames)
{
    for (const char* name : {"BST", "IST", "GMT+3", "+01:00", "", "europe/berlin"}) {
        EXPECT_THROW(requireTimeZone(name, files), LedgerError) << name;
    }
    for (const char* name : {"UTC", "Etc/GMT+3", "US/Pacific", "America/Argentina/Salta",
             "America/Ciudad_Juarez", "America/Coyhaique"}) {
        EXPECT_NO_THROW(requireTimeZone(name, files)) << name;
    }
}

TEST(TimeZoneNames, AreThoseOfTheUnicodeLibraryWhereThereAreNoZoneFiles)
{
    for (const char* name : {"UTC", "Europe/Berlin", "US/Pacific"}) {
        EXPECT_NO_THROW(requireTimeZone(name, noFiles)) << name;
    }
    for (const char* name : {"BST", "Etc/Unknown", "", "posix/Europe/Berlin"}) {
        EXPECT_THROW(requireTimeZone(name, noFiles), LedgerError) << name;
    }
    EXPECT_THAT([] { requireTimeZone("tokio", noFiles); },
        ThrowsMessage<LedgerError>(
            "There is no time zone \"tokio\". Did you mean \"Asia/Tokyo\"?"));
}

} // namespace
} // namespace KestryCore
