#include "SystemTimeZone.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>

#include "TemporaryDirectory.h"
#include "ZoneCalendar.h"

namespace KestryCore {
namespace {

/// An environment and a file `localtime` of the test's own, with the system's zone files.
class SystemTimeZoneTest : public testing::Test {
protected:
    [[nodiscard]] SystemTimeZone zone() const
    {
        const auto environment = [this](const std::string& name) {
            const auto found = environment_.find(name);
            return found != environment_.end() ? std::optional(found->second) : std::nullopt;
        };
        return systemTimeZone(environment, localTime());
    }
    [[nodiscard]] SystemTimeZone zoneNamed(const std::string& name)
    {
        environment_["TZ"] = name;
        return zone();
    }
    [[nodiscard]] std::string localTime() const { return folder_.path("localtime"); }

    /// Hours by which its clocks are ahead of UTC, on a day in January and one in July.
    static std::pair<double, double> hours(const SystemTimeZone& zone)
    {
        const auto calendar = ZoneCalendar::withSystemTimeZone("en_US", zone);
        const auto at = [&](int month) {
            const Date date = dateInUtc(WallTime{CalendarDay{2026, month, 15}, 12, 0, 0.0});
            return (dateInUtc(calendar.wallTime(date)) - date) / 3600.0;
        };
        return {at(1), at(7)};
    }

    void copyToLocalTime(const std::string& name) const
    {
        std::filesystem::copy_file("/usr/share/zoneinfo/" + name, localTime());
    }

