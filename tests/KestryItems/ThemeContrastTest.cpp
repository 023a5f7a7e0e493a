#include <QColor>
#include <QMetaProperty>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQmlExtensionPlugin>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <limits>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "AccentPalette.h"
#include "AppearanceBridge.h"
#include "ApplicationWorld.h"

Q_IMPORT_QML_PLUGIN(KestryItemsPlugin)

namespace Kestry {
namespace {

/// A colour of the theme by its name, or any other, at an opacity of the theme.
struct Layer {
    const char* color;
    const char* opacity = nullptr;
};

using Layers = std::vector<Layer>; // from the ground up

constexpr double textLimit = 4.5;
constexpr double controlLimit = 3.0;

/// Something drawn, and what is below it. All of it but the ground has the opacity `whole`.
struct Pair {
    const char* what;
    double limit;
    Layer mark;
    Layers below;
    const char* whole = nullptr;
};

// In the window, in either theme. Switched off buttons and entries are left out: what cannot be
// used need not be found.
const std::vector<Pair> windowPairs{
    {"text on a page", textLimit, {"primaryText"}, {{"background"}}},
    {"text of a row pointed at", textLimit, {"primaryText"}, {{"background"}, {"highlight"}}},
    {"second text on a page", textLimit, {"secondaryText"}, {{"background"}}},
    {"second text of a row pointed at", textLimit, {"secondaryText"},
        {{"background"}, {"highlight", "pointedOpacity"}}},
    {"time of a paused session", textLimit, {"pausedText"},
        {{"background"}, {"highlight", "pointedOpacity"}}},
    {"head of a column pointed at", textLimit, {"primaryText"}, {{"background"}, {"highlight"}}},
    {"sign of a column not sorted by", controlLimit, {"controlLine"},
        {{"background"}, {"highlight"}}},
    {"scroll mark of a page", controlLimit, {"controlLine"}, {{"background"}}},
    {"scroll mark of a form", controlLimit, {"controlLine"}, {{"raisedSurface"}}},
    {"\"Live\" in its capsule", textLimit, {"accentOnTint"}, {{"background"}, {"accentTint"}}},
    {"\"Live\" in a row pointed at", textLimit, {"accentOnTint"},
        {{"background"}, {"highlight", "pointedOpacity"}, {"accentTint"}}},
    {"ring around a row", controlLimit, {"accent"}, {{"background"}, {"highlight"}}},
    {"error on a page", textLimit, {"attention"}, {{"background"}}},

    {"text in the search field", textLimit, {"primaryText"}, {{"background"}, {"field"}}},
    {"word in the empty search field", textLimit, {"secondaryText"}, {{"background"}, {"field"}}},
    {"edge of the search field", controlLimit, {"controlLine"}, {{"background"}}},
    {"edge of the search field, inside", controlLimit, {"controlLine"},
        {{"background"}, {"field"}}},
    {"edge of the search field in use", controlLimit, {"accent"}, {{"background"}, {"field"}}},

    {"text in the sidebar", textLimit, {"secondaryText"}, {{"surface"}}},
    {"entry of the sidebar pointed at", textLimit, {"secondaryText"},
        {{"surface"}, {"highlight", "pointedOpacity"}}},
    {"chosen entry of the sidebar", textLimit, {"primaryText"}, {{"surface"}, {"highlight"}}},
    {"symbol of the chosen entry", controlLimit, {"accent"}, {{"surface"}, {"highlight"}}},
    {"title typed in the sidebar", textLimit, {"primaryText"}, {{"surface"}, {"highlight"}}},
    {"placeholder in the sidebar", textLimit, {"placeholderText"}, {{"surface"}}},
    {"symbol of a banner", controlLimit, {"accent"}, {{"surface"}}},

    {"text in a form", textLimit, {"primaryText"}, {{"raisedSurface"}}},
    {"label in a form", textLimit, {"secondaryText"}, {{"raisedSurface"}}},
    {"message in a form", textLimit, {"attention"}, {{"raisedSurface"}}},
    {"text in a field", textLimit, {"primaryText"}, {{"surface"}}},
    {"placeholder in a field", textLimit, {"secondaryText"}, {{"surface"}}},
    {"edge of a field", controlLimit, {"controlLine"}, {{"raisedSurface"}}},
    {"edge of a field, inside", controlLimit, {"controlLine"}, {{"surface"}}},
    {"edge of a field in use", controlLimit, {"accent"}, {{"raisedSurface"}}},
    {"selected text", textLimit, {"accentText"}, {{"accent"}}},
    {"switch that is on", controlLimit, {"accent"}, {{"raisedSurface"}}},
    {"knob of a switch that is on", controlLimit, {"accentText"}, {{"accent"}}},
    {"edge of a switch that is off", controlLimit, {"controlLine"}, {{"raisedSurface"}}},
    {"knob of a switch that is off", controlLimit, {"primaryText"}, {{"raisedSurface"}, {"track"}}},
    {"day of another month pointed at", textLimit, {"secondaryText"},
        {{"raisedSurface"}, {"highlight"}}},
    {"chosen day", textLimit, {"accentText"}, {{"accent"}}},

    {"quiet button", textLimit, {"primaryText"}, {{"raisedSurface"}, {"surface"}}},
    {"quiet button pointed at", textLimit, {"primaryText"},
        {{"raisedSurface"}, {"surface"}, {"highlight"}}},
    {"button that deletes", textLimit, {"attention"}, {{"raisedSurface"}, {"surface"}}},
    {"button that deletes pointed at", textLimit, {"attention"},
        {{"raisedSurface"}, {"surface"}, {"highlight"}}},
    {"button that deletes pressed", controlLimit, {"attention"}, {{"raisedSurface"}, {"surface"}},
        "pressedOpacity"},
    {"main button", textLimit, {"accentText"}, {{"accent"}}},
    {"main button pointed at", textLimit, {"accentText"}, {{"accent"}, {"fillHighlight"}}},
    {"main button beside its surface", controlLimit, {"accent"}, {{"raisedSurface"}}},
    {"main button that deletes", textLimit, {"raisedSurface"}, {{"attention"}}},
    {"main button that deletes pointed at", textLimit, {"raisedSurface"},
        {{"attention"}, {"fillHighlight"}}},
    {"symbol button pointed at", controlLimit, {"primaryText"}, {{"background"}, {"highlight"}}},
    {"symbol button pressed", controlLimit, {"primaryText"}, {{"background"}, {"highlight"}},
        "pressedOpacity"},
    // For as long as the button is down: its opacity is the sign that it is.
    {"main button pressed", controlLimit, {"accentText"}, {{"raisedSurface"}, {"accent"}},
        "pressedOpacity"},
    {"quiet button pressed", controlLimit, {"primaryText"}, {{"raisedSurface"}, {"surface"}},
        "quietPressedOpacity"},

    {"entry of a menu", textLimit, {"primaryText"}, {{"raisedSurface"}}},
    {"shortcut in a menu", textLimit, {"secondaryText"}, {{"raisedSurface"}}},
    {"highlighted entry of a menu", textLimit, {"accentText"}, {{"accent"}}},
    {"way back in a menu pointed at", textLimit, {"secondaryText"},
        {{"raisedSurface"}, {"highlight"}}},
    {"tool tip", textLimit, {"primaryText"}, {{"raisedSurface"}}},
};

// On the panels, which are always dark. What is behind them is anything.
const std::vector<Pair> panelPairs{
    {"time on the strip", textLimit, {"primaryText"}, {{"strip"}, {"highlight"}}},
    {"time of a paused session on the strip", textLimit, {"pausedText"},
        {{"strip"}, {"highlight"}}},
    {"text on the panel", textLimit, {"primaryText"}, {{"desktop"}, {"panel"}, {"highlight"}}},
    {"placeholder on the panel", textLimit, {"placeholderText"}, {{"desktop"}, {"panel"}}},
    {"time of a paused session on the panel", textLimit, {"pausedText"}, {{"desktop"}, {"panel"}}},
    {"error on the panel", textLimit, {"attention"}, {{"desktop"}, {"panel"}}},
    {"second text of the choice of a project", textLimit, {"panelSecondaryText"},
        {{"desktop"}, {"panel"}, {"field"}, {"highlight"}}},
    {"resume button", controlLimit, {"panelAccent"}, {{"desktop"}, {"panel"}, {"highlight"}}},
    {"selected text", textLimit, {"accentText"}, {{"accent"}}},
    {"start button pointed at", textLimit, {"accentText"}, {{"accent"}, {"fillHighlight"}}},
    {"bubble with a title", textLimit, {"primaryText"},
        {{"desktop"}, {"background", "previewOpacity"}}},
    {"scroll mark of the bubble", controlLimit, {"controlLine"},
        {{"desktop"}, {"background", "previewOpacity"}}},
};

// Nothing is read or found by these alone.
const std::set<std::string> decoration{"line", "outline", "tipOutline"};

std::vector<std::string> accents()
{
    std::vector<std::string> result{"101112", "1B1D1F", "F7F8FA", "EFF1F4", "777777", "959595"};
    for (const KestryCore::AccentPalette::Preset& preset : KestryCore::AccentPalette::presets) {
        result.emplace_back(preset.hex);
    }
    for (const char* red : {"00", "80", "FF"}) {
        for (const char* green : {"00", "80", "FF"}) {
            for (const char* blue : {"00", "80", "FF"}) {
                result.push_back(std::string(red) + green + blue);
            }
        }
    }
    return result;
}

/// Opaque colours, as a screen shows them.
QColor over(const QColor& top, double opacity, const QColor& below)
{
    const double part = opacity * top.alphaF();
    const auto mixed = [&](int above, int under) {
        return static_cast<int>(std::lround(part * above + (1.0 - part) * under));
    };
    return {mixed(top.red(), below.red()), mixed(top.green(), below.green()),
        mixed(top.blue(), below.blue())};
}

double contrast(const QColor& left, const QColor& right)
{
    return KestryCore::AccentPalette::contrast(
        left.name().toStdString(), right.name().toStdString());
}

class ThemeContrastTest : public ::testing::Test {
protected:
    ThemeContrastTest()
    {
        engine.addImportPath("qrc:/");
        bridge.serve(engine);
        QQmlComponent component(&engine);
        component.setData("import QtQml\nimport KestryItems\n"
                          "QtObject { property QtObject theme: Theme }",
            {});
        holder.reset(component.create());
        EXPECT_TRUE(holder) << component.errorString().toStdString();
        theme = holder->property("theme").value<QObject*>();
    }

