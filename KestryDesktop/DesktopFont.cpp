#include "DesktopFont.h"

#include <QStringList>

#include <algorithm>

namespace Kestry {
namespace {

/// The words for style, weight, width and slant that may stand between family and size.
bool isStyleWord(const QString& word)
{
    static const QStringList words{"normal", "regular", "book", "thin", "ultra-light",
        "extra-light", "light", "semi-light", "demi-light", "medium", "semi-bold", "demi-bold",
        "bold", "ultra-bold", "extra-bold", "heavy", "black", "ultra-heavy", "extra-black",
        "oblique", "italic", "roman", "small-caps", "ultra-condensed", "extra-condensed",
        "condensed", "semi-condensed", "semi-expanded", "expanded", "extra-expanded",
        "ultra-expanded"};
    return words.contains(word.toLower());
}

double sizeIn(QString word)
{
    if (word.endsWith("px")) {
        return 0.0; // not in points
    }
    return word.toDouble();
}

} // namespace

std::optional<DesktopFont> gtkFont(const QString& description)
{
    QStringList words = description.split(' ', Qt::SkipEmptyParts);
    DesktopFont font;
    // Settings of the axes and of the features of a font come last.
    while (!words.isEmpty() && (words.last().startsWith('@') || words.last().startsWith('#'))) {
        words.removeLast();
    }
    if (!words.isEmpty() && words.last().front().isDigit()) {
        font.points = sizeIn(words.takeLast());
    }
    while (!words.isEmpty() && isStyleWord(words.last())) {
        words.removeLast();
    }
    // Of several families the first is the one that is meant.
    font.family = words.join(' ').section(',', 0, 0).trimmed().toStdString();
    return font.family.empty() ? std::nullopt : std::optional(font);
}

std::optional<DesktopFont> kdeFont(const QString& description)
{
    DesktopFont font;
    font.family = description.section(',', 0, 0).trimmed().toStdString();
    font.points = std::max(0.0, description.section(',', 1, 1).toDouble());
    return font.family.empty() ? std::nullopt : std::optional(font);
}

} // namespace Kestry
