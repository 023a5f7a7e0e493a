#include <QDir>
#include <QFile>
#include <QMetaMethod>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cmath>

#include "DesktopSettings.h"

namespace Kestry {
namespace {

class DesktopSettingsTest : public ::testing::Test {
protected:
    void write(const QString& name, const QByteArray& content) const
    {
        const QString path = directory.filePath(name);
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    [[nodiscard]] bool motion() const { return *preferences.reducesMotion(); }
    [[nodiscard]] bool transparency() const { return *preferences.reducesTransparency(); }
    [[nodiscard]] bool contrast() const { return *preferences.increasesContrast(); }

    [[nodiscard]] std::string family() const { return *preferences.fontFamily(); }
    [[nodiscard]] double scale() const { return *preferences.textScale(); }

    QTemporaryDir directory;
    DesktopPreferences preferences;
    DesktopSettings settings{preferences, directory.path()};
};

TEST_F(DesktopSettingsTest, TheBusCanFindTheSlotForChangesByTheTypesOfItsParameters)
{
    const int slot =
        settings.metaObject()->indexOfSlot("settingChanged(QString,QString,QDBusVariant)");
    ASSERT_GE(slot, 0);
    for (const QByteArray& type : settings.metaObject()->method(slot).parameterTypes()) {
        EXPECT_TRUE(QMetaType::fromName(type).isValid()) << type.constData();
    }
}

TEST_F(DesktopSettingsTest, TakesReducedMotionFromThePortal)
{
    settings.take("org.freedesktop.appearance", "reduced-motion", 1U);
    EXPECT_TRUE(motion());
    settings.take("org.freedesktop.appearance", "reduced-motion", 0U);
    EXPECT_FALSE(motion());
}

TEST_F(DesktopSettingsTest, TakesSwitchedOffAnimationsOfEitherDesktopForTheSame)
{
    settings.take("org.gnome.desktop.interface", "enable-animations", false);
    EXPECT_TRUE(motion());
    settings.take("org.gnome.desktop.interface", "enable-animations", true);
    EXPECT_FALSE(motion());
    settings.take("org.kde.kdeglobals.KDE", "AnimationDurationFactor", "0");
    EXPECT_TRUE(motion());
    settings.take("org.kde.kdeglobals.KDE", "AnimationDurationFactor", "0.5");
    EXPECT_FALSE(motion());
}

TEST_F(DesktopSettingsTest, OneSettingThatAsksIsEnough)
{
    settings.take("org.gnome.desktop.interface", "enable-animations", false);
    settings.take("org.freedesktop.appearance", "reduced-motion", 0U);
    EXPECT_TRUE(motion());
}

TEST_F(DesktopSettingsTest, HighContrastAsksForContrastAndForNoTransparency)
{
    settings.take("org.freedesktop.appearance", "contrast", 1U);
    EXPECT_TRUE(contrast());
    EXPECT_TRUE(transparency());
    EXPECT_FALSE(motion());
    settings.take("org.freedesktop.appearance", "contrast", 0U);
    EXPECT_FALSE(contrast());
    settings.take("org.gnome.desktop.a11y.interface", "high-contrast", true);
    EXPECT_TRUE(contrast());
    EXPECT_TRUE(transparency());
}

TEST_F(DesktopSettingsTest, IgnoresSettingsThatItDoesNotKnow)
{
    settings.take("org.freedesktop.appearance", "color-scheme", 1U);
    settings.take("org.example", "reduced-motion", 1U);
    EXPECT_FALSE(motion());
    EXPECT_FALSE(transparency());
}

TEST_F(DesktopSettingsTest, ReadsTheDesktopsOwnFiles)
{
    settings.readFiles();
    EXPECT_FALSE(motion());

    write("kdeglobals", "[KDE]\nAnimationDurationFactor=0\n");
    settings.readFiles();
    EXPECT_TRUE(motion());
    write("kdeglobals", "[KDE]\nAnimationDurationFactor=1\n");
    write("gtk-3.0/settings.ini", "[Settings]\ngtk-enable-animations=false\n");
    settings.readFiles();
    EXPECT_TRUE(motion());
}

TEST_F(DesktopSettingsTest, TakesFontAndTextScaleOfGnome)
{
    EXPECT_EQ("", family());
    settings.take("org.gnome.desktop.interface", "font-name", "Cantarell 11");
    settings.take("org.gnome.desktop.interface", "text-scaling-factor", 1.5);
    EXPECT_EQ("Cantarell", family());
    EXPECT_EQ(1.5, scale());
}

TEST_F(DesktopSettingsTest, TheFontOfKDEComesFirstAndItsSizeIsTheTextScale)
{
    settings.take("org.gnome.desktop.interface", "font-name", "Cantarell 11");
    settings.take("org.kde.kdeglobals.General", "font", "Noto Sans,15,-1,5,50,0,0,0,0,0");
    EXPECT_EQ("Noto Sans", family());
    EXPECT_EQ(1.5, scale());
}

TEST_F(DesktopSettingsTest, ATextScaleWithoutAMeaningIsNone)
{
    for (const double wrong : {0.0, -1.0, std::nan("")}) {
        settings.take("org.gnome.desktop.interface", "text-scaling-factor", wrong);
        EXPECT_EQ(1.0, scale());
    }
    settings.take("org.gnome.desktop.interface", "text-scaling-factor", 40.0);
    EXPECT_EQ(3.0, scale());
}

TEST_F(DesktopSettingsTest, ReadsTheFontFromTheDesktopsOwnFiles)
{
    write("gtk-3.0/settings.ini", "[Settings]\ngtk-font-name=Ubuntu Medium 11\n");
    settings.readFiles();
    EXPECT_EQ("Ubuntu", family());
    write("kdeglobals", "[General]\nfont=Noto Sans,12,-1,5,50,0,0,0,0,0\n");
    settings.readFiles();
    EXPECT_EQ("Noto Sans", family());
    EXPECT_EQ(1.2, scale());
}

TEST_F(DesktopSettingsTest, TellsObserversOnlyWhenTheWishChanges)
{
    int changes = 0;
    const auto subscription = preferences.reducesMotion().observe([&](bool) { ++changes; });

    settings.take("org.freedesktop.appearance", "reduced-motion", 1U);
    settings.take("org.freedesktop.appearance", "reduced-motion", 1U);

    EXPECT_EQ(1, changes);
}

} // namespace
} // namespace Kestry
