#include "TimeZoneNames.h"

#include <gmock/gmock.h>

#include "LedgerError.h"

namespace KestryCore {
namespace {

using testing::ThrowsMessage;

TEST(TimeZoneNames, RefusesAMisspeltZoneAndNamesANearOne)
{
    EXPECT_THAT([] { requireTimeZone("Europe/Berln"); },
        ThrowsMessage<LedgerError>(
            "There is no time zone \"Europe/Berln\". Did you mean \"Europe/Berlin\"?"));
}

TEST(TimeZoneNames, FindsTheZoneOfACityNamedAlone)
{
    EXPECT_THAT([] { requireTimeZone("tokio"); },
        ThrowsMessage<LedgerError>(
            "There is no time zone \"tokio\". Did you mean \"Asia/Tokyo\"?"));
}

TEST(TimeZoneNames, RefusesAZoneLikeNoOther)
{
    EXPECT_THAT([] { requireTimeZone("Middle of nowhere"); },
        ThrowsMessage<LedgerError>("There is no time zone \"Middle of nowhere\". Give one as in "
                                   "\"Europe/Berlin\" or \"UTC\"."));
}

TEST(TimeZoneNames, RefusesAbbreviationsAndOffsetsThatAreNoZoneNames)
{
    for (const char* name : {"BST", "IST", "GMT+3", "+01:00", "", "europe/berlin"}) {
        EXPECT_THROW(requireTimeZone(name), LedgerError) << name;
    }
    for (const char* name : {"UTC", "Etc/GMT+3", "US/Pacific", "America/Argentina/Salta"}) {
        EXPECT_NO_THROW(requireTimeZone(name)) << name;
    }
}

} // namespace
} // namespace KestryCore
