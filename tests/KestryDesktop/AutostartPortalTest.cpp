#include "AutostartPortal.h"

#include <gtest/gtest.h>

#include <QTest>

#include <optional>

#include "ApplicationWorld.h"
#include "FakePortal.h"

namespace Kestry {
namespace {

class AutostartPortalTest : public ::testing::Test {
protected:
    AutostartPortalTest()
    {
        autostart.follow([this] { ++changes; });
    }
    ~AutostartPortalTest() override
    {
        QDBusConnection::disconnectFromBus("program");
        QDBusConnection::disconnectFromBus("portal");
    }

    void ask(bool isOn)
    {
        autostart.set(isOn);
        ASSERT_TRUE(QTest::qWaitFor([&] { return portal && !portal->asked.empty(); }));
    }
    [[nodiscard]] bool isChanged()
    {
        return QTest::qWaitFor([&] { return changes == 1; });
    }
    void openPortal() { portal.emplace(bus.connect("portal")); }

    PrivateBus bus;
    std::optional<FakePortal> portal;
    MapDefaults defaults;
    std::string refusal;
    int changes = 0;
    AutostartPortal autostart{defaults, [this](const std::string& words) { refusal = words; },
        [this] { return bus.connect("program"); }};
};

TEST_F(AutostartPortalTest, ItIsOnOnceThePortalSaysSo)
{
    openPortal();
    ask(true);
    EXPECT_EQ(portal->asked[0].member(), "RequestBackground");
    EXPECT_TRUE(portal->options["autostart"].toBool());
    EXPECT_FALSE(autostart.isOn());
    portal->answer(0, {{"background", true}, {"autostart", true}});
    ASSERT_TRUE(isChanged());
    EXPECT_TRUE(autostart.isOn());
    EXPECT_TRUE(defaults.values["startsWithDesktop"]);
}

TEST_F(AutostartPortalTest, AUserWhoSaysNoHasItOff)
{
    openPortal();
    ask(true);
    portal->answer(1, {});
    ASSERT_TRUE(isChanged());
    EXPECT_FALSE(autostart.isOn());
    EXPECT_EQ(refusal, "");
}

TEST_F(AutostartPortalTest, ItIsSwitchedOffAgain)
{
    defaults.setBoolean("startsWithDesktop", true);
    openPortal();
    ask(false);
    EXPECT_FALSE(portal->options["autostart"].toBool());
    portal->answer(0, {{"autostart", false}});
    ASSERT_TRUE(isChanged());
    EXPECT_FALSE(autostart.isOn());
}

TEST_F(AutostartPortalTest, WithoutAPortalItIsToldAndStaysAsItWas)
{
    autostart.set(true);
    ASSERT_TRUE(isChanged());
    EXPECT_FALSE(autostart.isOn());
    EXPECT_EQ(refusal,
        "The desktop does not let Kestry choose whether it starts with it. Use the desktop's own "
        "settings.");
}

} // namespace
} // namespace Kestry
