#include "ShapedRuns.h"

#include <QFontMetricsF>
#include <QTextOption>

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
        const Shape shape = shapeOf(run);
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

ShapedRuns::Shape ShapedRuns::shapeOf(const MorphRun& run)
{
    const Qt::LayoutDirection direction = run.isRightToLeft ? Qt::RightToLeft : Qt::LeftToRight;
    const auto known = known_.constFind({run.text, direction});
    if (known != known_.constEnd()) {
        return *known;
    }
    if (known_.size() >= mostKnown) {
        known_.clear();
    }
    QStaticText drawing(run.text);
    drawing.setTextFormat(Qt::PlainText);
    QTextOption option;
    option.setTextDirection(direction);
    drawing.setTextOption(option);
    drawing.prepare({}, font_);
    const double advance = QFontMetricsF(font_).horizontalAdvance(run.text, option);
    return *known_.insert({run.text, direction}, {drawing, advance});
}

double ShapedRuns::widthOf(const MorphRun& run)
{
    const double own = shapeOf(run).advance;
    return run.isDigit ? std::round(std::max(own, shapeOf({"0", true}).advance)) : std::ceil(own);
}

} // namespace Kestry
