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
    EXPECT_EQ(changes.count(), 4);
    EXPECT_FALSE(bridge.isDark());
    EXPECT_EQ(bridge.darkAccent(), QColor("#FFFFFF"));
    EXPECT_TRUE(bridge.reducesMotion());
    EXPECT_TRUE(bridge.reducesTransparency());
}

TEST_F(AppearanceBridgeTest, NoAccentChangesTheColorOfWhatWentWrong)
{
    const QColor before = bridge.darkAttention();
    settings.setAccentHex("48A7FF");
    EXPECT_EQ(bridge.darkAttention(), before);
}

TEST_F(AppearanceBridgeTest, AnEngineHandsOutTheBridgeThatServesIt)
{
    QQmlEngine engine;
    bridge.serve(engine);
    EXPECT_EQ(AppearanceBridge::create(&engine, &engine), &bridge);
}

} // namespace
} // namespace Kestry
