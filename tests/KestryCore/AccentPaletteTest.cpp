#include "AccentPalette.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <cmath>

#include "HexColor.h"

namespace KestryCore::AccentPalette {
namespace {

bool passes(const std::string& hex, Theme theme)
{
    return std::ranges::all_of(theme == Theme::dark ? darkBackgrounds : lightBackgrounds,
        [&](std::string_view background) { return contrast(hex, background) >= leastContrast; });
}

HexColor arbitraryColor()
{
    const auto channel = [] { return *rc::gen::inRange(0, HexColor::maximumChannel + 1); };
    const int red = channel();
    const int green = channel();
    return HexColor({red, green, channel()});
}

Theme arbitraryTheme()
{
    return *rc::gen::element(Theme::light, Theme::dark);
}

TEST(AccentPalette, OffersFivePresetsTheFirstOfWhichIsTheDefault)
{
    ASSERT_EQ(presets.size(), 5U);
    EXPECT_EQ(presets[0].name, "Kestry");
    EXPECT_EQ(presets[1].hex, "A879FF");
    EXPECT_EQ(presets[2].name, "Blue");
    EXPECT_EQ(presets[3].hex, "FF785A");
    EXPECT_EQ(presets[4].name, "Teal");
    EXPECT_EQ(defaultHex, "CBDDA5");
}

TEST(AccentPalette, NormalisesATextWithANumberSignAndALineEnd)
{
    EXPECT_EQ(normalise("#cbdda5\n"), "CBDDA5");
    EXPECT_EQ(normalise(" \t48a7Ff "), "48A7FF");
}

TEST(AccentPalette, TakesNoTextOfFiveDigitsNorOfOtherLetters)
{
    EXPECT_EQ(normalise("CBDDA"), std::nullopt);
    EXPECT_EQ(normalise("CBDDA57"), std::nullopt);
    EXPECT_EQ(normalise("GGGGGG"), std::nullopt);
    EXPECT_EQ(normalise(""), std::nullopt);
}

TEST(AccentPalette, RemovesOneNumberSignAndNoBlanksAfterIt)
{
    EXPECT_EQ(normalise("##CBDDA"), std::nullopt);
    EXPECT_EQ(normalise("##CBDDA5"), std::nullopt);
    EXPECT_EQ(normalise("# CBDDA5"), std::nullopt);
}

TEST(AccentPalette, TakesNoDigitsOfOtherScripts)
{
    EXPECT_EQ(normalise("\uFF11\uFF12"), std::nullopt); // six bytes, two full-width digits
    EXPECT_EQ(normalise("\u0661\u0662\u0663"), std::nullopt);
}

TEST(AccentPalette, DarkensTheDefaultForTheLightThemeAndKeepsItOnTheDarkOne)
{
    EXPECT_LT(contrast(defaultHex, "FFFFFF"), leastContrast);
    EXPECT_EQ(adapted(defaultHex, Theme::dark), "CBDDA5");
    const std::string light = adapted(defaultHex, Theme::light);
    EXPECT_TRUE(passes(light, Theme::light));
    EXPECT_LT(HexColor::parse(light)->relativeLuminance(),
        HexColor::parse(defaultHex)->relativeLuminance());
}

TEST(AccentPalette, KeepsWhiteOnTheDarkThemeAndBlendsItOnTheLightOne)
{
    EXPECT_EQ(adapted("FFFFFF", Theme::dark), "FFFFFF");
    // The lightest grey of 4.5 on the darker of the two backgrounds.
    EXPECT_EQ(adapted("FFFFFF", Theme::light), "727272");
    EXPECT_GE(contrast("727272", "F7F8FA"), leastContrast);
    EXPECT_LT(contrast("737373", "F7F8FA"), leastContrast);
}

TEST(AccentPalette, BlendsBlackOnTheDarkThemeAndKeepsItOnTheLightOne)
{
    EXPECT_EQ(adapted("000000", Theme::light), "000000");
    const std::string dark = adapted("#000000", Theme::dark);
    const HexColor::Channels channels = HexColor::parse(dark)->channels();
    EXPECT_TRUE(passes(dark, Theme::dark));
    const int darker = channels[0] - 1;
    EXPECT_FALSE(passes(HexColor({darker, darker, darker}).text(), Theme::dark));
}

TEST(AccentPalette, AdaptsTheDefaultInPlaceOfWhatIsNoColor)
{
    EXPECT_EQ(adapted("blue", Theme::dark), "CBDDA5");
    EXPECT_EQ(adapted("", Theme::light), adapted(defaultHex, Theme::light));
}

TEST(AccentPalette, ContrastGoesFromOneToTwentyOneInEitherOrder)
{
    EXPECT_DOUBLE_EQ(contrast("123456", "123456"), 1.0);
    EXPECT_DOUBLE_EQ(contrast("000000", "FFFFFF"), 21.0);
    EXPECT_DOUBLE_EQ(contrast("FFFFFF", "000000"), 21.0);
}

TEST(AccentPalette, LightOfDarkChannelsGrowsInProportionUpToTheBorder)
{
    // 10 / 255 is the last below 0.04045.
    EXPECT_DOUBLE_EQ(HexColor({10, 10, 10}).relativeLuminance(), 10 / 255.0 / 12.92);
    EXPECT_GT(HexColor({11, 11, 11}).relativeLuminance(), 11 / 255.0 / 12.92);
}

TEST(AccentPalette, ColorsCountForLightAsTheEyeSeesThem)
{
    EXPECT_DOUBLE_EQ(HexColor({255, 0, 0}).relativeLuminance(), 0.2126);
    EXPECT_DOUBLE_EQ(HexColor({0, 255, 0}).relativeLuminance(), 0.7152);
    EXPECT_DOUBLE_EQ(HexColor({0, 0, 255}).relativeLuminance(), 0.0722);
}

TEST(AccentPalette, TextOnAGreyIsTheSideWithTheHigherContrast)
{
    for (int grey = 0; grey <= HexColor::maximumChannel; ++grey) {
        const std::string fill = HexColor({grey, grey, grey}).text();
        const bool blackWins = contrast(fill, "000000") >= contrast(fill, "FFFFFF");
        EXPECT_EQ(onAccent(fill), blackWins ? "000000" : "FFFFFF") << fill;
    }
    EXPECT_EQ(onAccent("757575"), "FFFFFF");
    EXPECT_EQ(onAccent("767676"), "000000");
}

TEST(AccentPalette, TextOnWhatIsNoColorIsWhite)
{
    EXPECT_EQ(onAccent("12345"), "FFFFFF");
    EXPECT_EQ(onAccent("#cbdda5"), "000000");
}

RC_GTEST_PROP(AnyAccent, IsLegibleOnBothBackgroundsOnceAdapted, ())
{
    const Theme theme = arbitraryTheme();
    RC_ASSERT(passes(adapted(arbitraryColor().text(), theme), theme));
}

RC_GTEST_PROP(AnyAccent, StaysOnceAdapted, ())
{
    const Theme theme = arbitraryTheme();
    const std::string once = adapted(arbitraryColor().text(), theme);
    RC_ASSERT(adapted(once, theme) == once);
}

RC_GTEST_PROP(AnyAccent, IsLeftAloneWhereItIsLegible, ())
{
    const Theme theme = arbitraryTheme();
    const std::string hex = arbitraryColor().text();
    RC_ASSERT((adapted(hex, theme) == hex) == passes(hex, theme));
}

RC_GTEST_PROP(AnyAccent, GivesWayNoFurtherThanItHasTo, ())
{
    const Theme theme = arbitraryTheme();
    const HexColor color = arbitraryColor();
    const int target = theme == Theme::dark ? HexColor::maximumChannel : 0;
    HexColor::Channels channels = color.channels();
    const double part = *rc::gen::inRange(0, 1025) / 1024.0;
    for (int& channel : channels) {
        channel = static_cast<int>(std::round(channel + part * (target - channel)));
    }
    const HexColor other(channels);
    RC_PRE(passes(other.text(), theme));
    const double start = color.relativeLuminance();
    const double reached = HexColor::parse(adapted(color.text(), theme))->relativeLuminance();
    RC_ASSERT(std::abs(reached - start) <= std::abs(other.relativeLuminance() - start));
}

TEST(AccentPalette, AColorIsKeptWhereItIsLegible)
{
    EXPECT_EQ(legible("cbdda5", "FFFFFF", {"101112", "1B1D1F"}), "CBDDA5");
}

TEST(AccentPalette, AColorIsAsLegibleOnEachSurfaceAsItHasToBe)
{
    const std::string color = legible("CBDDA5", "000000", {"FFFFFF", "DDDDDD"}, 7.0);
    EXPECT_GE(contrast(color, "FFFFFF"), 7.0);
    EXPECT_GE(contrast(color, "DDDDDD"), 7.0);
    EXPECT_LT(contrast(color, "DDDDDD"), 7.3);
}

TEST(AccentPalette, WhereNoColorIsLegibleTheTargetIsTheNextBest)
{
    EXPECT_EQ(legible("CBDDA5", "FFFFFF", {"DDDDDD"}), "FFFFFF");
}

} // namespace
} // namespace KestryCore::AccentPalette
