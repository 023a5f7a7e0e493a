#include "ZoneFiles.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "TemporaryDirectory.h"

namespace KestryCore {
namespace {

/// A folder with two zones under three names, and what else may lie there.
class ZoneFilesTest : public testing::Test {
protected:
    ZoneFilesTest()
    {
        for (const char* name : {"Europe", "posix/Europe", "right/Europe"}) {
            std::filesystem::create_directories(folder_.path(name));
        }
        write("Europe/Berlin", "TZif berlin");
        write("UTC", "TZif utc");
        write("posix/Europe/Berlin", "TZif berlin");
        write("right/Europe/Berlin", "TZif with leap seconds");
        write("zone.tab", "DE Europe/Berlin");
        write("README", "no zone");
        std::filesystem::create_symlink("UTC", folder_.path("Zulu"));
    }

    void write(const std::string& name, const std::string& content) const
    {
        std::ofstream(folder_.path(name)) << content;
    }

    TemporaryDirectory folder_;
    ZoneFiles files_{folder_.path()};
};

TEST_F(ZoneFilesTest, AreReadByTheNameOfTheZone)
{
    EXPECT_EQ(files_.read("Europe/Berlin"), "TZif berlin");
    EXPECT_EQ(files_.read("Zulu"), "TZif utc");
    EXPECT_EQ(files_.read("Europe/Paris"), std::nullopt);
}

TEST_F(ZoneFilesTest, AreReadAnewEachTime)
{
    write("UTC", "TZif other");
    EXPECT_EQ(files_.read("UTC"), "TZif other");
}

TEST_F(ZoneFilesTest, NoNameLeadsOutOfTheFolderOrToAnotherCollection)
{
    const std::string inside = folder_.path("UTC");
    for (const std::string& name : {inside, "/" + inside, std::string("../../etc/localtime"),
             std::string("Europe/../UTC"), std::string("./UTC"), std::string("Europe//Berlin"),
             std::string("/UTC"), std::string("posix/Europe/Berlin"),
             std::string("right/Europe/Berlin"), std::string("Europe"), std::string("Europe/"),
             std::string("zone.tab"), std::string("README"), std::string(),
             std::string("localtime"), std::string("UTC\0x", 5)}) {
        EXPECT_EQ(files_.read(name), std::nullopt) << name;
    }
}

TEST_F(ZoneFilesTest, NamesAreThoseOfZonesOnly)
{
    EXPECT_EQ(files_.names(), (std::vector<std::string>{"Europe/Berlin", "UTC", "Zulu"}));
    EXPECT_TRUE(ZoneFiles(folder_.path("none")).names().empty());
}

TEST_F(ZoneFilesTest, AZoneIsFoundByThePathOfItsFile)
{
    const std::string link = folder_.path("link");
    std::filesystem::create_symlink(folder_.path("Europe/Berlin"), link);
    EXPECT_EQ(files_.nameOf(link), "Europe/Berlin");
    EXPECT_EQ(files_.nameOf(folder_.path("right/Europe/Berlin")), "Europe/Berlin");
    EXPECT_EQ(files_.nameOf(folder_.path("README")), std::nullopt);
    EXPECT_EQ(files_.nameOf("/etc/hostname"), std::nullopt);
}

TEST_F(ZoneFilesTest, AZoneIsFoundByACopyOfItsFile)
{
    EXPECT_EQ(files_.nameOfContent("TZif berlin"), "Europe/Berlin");
    EXPECT_EQ(files_.nameOfContent("TZif berli"), std::nullopt);
}

TEST_F(ZoneFilesTest, APipeIsNotWaitedFor)
{
    ASSERT_EQ(mkfifo(folder_.path("Pipe").c_str(), 0600), 0);
    EXPECT_EQ(files_.read("Pipe"), std::nullopt);
    EXPECT_EQ(files_.names().size(), 3U);
}

TEST_F(ZoneFilesTest, StandWhereTheEnvironmentSays)
{
    const auto folderWith = [](std::optional<std::string> value) {
        return ZoneFiles::ofSystem([&](const std::string& name) {
            return name == "TZDIR" ? value : std::nullopt;
        }).folder();
    };
    EXPECT_EQ(folderWith("/opt/zones"), "/opt/zones");
    EXPECT_EQ(folderWith(""), "/usr/share/zoneinfo");
    EXPECT_EQ(folderWith(std::nullopt), "/usr/share/zoneinfo");
}

} // namespace
} // namespace KestryCore
