#include "UpdateVersion.h"

#include <gtest/gtest.h>

namespace Kestry {
namespace {

UpdateVersion version(const std::string& text)
{
    return UpdateVersion::parse(text).value();
}

TEST(UpdateVersionTest, NumbersAreComparedAsNumbersFromTheLeft)
{
    EXPECT_LT(version("1.9"), version("1.10"));
    EXPECT_LT(version("1.10.9"), version("2"));
    EXPECT_LT(version("0.999999999"), version("1.0"));
    EXPECT_GT(version("1.2.3.4.5.6"), version("1.2.3.4.5.5"));
}

TEST(UpdateVersionTest, MissingNumbersCountAsZero)
{
    EXPECT_EQ(version("1.2"), version("1.2.0"));
    EXPECT_LT(version("1.2"), version("1.2.0.1"));
    EXPECT_EQ(version("0"), version("0.0.0"));
}

TEST(UpdateVersionTest, TheTextStaysAsItWasWritten)
{
    EXPECT_EQ(version("1.20.0").text(), "1.20.0");
}

TEST(UpdateVersionTest, AnyOtherTextIsNoVersion)
{
    for (const char* text :
        {"", ".", "1.", ".1", "1..2", "1.2-beta", "v1", " 1", "1 ", "-1", "+1", "1.02", "00",
            "1.2.3.4.5.6.7", "1234567890", "1.2\n", "..", "1/2", "\xD9\xA1", "0x1"}) {
        EXPECT_FALSE(UpdateVersion::parse(text)) << text;
    }
    EXPECT_FALSE(UpdateVersion::parse(std::string_view("1\0", 2)));
}

TEST(UpdateVersionTest, AKernelsVersionIsWhatItsNameBeginsWith)
{
    EXPECT_EQ(versionAtBeginning("6.1.0-28-amd64")->text(), "6.1.0");
    EXPECT_EQ(versionAtBeginning("6.6.")->text(), "6.6");
    EXPECT_EQ(versionAtBeginning("5.15.0")->text(), "5.15.0");
    EXPECT_FALSE(versionAtBeginning("unknown"));
    EXPECT_FALSE(versionAtBeginning(""));
}

} // namespace
} // namespace Kestry
