#pragma once

#include <QFont>
#include <QHash>
#include <QStaticText>

#include <vector>

#include "TextMorph.h"

namespace Kestry {

/// A run with its place, which is counted from the right end of the text, where a number has its
/// ones.
struct PlacedRun {
    QStaticText drawing;
    double right = 0.0; ///< From the right end of the text to the left edge of the place.
    double width = 0.0;
    double inset = 0.0; ///< From the left edge of the place to the pen.
};

/// Runs of text, ready to be drawn in one font. Shaping a text takes longer than all else that a
/// frame does with it, so what was shaped is remembered.
class ShapedRuns {
public:
    explicit ShapedRuns(const QFont& font);

    /// In whole pixels.
    [[nodiscard]] double lineHeight() const { return lineHeight_; }
    /// The text from left to right. All digits take the same width, in whole pixels, so that they
    /// stand on the same ones whatever stands around them.
    [[nodiscard]] std::vector<PlacedRun> placed(const QString& text);

private:
    struct Shape {
        QStaticText drawing;
        double advance = 0.0;
    };

    [[nodiscard]] Shape shapeOf(const QString& text);
    [[nodiscard]] double widthOf(const MorphRun& run);

    QFont font_;
    double lineHeight_;
    QHash<QString, Shape> known_;
};

} // namespace Kestry
