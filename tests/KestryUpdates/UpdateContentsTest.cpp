#include "UpdateContents.h"

#include <gtest/gtest.h>

#include "MemoryFileSystem.h"
#include "Refusal.h"

namespace Kestry {
namespace {

using namespace KestryCore;

class UpdateContentsTest : public testing::Test {
protected:
    UpdateContentsTest()
    {
        for (const char* path : {"/home/new", "/home/new/share", "/home/new/share/kestry"}) {
            files.putDirectory(path);
        }
        hold("1.3.0");
    }
    void hold(const std::string& version)
    {
        files.put(info, "{\"CFBundleShortVersionString\": \"" + version + "\"}");
    }
    /// What is said to an archive announced as `announced` by a program of version `running`.
    std::string answer(const std::string& announced, const std::string& running = "1.2.0")
    {
        return refusalOf([&] {
            requireAnnouncedVersion(files, "/home/new", tree,
                UpdateVersion::parse(announced).value(), UpdateVersion::parse(running).value());
        });
    }

    const std::string info = "/home/new/share/kestry/Info.json";
    const std::string noKestry = "The new version was refused: its archive holds no Kestry.";
    MemoryFileSystem files;
    UnpackedTree tree{{"bin/kestry"}};
};

TEST_F(UpdateContentsTest, TheAnnouncedVersionIsAccepted)
{
    EXPECT_EQ(answer("1.3.0"), accepted);
    EXPECT_EQ(answer("1.3"), accepted);
}

TEST_F(UpdateContentsTest, AnOldArchiveUnderANewNameIsRefused)
{
    hold("1.1.0");
    EXPECT_EQ(answer("1.3.0"),
        "The new version was refused: it was announced as 1.3.0, and it is 1.1.0.");
}

TEST_F(UpdateContentsTest, WhatIsNotNewerIsRefused)
{
    EXPECT_EQ(answer("1.3.0", "1.3"), "The new version was refused: 1.3.0 isn't newer than 1.3.");
    EXPECT_EQ(answer("1.3.0", "2.0"), "The new version was refused: 1.3.0 isn't newer than 2.0.");
}

TEST_F(UpdateContentsTest, AnArchiveWithoutAProgramIsRefused)
{
    tree.programs = {"bin/other"};
    EXPECT_EQ(answer("1.3.0"), noKestry);
}

TEST_F(UpdateContentsTest, AnArchiveThatDoesNotSayWhatItIsIsRefused)
{
    for (const char* json : {"", "{}", "[]", "{\"CFBundleShortVersionString\": 1.3}",
             "{\"CFBundleShortVersionString\": \"new\"}", "1.3.0"}) {
        files.put(info, json);
        EXPECT_EQ(answer("1.3.0"), noKestry) << json;
    }
    files.put(info, std::string(65'537, ' '));
    EXPECT_EQ(answer("1.3.0"), noKestry);
    files.erase(info);
    EXPECT_EQ(answer("1.3.0"), noKestry);
}

TEST_F(UpdateContentsTest, ALinkInPlaceOfTheVersionIsRefused)
{
    files.put("/home/new/other", "{\"CFBundleShortVersionString\": \"1.3.0\"}");
    files.putLink(info, "../../other");
    EXPECT_EQ(answer("1.3.0"), noKestry);
}

} // namespace
} // namespace Kestry