    [[nodiscard]] QObject* colors(const char* name) const
    {
        return theme->property(name).value<QObject*>();
    }

    [[nodiscard]] QColor color(const QObject* colors, const char* name) const
    {
        const QVariant own = colors->property(name);
        const QVariant value = own.isValid() ? own : theme->property(name);
        const QColor color = value.isValid() ? value.value<QColor>() : QColor(name);
        EXPECT_TRUE(color.isValid()) << name;
        return color;
    }

    [[nodiscard]] double opacity(const char* name) const
    {
        return name == nullptr ? 1.0 : theme->property(name).toDouble();
    }

    /// The contrast of a pair in one theme, on a desktop of one colour.
    [[nodiscard]] double measured(
        const QObject* colors, const Pair& pair, const QColor& desktop) const
    {
        const auto layer = [&](const Layer& each) {
            return std::string(each.color) == "desktop" ? desktop : color(colors, each.color);
        };
        const QColor ground = layer(pair.below.front());
        QColor below = ground;
        for (auto each = pair.below.begin() + 1; each != pair.below.end(); ++each) {
            below = over(layer(*each), opacity(each->opacity), below);
        }
        const QColor mark = over(layer(pair.mark), opacity(pair.mark.opacity), below);
        const double whole = opacity(pair.whole);
        return contrast(over(mark, whole, ground), over(below, whole, ground));
    }

