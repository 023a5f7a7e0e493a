#include "AppearanceSettings.h"

#include <gtest/gtest.h>

#include "AccentPalette.h"
#include "ApplicationWorld.h"

namespace Kestry {
namespace {

namespace AccentPalette = KestryCore::AccentPalette;

TEST(AppearanceSettings, AreDarkWithThePalettesOwnAccentAtFirst)
{
    MapDefaults defaults;
    const AppearanceSettings settings(defaults);
    EXPECT_EQ(*settings.mode(), AppearanceMode::dark);
    EXPECT_EQ(*settings.accentHex(), "CBDDA5");
    EXPECT_TRUE(defaults.strings.empty());
}

TEST(AppearanceSettings, AreLightOnlyForExactlyThatWord)
{
    MapDefaults defaults;
    defaults.strings["appearanceMode"] = "Light";
    EXPECT_EQ(*AppearanceSettings(defaults).mode(), AppearanceMode::light);
    for (const char* unknown : {"light", "Light ", "Sepia", ""}) {
        defaults.strings["appearanceMode"] = unknown;
        EXPECT_EQ(*AppearanceSettings(defaults).mode(), AppearanceMode::dark) << unknown;
    }
}

TEST(AppearanceSettings, NormaliseTheStoredAccentAndDropWhatIsNone)
{
    MapDefaults defaults;
    defaults.strings["accentColorHex"] = "#48a7ff";
    EXPECT_EQ(*AppearanceSettings(defaults).accentHex(), "48A7FF");
    defaults.strings["accentColorHex"] = "48A7F";
    EXPECT_EQ(*AppearanceSettings(defaults).accentHex(), "CBDDA5");
}

TEST(AppearanceSettings, StoreTheModeAtOnce)
{
    MapDefaults defaults;
    AppearanceSettings settings(defaults);
    settings.setMode(AppearanceMode::light);
    EXPECT_EQ(defaults.strings["appearanceMode"], "Light");
    settings.setMode(AppearanceMode::dark);
    EXPECT_EQ(defaults.strings["appearanceMode"], "Dark");
}

TEST(AppearanceSettings, StoreTheAccentAtOnceInItsOneForm)
{
    MapDefaults defaults;
    AppearanceSettings settings(defaults);
    EXPECT_TRUE(settings.setAccentHex(" #ff785a\n"));
    EXPECT_EQ(*settings.accentHex(), "FF785A");
    EXPECT_EQ(defaults.strings["accentColorHex"], "FF785A");
}

TEST(AppearanceSettings, RefuseWhatIsNoColorAndChangeNothing)
{
    MapDefaults defaults;
    AppearanceSettings settings(defaults);
    EXPECT_FALSE(settings.setAccentHex("GGGGGG"));
    EXPECT_EQ(*settings.accentHex(), "CBDDA5");
    EXPECT_TRUE(defaults.strings.empty());
}

TEST(AppearanceSettings, HaveBothVariantsDerivedBeforeObserversHear)
{
    MapDefaults defaults;
    AppearanceSettings settings(defaults);
    std::string seen;
    const auto subscription = settings.accentHex().observe(
        [&](const std::string&) { seen = settings.lightAccentHex() + settings.darkAccentHex(); });
    settings.setAccentHex("000080");
    EXPECT_EQ(seen,
        AccentPalette::adapted("000080", AccentPalette::Theme::light)
            + AccentPalette::adapted("000080", AccentPalette::Theme::dark));
}

TEST(AppearanceSettings, KeepTheDefaultAccentForTheDarkThemeAlone)
{
    MapDefaults defaults;
    const AppearanceSettings settings(defaults);
    EXPECT_EQ(settings.darkAccentHex(), "CBDDA5");
    EXPECT_NE(settings.lightAccentHex(), "CBDDA5");
}

} // namespace
} // namespace Kestry
