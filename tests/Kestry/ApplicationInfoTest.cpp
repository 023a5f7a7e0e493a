#include "ApplicationInfo.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

namespace Kestry {
namespace {

class ApplicationInfoTest : public ::testing::Test {
protected:
    ApplicationInfo infoOf(const QByteArray& json)
    {
        QFile file(directory_.filePath("Info.json"));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(json);
        file.close();
        return ApplicationInfo::read(file.fileName());
    }

private:
    QTemporaryDir directory_;
};

TEST_F(ApplicationInfoTest, DemoModeIsTheBooleanTrue)
{
    EXPECT_TRUE(infoOf(R"({"KestryDemoMode": true})").demoMode());
    EXPECT_FALSE(infoOf(R"({"KestryDemoMode": false})").demoMode());
}

TEST_F(ApplicationInfoTest, OnlyABooleanCountsAsDemoMode)
{
    for (const char* value : {R"("true")", "1", "null", "[true]", R"({"value": true})"}) {
        EXPECT_FALSE(infoOf(QByteArray(R"({"KestryDemoMode": )") + value + "}").demoMode())
            << value;
    }
}

TEST_F(ApplicationInfoTest, AMissingKeyIsFalse)
{
    EXPECT_FALSE(infoOf("{}").demoMode());
}

TEST_F(ApplicationInfoTest, TheVersionIsATextOrNone)
{
    EXPECT_EQ(infoOf(R"({"CFBundleShortVersionString": "2.5.1"})").shortVersion(), "2.5.1");
    EXPECT_EQ(infoOf(R"({"CFBundleShortVersionString": 2.5})").shortVersion(), "");
    EXPECT_EQ(infoOf("{}").shortVersion(), "");
}

TEST_F(ApplicationInfoTest, AFileThatIsNoObjectIsEmpty)
{
    EXPECT_FALSE(infoOf("[true]").demoMode());
    EXPECT_FALSE(infoOf(R"({"KestryDemoMode": true)").demoMode());
}

TEST_F(ApplicationInfoTest, AMissingFileIsEmpty)
{
    EXPECT_FALSE(ApplicationInfo::read("/nowhere/Info.json").demoMode());
}

TEST_F(ApplicationInfoTest, TheFileStandsInTheSharedFolderOfTheProgramsPrefix)
{
    EXPECT_EQ(ApplicationInfo::pathFor("/opt/kestry/bin"), "/opt/kestry/share/kestry/Info.json");
}

} // namespace
} // namespace Kestry