    TemporaryDirectory folder_;
    std::map<std::string, std::string> environment_;
};

using Hours = std::pair<double, double>;

TEST_F(SystemTimeZoneTest, IsTheOneThatTheFileLinksTo)
{
    std::filesystem::create_symlink("/usr/share/zoneinfo/Europe/Berlin", localTime());
    EXPECT_EQ(zone().name, "Europe/Berlin");
    EXPECT_EQ(zone().path, "/usr/share/zoneinfo/Europe/Berlin");
    EXPECT_EQ(hours(zone()), Hours(1, 2));
}

TEST_F(SystemTimeZoneTest, IsFoundByItsContentWhereTheFileIsACopy)
{
    copyToLocalTime("America/Mexico_City");
    EXPECT_EQ(hours(zone()), Hours(-6, -6));
    EXPECT_EQ(ZoneFiles("/usr/share/zoneinfo").read(zone().name), zone().content);
    EXPECT_EQ(zone().path, localTime());
}

TEST_F(SystemTimeZoneTest, IsTheRuleInAFileThatIsNoneOfTheZones)
{
    copyToLocalTime("Europe/Berlin");
    std::string content = zone().content;
    content.replace(content.rfind("CET-1CEST"), 9, "XYZ-1XYST");
    std::ofstream(localTime(), std::ios::trunc) << content;
    EXPECT_EQ(zone().name, "XYZ-1XYST,M3.5.0,M10.5.0/3");
    EXPECT_EQ(zone().content, content);
}

TEST_F(SystemTimeZoneTest, IsUtcWithoutAFile)
{
    EXPECT_EQ(zone().name, "UTC");
    EXPECT_EQ(hours(zone()), Hours(0, 0));
}

TEST_F(SystemTimeZoneTest, TheEnvironmentWinsOverTheFile)
{
    std::filesystem::create_symlink("/usr/share/zoneinfo/Europe/Berlin", localTime());
    EXPECT_EQ(zoneNamed("Asia/Tokyo").name, "Asia/Tokyo");
    EXPECT_EQ(zoneNamed(":Asia/Tokyo").name, "Asia/Tokyo");
    EXPECT_EQ(zoneNamed("US/Pacific").name, "US/Pacific");
    EXPECT_EQ(zoneNamed("").name, "UTC");
    EXPECT_EQ(zoneNamed("Nowhere/Atall").name, "UTC");
}

TEST_F(SystemTimeZoneTest, MayBeGivenByThePathOfItsFile)
{
    for (const char* path : {"/usr/share/zoneinfo/Asia/Tokyo", ":/usr/share/zoneinfo/Asia/Tokyo",
             "../zoneinfo/Asia/Tokyo", "posix/Asia/Tokyo", "right/Asia/Tokyo"}) {
        EXPECT_EQ(zoneNamed(path).name, "Asia/Tokyo") << path;
        EXPECT_EQ(hours(zoneNamed(path)), Hours(9, 9)) << path;
    }
}

TEST_F(SystemTimeZoneTest, MayBeGivenByTheRuleOfItsClocks)
{
    EXPECT_EQ(hours(zoneNamed("CET-1CEST,M3.5.0,M10.5.0/3")), Hours(1, 2));
    EXPECT_EQ(hours(zoneNamed("<+0530>-5:30")), Hours(5.5, 5.5));
    EXPECT_EQ(hours(zoneNamed("AEST-10AEDT,M10.1.0,M4.1.0/3")), Hours(11, 10));
    EXPECT_EQ(hours(zoneNamed("XYZ3")), Hours(-3, -3));
    EXPECT_EQ(zoneNamed("XYZ3").name, "XYZ3");
}

TEST_F(SystemTimeZoneTest, ARuleThatDoesNotSayWhenMeansTheUnitedStates)
{
    const auto calendar = ZoneCalendar::withSystemTimeZone("en_US", zoneNamed("CET-1CEST"));
    const auto shown = [&](int day) {
        return calendar.wallTime(dateInUtc(WallTime{CalendarDay{2026, 3, day}, 12, 0, 0.0})).hour;
    };
    EXPECT_EQ(shown(7), 13);
    EXPECT_EQ(shown(8), 14);
}

TEST_F(SystemTimeZoneTest, ARuleThatIsNoneIsUtc)
{
    for (const char* rule : {"CET-1CEST,garbage", "X-3", "<+03-3", "QQQ", "-3"}) {
        const auto calendar = ZoneCalendar::withSystemTimeZone("en_US", zoneNamed(rule));
        EXPECT_EQ(calendar.timeZone(), "UTC") << rule;
        EXPECT_EQ(hours(zoneNamed(rule)), Hours(0, 0)) << rule;
    }
}

TEST_F(SystemTimeZoneTest, ARuleHoldsForGood)
{
    const auto calendar = ZoneCalendar::withRule("CET-1CEST,M3.5.0,M10.5.0/3", "en_US").value();
    for (const int year : {1970, 2026, 2302, 2303, 2304, 2700, 5000}) {
        const Date summer = dateInUtc(WallTime{CalendarDay{year, 7, 1}, 12, 0, 0.0});
        EXPECT_EQ(calendar.wallTime(summer).hour, 14) << year;
        EXPECT_EQ(calendar.wallTime(summer + 180 * 86'400.0).hour, 13) << year;
    }
}

TEST_F(SystemTimeZoneTest, IsTakenFromTheFolderThatTheEnvironmentNames)
{
    std::filesystem::create_directories(folder_.path("zones/Home"));
    std::filesystem::copy_file("/usr/share/zoneinfo/Asia/Tokyo", folder_.path("zones/Home/Office"));
    environment_["TZDIR"] = folder_.path("zones");
    EXPECT_EQ(zoneNamed("Home/Office").name, "Home/Office");
    EXPECT_EQ(hours(zoneNamed("Home/Office")), Hours(9, 9));
    EXPECT_EQ(zoneNamed("Asia/Tokyo").name, "UTC");
}

TEST_F(SystemTimeZoneTest, IsKnownByNameAloneWhereThereAreNoZoneFiles)
{
    environment_["TZDIR"] = folder_.path("none");
    EXPECT_EQ(zoneNamed("Europe/Berlin").content, "");
    EXPECT_EQ(hours(zoneNamed("Europe/Berlin")), Hours(1, 2));
    environment_.erase("TZ");
    std::filesystem::create_symlink(folder_.path("gone/zoneinfo/Asia/Tokyo"), localTime());
    EXPECT_EQ(zone().name, "Asia/Tokyo");
}

TEST_F(SystemTimeZoneTest, FixedClocksHaveARule)
{
    for (const double offset : {0.0, 3600.0, -12'600.0, 20'700.0, -1.0, 50'400.0}) {
        const auto calendar = ZoneCalendar::withRule(fixedRule(offset), "en_US");
        ASSERT_TRUE(calendar) << fixedRule(offset);
        EXPECT_EQ(dateInUtc(calendar->wallTime(Date{0.0})).seconds, offset);
    }
}

} // namespace
} // namespace KestryCore
