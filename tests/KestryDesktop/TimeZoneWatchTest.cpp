#include "TimeZoneWatch.h"

#include <QCoreApplication>
#include <QDeadlineTimer>

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <vector>

#include "TemporaryDirectory.h"

namespace Kestry {
namespace {

using KestryCore::SystemTimeZone;

/// A system of the test's own: a folder in the place of /etc, and one with zone files.
class TimeZoneWatchTest : public ::testing::Test {
protected:
    TimeZoneWatchTest()
    {
        std::filesystem::create_directories(folder.path("etc"));
        std::filesystem::create_directories(folder.path("zones/Home"));
        install("Europe/Berlin", "Home/One");
        install("Asia/Tokyo", "Home/Two");
        link("Home/One");
    }

    void install(const std::string& zone, const std::string& name)
    {
        const std::string path = folder.path("zones/" + name);
        std::filesystem::copy_file("/usr/share/zoneinfo/" + zone, path + ".new");
        std::filesystem::rename(path + ".new", path);
    }
    /// As programs that choose a zone do it: the new link takes the place of the old one.
    void link(const std::string& name)
    {
        std::filesystem::create_symlink(folder.path("zones/" + name), localTime + ".new");
        std::filesystem::rename(localTime + ".new", localTime);
    }
    void watch()
    {
        watched.emplace(
            [this](const std::string& name) {
                const auto found = environment.find(name);
                return found != environment.end() ? std::optional(found->second) : std::nullopt;
            },
            localTime, [this](const SystemTimeZone& zone) { seen.push_back(zone.name); });
    }
    /// Whether so many changes have been told, at the end of a time in which they could be.
    bool hasSeen(std::size_t count)
    {
        QDeadlineTimer deadline(10'000);
        while (seen.size() < count && !deadline.hasExpired()) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 100);
        }
        return seen.size() == count;
    }

    KestryCore::TemporaryDirectory folder;
    std::string localTime = folder.path("etc/localtime");
    std::map<std::string, std::string> environment{{"TZDIR", folder.path("zones")}};
    std::vector<std::string> seen;
    std::optional<TimeZoneWatch> watched;
};

TEST_F(TimeZoneWatchTest, AnotherLinkIsAnotherZone)
{
    watch();
    link("Home/Two");
    EXPECT_TRUE(hasSeen(1));
    link("Home/One");
    EXPECT_TRUE(hasSeen(2));
    EXPECT_EQ(seen, (std::vector<std::string>{"Home/Two", "Home/One"}));
}

TEST_F(TimeZoneWatchTest, ACopyInThePlaceOfTheLinkIsSeenAndSoIsOneWrittenOverIt)
{
    watch();
    std::filesystem::remove(localTime);
    std::filesystem::copy_file(folder.path("zones/Home/Two"), localTime);
    EXPECT_TRUE(hasSeen(1));
    std::filesystem::copy_file(folder.path("zones/Home/One"), localTime,
        std::filesystem::copy_options::overwrite_existing);
    EXPECT_TRUE(hasSeen(2));
    EXPECT_EQ(seen, (std::vector<std::string>{"Home/Two", "Home/One"}));
}

TEST_F(TimeZoneWatchTest, AnUpdateOfTheZonesFileIsSeen)
{
    watch();
    install("America/Mexico_City", "Home/One");
    EXPECT_TRUE(hasSeen(1));
    link("Home/Two");
    EXPECT_TRUE(hasSeen(2));
    install("America/Mexico_City", "Home/Two");
    EXPECT_TRUE(hasSeen(3));
}

TEST_F(TimeZoneWatchTest, WhatChangesNothingIsNotTold)
{
    watch();
    link("Home/One");
    install("America/Mexico_City", "Home/Two");
    QDeadlineTimer deadline(800);
    while (!deadline.hasExpired()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 100);
    }
    EXPECT_TRUE(seen.empty());
}

TEST_F(TimeZoneWatchTest, AZoneOfTheEnvironmentIsTheUsersWhateverTheSystemHas)
{
    environment["TZ"] = "Home/One";
    watch();
    link("Home/Two");
    install("America/Mexico_City", "Home/One");
    EXPECT_TRUE(hasSeen(1));
    EXPECT_EQ(seen.front(), "Home/One");
}

} // namespace
} // namespace Kestry
