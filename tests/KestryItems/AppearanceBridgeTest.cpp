#include "AppearanceBridge.h"

#include <gtest/gtest.h>

#include <QSignalSpy>

#include "ApplicationWorld.h"

namespace Kestry {
namespace {

class AppearanceBridgeTest : public ::testing::Test {
protected:
    MapDefaults defaults;
    AppearanceSettings settings{defaults};
    DesktopPreferences preferences;
    AppearanceBridge bridge{settings, preferences};
};

TEST_F(AppearanceBridgeTest, EachThemeHasItsAccentAndTheTextOnIt)
{
    EXPECT_TRUE(bridge.isDark());
    EXPECT_EQ(bridge.darkAccent(), QColor("#CBDDA5"));
    EXPECT_EQ(bridge.onDarkAccent(), QColor("#000000"));
    EXPECT_EQ(bridge.onLightAccent(), QColor("#FFFFFF"));
    EXPECT_NE(bridge.lightAccent(), bridge.darkAccent());
}

TEST_F(AppearanceBridgeTest, ChoicesAndWishesAreToldAtOnce)
{
    const QSignalSpy changes(&bridge, &AppearanceBridge::changed);
    settings.setMode(AppearanceMode::light);
    settings.setAccentHex("FFFFFF");
    preferences.setReducesMotion(true);
    preferences.setReducesTransparency(true);
    preferences.setIncreasesContrast(true);
    EXPECT_EQ(changes.count(), 5);
    EXPECT_FALSE(bridge.isDark());
    EXPECT_EQ(bridge.darkAccent(), QColor("#FFFFFF"));
    EXPECT_TRUE(bridge.reducesMotion());
    EXPECT_TRUE(bridge.reducesTransparency());
    EXPECT_TRUE(bridge.increasesContrast());
}

TEST_F(AppearanceBridgeTest, AColorIsKeptWhereItCanBeRead)
{
    const QColor color("#3376B4");
    EXPECT_EQ(AppearanceBridge::legible(color, "black", {QColor("white")}), color);
}

TEST_F(AppearanceBridgeTest, AColorGoesAsFarAsItsMostDifficultSurfaceAsks)
{
    const QColor color("#CBDDA5");
    const QColor onWhite = AppearanceBridge::legible(color, "black", {QColor("white")});
    const QColor onBoth =
        AppearanceBridge::legible(color, "black", {QColor("white"), QColor("#C0C0C0")});
    EXPECT_NE(onWhite, color);
    EXPECT_LT(onBoth.lightness(), onWhite.lightness());
}

TEST_F(AppearanceBridgeTest, AnEngineHandsOutTheBridgeThatServesIt)
{
    QQmlEngine engine;
    bridge.serve(engine);
    EXPECT_EQ(AppearanceBridge::create(&engine, &engine), &bridge);
}

} // namespace
} // namespace Kestry
