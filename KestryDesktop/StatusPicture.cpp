#include "StatusPicture.h"

#include <QPainter>

#include <algorithm>
#include <vector>

#include "MarkPainting.h"
#include "StatusFrame.h"
#include "SymbolPainting.h"

namespace Kestry {
namespace {

constexpr int iconSize = 18;
constexpr int renderScale = 2;
constexpr int pictureSize = iconSize * renderScale;

/// How much of each pixel a picture covers, from 0 to 255; nothing beyond its edges.
class Coverage {
public:
    explicit Coverage(const QImage& picture)
    {
        for (int y = 0; y < pictureSize; ++y) {
            const auto* line = reinterpret_cast<const QRgb*>(picture.constScanLine(y));
            for (int x = 0; x < pictureSize; ++x) {
                covered_[at(x, y)] = qAlpha(line[x]);
            }
        }
    }

    [[nodiscard]] int inPixel(int x, int y) const { return covered_[at(x, y)]; }
    /// The most of a pixel and of those around it.
    [[nodiscard]] int around(int x, int y) const
    {
        int most = 0;
        for (int row = y - 1; row <= y + 1; ++row) {
            const auto* first = covered_.data() + at(x - 1, row);
            most = std::max(most, std::max({first[0], first[1], first[2]}));
        }
        return most;
    }

private:
    /// One pixel beyond each edge is there too.
    [[nodiscard]] static std::size_t at(int x, int y)
    {
        return static_cast<std::size_t>((y + 1) * (pictureSize + 2) + x + 1);
    }

    std::vector<int> covered_ =
        std::vector<int>(static_cast<std::size_t>((pictureSize + 2) * (pictureSize + 2)));
};

/// A white picture with a black line around all that is in it, which is as faint as what it
/// surrounds.
QImage outlined(const QImage& white)
{
    const Coverage coverage(white);
    QImage result = white;
    for (int y = 0; y < pictureSize; ++y) {
        auto* line = reinterpret_cast<QRgb*>(result.scanLine(y));
        for (int x = 0; x < pictureSize; ++x) {
            const int inside = coverage.inPixel(x, y);
            const int below = coverage.around(x, y);
            line[x] = qRgba(inside, inside, inside, inside + below * (255 - inside) / 255);
        }
    }
    return result;
}

/// `draw` paints in white, in a square of the icon's size.
template <class Draw>
QImage drawnPicture(Draw draw)
{
    QImage picture(pictureSize, pictureSize, QImage::Format_ARGB32_Premultiplied);
    picture.setDevicePixelRatio(renderScale);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    draw(painter);
    painter.end();
    return outlined(picture);
}

} // namespace

QImage statusMark(int frame)
{
    return drawnPicture([frame](QPainter& painter) {
        const double middle = iconSize / 2.0;
        painter.translate(middle, middle);
        painter.rotate(360.0 * frame / statusFrameCount);
        painter.translate(-middle, -middle);
        paintMark(painter, iconSize, Qt::white);
    });
}

QImage statusSymbol()
{
    return drawnPicture([](QPainter& painter) {
        const QByteArray drawing = symbolDrawing("circle.dotted.circle", Qt::white);
        paintSymbol(painter, drawing, QRectF(0, 0, iconSize, iconSize), 1.0);
    });
}

} // namespace Kestry
