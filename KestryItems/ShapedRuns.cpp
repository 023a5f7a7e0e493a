#include "ShapedRuns.h"

#include <QFontMetricsF>

#include <algorithm>
#include <cmath>

namespace Kestry {
namespace {

/// More different runs than amounts and times are made of.
constexpr qsizetype mostKnown = 40;

} // namespace

ShapedRuns::ShapedRuns(const QFont& font)
    : font_(font), lineHeight_(std::ceil(QFontMetricsF(font).height()))
{
}

std::vector<PlacedRun> ShapedRuns::placed(const QString& text)
{
    std::vector<PlacedRun> runs;
    for (const MorphRun& run : morphRuns(text)) {
        const Shape shape = shapeOf(run.text);
        const double width = widthOf(run);
        runs.push_back({shape.drawing, 0.0, width, (width - shape.advance) / 2.0});
    }
    double right = 0.0;
    for (auto run = runs.rbegin(); run != runs.rend(); ++run) {
        right += run->width;
        run->right = right;
    }
    return runs;
}

ShapedRuns::Shape ShapedRuns::shapeOf(const QString& text)
{
    const auto known = known_.constFind(text);
    if (known != known_.constEnd()) {
        return *known;
    }
    if (known_.size() >= mostKnown) {
        known_.clear();
    }
    QStaticText drawing(text);
    drawing.setTextFormat(Qt::PlainText);
    drawing.prepare({}, font_);
    return *known_.insert(text, {drawing, QFontMetricsF(font_).horizontalAdvance(text)});
}

double ShapedRuns::widthOf(const MorphRun& run)
{
    const double own = shapeOf(run.text).advance;
    return run.isDigit ? std::round(std::max(own, shapeOf("0").advance)) : std::ceil(own);
}

} // namespace Kestry
