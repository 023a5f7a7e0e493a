#include "AppearanceForm.h"

#include <gtest/gtest.h>

#include <QSignalSpy>

#include "AccentPalette.h"
#include "ApplicationWorld.h"

namespace Kestry {
namespace {

constexpr auto wordsOnHex = "Enter a six-digit hex color, like #CBDDA5.";

class AppearanceFormTest : public ::testing::Test {
protected:
    [[nodiscard]] std::string accent() const { return *settings.accentHex(); }

    MapDefaults defaults;
    AppearanceSettings settings{defaults};
    AppearanceForm form{settings};
};

TEST_F(AppearanceFormTest, TheThemeIsOneOfTwoAndDarkAtFirst)
{
    EXPECT_EQ(AppearanceForm::modes(), QStringList({"Light", "Dark"}));
    EXPECT_EQ(form.mode(), 1);
    form.chooseMode(0);
    EXPECT_EQ(*settings.mode(), AppearanceMode::light);
    EXPECT_EQ(defaults.strings["appearanceMode"], "Light");
    form.chooseMode(2);
    form.chooseMode(-1);
    EXPECT_EQ(form.mode(), 0);
}

TEST_F(AppearanceFormTest, AThemeChosenElsewhereShowsAtOnce)
{
    const QSignalSpy changes(&form, &AppearanceForm::changed);
    settings.setMode(AppearanceMode::light);
    EXPECT_EQ(changes.count(), 1);
    EXPECT_EQ(form.mode(), 0);
}

TEST_F(AppearanceFormTest, ThePresetsStandInThePalettesOrder)
{
    const QVariantList presets = AppearanceForm::presets();
    ASSERT_EQ(presets.size(), 5);
    QStringList names;
    for (const QVariant& preset : presets) {
        names << preset.toMap()["name"].toString();
    }
    EXPECT_EQ(names, QStringList({"Kestry", "Violet", "Blue", "Coral", "Teal"}));
    EXPECT_EQ(presets[2].toMap()["color"].value<QColor>(), QColor("#48A7FF"));
    EXPECT_EQ(presets[2].toMap()["mark"].value<QColor>(), QColor("#000000"));
}

TEST_F(AppearanceFormTest, APresetAppliesAtOnce)
{
    EXPECT_EQ(form.preset(), 0);
    form.choosePreset(3);
    EXPECT_EQ(form.preset(), 3);
    EXPECT_EQ(defaults.strings["accentColorHex"], "FF785A");
    form.choosePreset(5);
    form.choosePreset(-1);
    EXPECT_EQ(accent(), "FF785A");
}

TEST_F(AppearanceFormTest, AColourThatIsNoPresetIsTheUsersOwn)
{
    form.writeHex("#123456");
    EXPECT_EQ(form.preset(), -1);
    EXPECT_EQ(form.accent(), QColor("#123456"));
    EXPECT_EQ(form.onAccent(), QColor("#FFFFFF"));
}

// The digits.

TEST_F(AppearanceFormTest, AValidTextAppliesAtOnceAndStaysAsItWasWritten)
{
    const QSignalSpy changes(&form, &AppearanceForm::changed);
    form.writeHex("  a879ff ");
    EXPECT_EQ(accent(), "A879FF");
    EXPECT_EQ(form.hexText(), "  a879ff ");
    EXPECT_EQ(form.hexError(), "");
    EXPECT_EQ(changes.count(), 1);
}

TEST_F(AppearanceFormTest, AnInvalidTextSaysWhyAndChangesNothing)
{
    for (const char* text : {"#CBDDA", "#GGGGGG", "", "##CBDDA5", "CBDDA5F", "red"}) {
        form.writeHex(text);
        EXPECT_EQ(form.hexError(), wordsOnHex) << text;
        EXPECT_EQ(form.hexText(), text);
        EXPECT_EQ(accent(), "CBDDA5");
    }
    EXPECT_FALSE(defaults.strings.contains("accentColorHex"));
}

TEST_F(AppearanceFormTest, AnAccentChosenElsewhereIsWrittenIntoTheField)
{
    form.writeHex("#12");
    settings.setAccentHex("48A7FF");
    EXPECT_EQ(form.hexText(), "#48A7FF");
    EXPECT_EQ(form.hexError(), "");
}

TEST_F(AppearanceFormTest, TheEditorOpensOnTheAccent)
{
    EXPECT_FALSE(form.isEditing());
    form.writeHex("#12");
    form.openEditor();
    EXPECT_TRUE(form.isEditing());
    EXPECT_EQ(form.hexText(), "#CBDDA5");
    form.closeEditor();
    EXPECT_FALSE(form.isEditing());
}

// The picker.

TEST_F(AppearanceFormTest, AColourFromThePickerAppliesAtOnce)
{
    form.pick(0.0, 1.0, 1.0);
    EXPECT_EQ(accent(), "FF0000");
    EXPECT_EQ(form.hexText(), "#FF0000");
    form.pick(1.0 / 3, 1.0, 0.5);
    EXPECT_EQ(accent().substr(0, 2) + accent().substr(4), "0000");
}

TEST_F(AppearanceFormTest, ThePickerStaysWhereItWasPut)
{
    form.pick(0.123, 0.456, 0.789);
    EXPECT_DOUBLE_EQ(form.hue(), 0.123);
    EXPECT_DOUBLE_EQ(form.saturation(), 0.456);
    EXPECT_DOUBLE_EQ(form.brightness(), 0.789);
}

TEST_F(AppearanceFormTest, ThePickerFollowsTheDigits)
{
    form.writeHex("#0000FF");
    EXPECT_NEAR(form.hue(), 2.0 / 3, 0.001);
    EXPECT_NEAR(form.saturation(), 1.0, 0.001);
    EXPECT_NEAR(form.brightness(), 1.0, 0.001);
}

TEST_F(AppearanceFormTest, AGreyKeepsTheHueAndBlackTheSaturationToo)
{
    form.pick(0.25, 0.8, 0.5);
    form.writeHex("#808080");
    EXPECT_DOUBLE_EQ(form.hue(), 0.25);
    EXPECT_DOUBLE_EQ(form.saturation(), 0.0);
    form.pick(0.25, 0.8, 0.0);
    EXPECT_EQ(accent(), "000000");
    EXPECT_DOUBLE_EQ(form.saturation(), 0.8);
}

TEST_F(AppearanceFormTest, WhatIsOutsideOfThePickerIsItsEdge)
{
    form.pick(-0.5, 1.5, 7.0);
    EXPECT_EQ(accent(), "FF0000");
    form.pick(1.0, 1.0, 1.0);
    EXPECT_EQ(accent(), "FF0000");
}

} // namespace
} // namespace Kestry
