#include "DesktopFont.h"

#include <gtest/gtest.h>

namespace Kestry {
namespace {

TEST(DesktopFontTest, ReadsAFontOfGTK)
{
    EXPECT_EQ((DesktopFont{"Cantarell", 11}), gtkFont("Cantarell 11"));
    EXPECT_EQ((DesktopFont{"Noto Sans", 10.5}), gtkFont("Noto Sans Bold Italic 10.5"));
    EXPECT_EQ((DesktopFont{"Ubuntu", 0}), gtkFont("Ubuntu"));
    EXPECT_EQ((DesktopFont{"DejaVu Sans", 0}), gtkFont("DejaVu Sans Semi-Bold 14px"));
    EXPECT_EQ((DesktopFont{"Noto Sans", 10}), gtkFont("Noto Sans, 10"));
    EXPECT_EQ((DesktopFont{"Cantarell", 11}), gtkFont("Cantarell Bold 11 @wght=700,wdth=90"));
    EXPECT_EQ((DesktopFont{"Inter", 11}), gtkFont("Inter 11 @wght=400 #tnum=1"));
}

TEST(DesktopFontTest, ReadsAFontOfKDE)
{
    EXPECT_EQ((DesktopFont{"Noto Sans", 10}), kdeFont("Noto Sans,10,-1,5,50,0,0,0,0,0"));
    EXPECT_EQ((DesktopFont{"Noto Sans", 0}), kdeFont("Noto Sans,-1,16,5,50,0,0,0,0,0"));
    EXPECT_EQ((DesktopFont{"Inter", 0}), kdeFont("Inter"));
}

TEST(DesktopFontTest, WithoutAFamilyThereIsNone)
{
    EXPECT_EQ(std::nullopt, gtkFont(""));
    EXPECT_EQ(std::nullopt, gtkFont("11"));
    EXPECT_EQ(std::nullopt, gtkFont("Bold 11"));
    EXPECT_EQ(std::nullopt, kdeFont(""));
    EXPECT_EQ(std::nullopt, kdeFont(",10"));
}

} // namespace
} // namespace Kestry