    /// The worst contrast of each pair, over all accents and desktops.
    using Worst = std::map<std::string, double>;
    void take(Worst& worst, const char* name, const std::vector<Pair>& pairs) const
    {
        for (const Pair& pair : pairs) {
            for (const QColor& desktop : {QColor("white"), QColor("black")}) {
                auto& least =
                    worst.try_emplace(pair.what, std::numeric_limits<double>::max()).first->second;
                least = std::min(least, measured(colors(name), pair, desktop));
            }
        }
    }

    void check(const char* title, const char* name, const std::vector<Pair>& pairs)
    {
        Worst worst;
        for (const std::string& accent : accents()) {
            settings.setAccentHex(accent);
            take(worst, name, pairs);
        }
        const bool isPrinted = qEnvironmentVariableIsSet("KESTRY_CONTRAST_TABLE");
        for (const Pair& pair : pairs) {
            const double least = worst.at(pair.what);
            EXPECT_GE(least, pair.limit) << title << ": " << pair.what;
            if (isPrinted) {
                std::printf(
                    "%-22s %-42s %6.2f  at least %.1f\n", title, pair.what, least, pair.limit);
            }
        }
    }

    MapDefaults defaults;
    AppearanceSettings settings{defaults};
    DesktopPreferences preferences;
    AppearanceBridge bridge{settings, preferences};
    QQmlEngine engine;
    std::unique_ptr<QObject> holder;
    QObject* theme = nullptr;
};

TEST_F(ThemeContrastTest, WhateverTheAccentTheDarkThemeCanBeRead)
{
    check("dark", "dark", windowPairs);
}

TEST_F(ThemeContrastTest, WhateverTheAccentTheLightThemeCanBeRead)
{
    check("light", "light", windowPairs);
}

TEST_F(ThemeContrastTest, WhateverIsBehindThemThePanelsCanBeRead)
{
    check("panels", "dark", panelPairs);
}

TEST_F(ThemeContrastTest, WithMoreContrastNothingIsHarderToRead)
{
    preferences.setIncreasesContrast(true);
    preferences.setReducesTransparency(true);
    check("dark, more contrast", "dark", windowPairs);
    check("light, more contrast", "light", windowPairs);
    check("panels, more contrast", "dark", panelPairs);
}

TEST_F(ThemeContrastTest, WithMoreContrastTextsAndEdgesStandOutMore)
{
    preferences.setIncreasesContrast(true);
    for (const char* name : {"dark", "light"}) {
        const QObject* these = colors(name);
        for (const char* surface : {"background", "surface", "raisedSurface"}) {
            EXPECT_GE(contrast(color(these, "primaryText"), color(these, surface)), 7.0);
            EXPECT_GE(contrast(color(these, "secondaryText"), color(these, surface)), 7.0);
            EXPECT_GE(contrast(color(these, "controlLine"), color(these, surface)), 4.5);
            EXPECT_GE(contrast(color(these, "outline"), color(these, surface)), 4.5);
        }
    }
}

TEST_F(ThemeContrastTest, NoColorOfTheThemeIsLeftOut)
{
    std::set<std::string> measured;
    for (const auto& pairs : {windowPairs, panelPairs}) {
        for (const Pair& pair : pairs) {
            measured.insert(pair.mark.color);
            for (const Layer& layer : pair.below) {
                measured.insert(layer.color);
            }
        }
    }
    const QMetaObject* type = colors("dark")->metaObject();
    for (int index = 0; index < type->propertyCount(); ++index) {
        const QMetaProperty property = type->property(index);
        if (property.typeId() == QMetaType::QColor) {
            EXPECT_TRUE(measured.contains(property.name()) || decoration.contains(property.name()))
                << property.name();
        }
    }
}

} // namespace
} // namespace Kestry
