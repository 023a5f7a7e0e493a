#pragma once

#include <QFont>
#include <QHash>
#include <QStaticText>

#include <utility>
#include <vector>

#include "TextMorph.h"

namespace Kestry {

/// A run and its place, measured from the right end of the text, where a number has its ones. In
/// pixels.
struct PlacedRun {
    QStaticText drawing;
    double right = 0.0; ///< From the right end of the text to the left edge of the place.
    double width = 0.0;
    double inset = 0.0; ///< From the left edge of the place to the pen.
};

/// Runs of text, ready to be drawn in one font. They are cached, because shaping a text takes
/// longer than drawing it.
class ShapedRuns {
public:
    explicit ShapedRuns(const QFont& font);

    /// The height of a line, in whole pixels.
    [[nodiscard]] double lineHeight() const { return lineHeight_; }
    /// The runs of a text from left to right. All digits have the same width, in whole pixels, so
    /// that they look the same at every place.
    [[nodiscard]] std::vector<PlacedRun> placed(const QString& text);

private:
    struct Shape {
        QStaticText drawing;
        double advance = 0.0;
    };

    [[nodiscard]] Shape shapeOf(const MorphRun& run);
    [[nodiscard]] double widthOf(const MorphRun& run);

    QFont font_;
    double lineHeight_;
    QHash<std::pair<QString, Qt::LayoutDirection>, Shape> known_;
};

} // namespace Kestry
