#include "MenuPalette.h"

namespace Kestry {
namespace {

struct Colors {
    QColor surface;
    QColor text;
    QColor faintText;
    QColor highlight; ///< Under the entry that the pointer is on.
};

Colors colorsOf(MenuTheme theme)
{
    if (theme == MenuTheme::dark) {
        return {"#1B1D1F", "#F3F3EF", "#A2A5AA", "#333538"};
    }
    return {"#FFFFFF", "#202329", "#626770", "#E7E9EC"};
}

} // namespace

QPalette menuPalette(MenuTheme theme, const QColor& accent)
{
    const Colors colors = colorsOf(theme);
    QPalette palette(colors.surface);
    for (const auto role : {QPalette::Window, QPalette::Base, QPalette::Button}) {
        palette.setColor(role, colors.surface);
    }
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(role, colors.text);
        palette.setColor(QPalette::Disabled, role, colors.faintText);
    }
    palette.setColor(QPalette::Highlight, colors.highlight);
    palette.setColor(QPalette::HighlightedText, colors.text);
    palette.setColor(QPalette::Link, accent);
    return palette;
}

} // namespace Kestry
