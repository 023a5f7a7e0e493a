import QtQuick
import QtTest
import KestryItems

TestCase {
    id: test

    name: "Theme"

    function cleanup() {
        desktop.useLightTheme(false);
        desktop.setAccent("CBDDA5");
        desktop.reduceMotion(false);
        desktop.reduceTransparency(false);
    }

    function hexes(colors) {
        return [colors.background, colors.primaryText, colors.secondaryText, colors.surface,
            colors.raisedSurface, colors.line].map(color => color.toString());
    }

    function test_the_dark_colors_are_these() {
        compare(hexes(Theme.dark),
            ["#101112", "#f3f3ef", "#a2a5aa", "#151618", "#1b1d1f", "#ffffff"]);
    }

    function test_the_light_colors_are_these() {
        compare(hexes(Theme.light),
            ["#f7f8fa", "#202329", "#626770", "#eff1f4", "#ffffff", "#000000"]);
    }

    function test_lines_are_faint() {
        for (const colors of [Theme.dark, Theme.light]) {
            for (const line of [colors.outline, colors.field, colors.highlight]) {
                verify(line.a >= 0.035 && line.a <= 0.085, line.a);
            }
        }
    }

    function test_the_window_follows_the_chosen_theme() {
        compare(Theme.workspace, Theme.dark);
        desktop.useLightTheme(true);
        compare(Theme.workspace, Theme.light);
    }

    function test_each_theme_has_its_own_variant_of_the_accent() {
        compare(Theme.dark.accent.toString(), "#cbdda5");
        compare(Theme.dark.accentText.toString(), "#000000");
        verify(Theme.light.accent.hslLightness < Theme.dark.accent.hslLightness);
        desktop.setAccent("FFFFFF");
        compare(Theme.dark.accent.toString(), "#ffffff");
        compare(Theme.light.accent.toString(), "#727272");
        compare(Theme.light.accentText.toString(), "#ffffff");
    }

    function test_the_desktops_wishes_are_followed_while_it_runs() {
        verify(!Theme.reducesMotion && !Theme.reducesTransparency);
        desktop.reduceMotion(true);
        desktop.reduceTransparency(true);
        verify(Theme.reducesMotion && Theme.reducesTransparency);
    }
}
