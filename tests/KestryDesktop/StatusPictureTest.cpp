#include "StatusPicture.h"

#include <gtest/gtest.h>

#include <QColor>
#include <QPainter>

#include <algorithm>

#include "AccentPalette.h"
#include "StatusFrame.h"

namespace Kestry {
namespace {

/// How many pixels stand out from an area of one colour as much as pictures of controls have to.
int legiblePixels(const QImage& picture, const QColor& area)
{
    QImage shown(picture.size(), QImage::Format_RGB32);
    shown.fill(area);
    QPainter painter(&shown);
    painter.drawImage(shown.rect(), picture);
    painter.end();
    const std::string areaHex = area.name().toUpper().mid(1).toStdString();
    int count = 0;
    for (int y = 0; y < shown.height(); ++y) {
        for (int x = 0; x < shown.width(); ++x) {
            const std::string hex = shown.pixelColor(x, y).name().toUpper().mid(1).toStdString();
            count += KestryCore::AccentPalette::contrast(hex, areaHex) >= 3.0 ? 1 : 0;
        }
    }
    return count;
}

constexpr const char* areas[] = {"#FFFFFF", "#000000", "#F7F8FA", "#808080", "#101112"};

TEST(StatusPicture, TheMarkIsSeenOnAnyAreaAtEachAngle)
{
    for (const char* area : areas) {
        for (int frame = 0; frame < statusFrameCount; frame += 5) {
            // Of eight ticks that are three pixels wide and eight long.
            EXPECT_GT(legiblePixels(statusMark(frame), area), 100) << area << ", " << frame;
        }
    }
}

TEST(StatusPicture, TheSymbolIsSeenOnAnyArea)
{
    for (const char* area : areas) {
        EXPECT_GT(legiblePixels(statusSymbol(), area), 100) << area;
    }
}

TEST(StatusPicture, TheMiddleOfATickIsWhiteAndItsSidesAreBlack)
{
    const QImage mark = statusMark(0);
    // The first tick stands upright above the middle.
    EXPECT_GT(mark.pixelColor(18, 5).lightness(), 200);
    for (const int x : {14, 21}) {
        EXPECT_EQ(mark.pixelColor(x, 5).lightness(), 0) << x;
        EXPECT_GT(mark.pixelColor(x, 5).alpha(), 0) << x;
    }
    EXPECT_EQ(mark.pixelColor(18, 18).alpha(), 0);
}

TEST(StatusPicture, TheTicksThatFadeHaveAFaintOutline)
{
    const QImage mark = statusMark(0);
    // The tenth tick lies at the left of the middle, the fourth at its right.
    const auto most = [&mark](int from, int to) {
        int alpha = 0;
        for (int x = from; x < to; ++x) {
            alpha = std::max(alpha, mark.pixelColor(x, 18).alpha());
        }
        return alpha;
    };
    EXPECT_LT(most(0, 10), 128);
    EXPECT_GT(most(26, 36), 200);
}

} // namespace
} // namespace Kestry
