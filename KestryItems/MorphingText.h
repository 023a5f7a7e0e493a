#pragma once

#include <QBasicTimer>
#include <QColor>
#include <QElapsedTimer>
#include <QFont>
#include <QQuickPaintedItem>
#include <QVariant>

#include <optional>
#include <vector>

#include "ShapedRuns.h"
#include "TextMorph.h"

namespace Kestry {

/// A text whose changes are animated: digits that change roll, other texts fade. All digits have
/// the same width, so that the rest of a running time does not move.
///
/// It is not in the accessibility tree; the view around it has the words.
class MorphingText : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY contentChanged)
    /// The number that the text shows, which decides in which direction digits roll; undefined for
    /// none.
    Q_PROPERTY(QVariant value READ value WRITE setValue NOTIFY contentChanged)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY styleChanged)
    Q_PROPERTY(QFont font READ font WRITE setFont NOTIFY styleChanged)
    Q_PROPERTY(bool reducesMotion READ reducesMotion WRITE setReducesMotion NOTIFY styleChanged)
    /// Milliseconds from one picture of a motion to the next; the first comes at once. What moves
    /// each second has longer steps to save power.
    Q_PROPERTY(int frameInterval MEMBER frameInterval_ NOTIFY styleChanged)
    Q_PROPERTY(bool isMoving READ isMoving NOTIFY isMovingChanged)

public:
    explicit MorphingText(QQuickItem* parent = nullptr);

    [[nodiscard]] QString text() const { return content_.text; }
    void setText(const QString& text);
    [[nodiscard]] QVariant value() const;
    void setValue(const QVariant& value);
    [[nodiscard]] QColor color() const { return color_; }
    void setColor(const QColor& color);
    [[nodiscard]] QFont font() const { return font_; }
    void setFont(const QFont& font);
    [[nodiscard]] bool reducesMotion() const { return reducesMotion_; }
    void setReducesMotion(bool reduces);
    [[nodiscard]] bool isMoving() const { return timer_.isActive(); }

    void paint(QPainter* painter) override;

signals:
    void contentChanged();
    void styleChanged();
    void isMovingChanged();

protected:
    void geometryChange(const QRectF& after, const QRectF& before) override;
    void timerEvent(QTimerEvent* event) override;
    void updatePolish() override;

private:
    /// The place of a run in the item.
    [[nodiscard]] QRectF placeOf(const PlacedRun& run) const;
    [[nodiscard]] bool isSeen() const;
    void changeContent(MorphContent content);
    void begin();
    void advance();
    void showContent();
    void measure();
    void redraw();
    void updateChangedRuns();
    void drawRun(QPainter& painter, const PlacedRun& run, double rise, double opacity) const;
    void drawRoll(QPainter& painter, const PlacedRun& before, const PlacedRun& after) const;
    void drawFade(QPainter& painter) const;
    void drawRuns(QPainter& painter) const;

    MorphContent content_;
    MorphContent shown_; ///< The content that was drawn last, or that the animation began with.
    MorphEffect effect_ = MorphEffect::none;
    std::vector<PlacedRun> before_;
    std::vector<PlacedRun> after_;
    std::vector<RunChange> changes_;
    QColor color_ = Qt::white;
    QFont font_;
    ShapedRuns shapes_{font_};
    int frameInterval_ = 33;
    bool reducesMotion_ = false;
    double progress_ = 1.0;
    QBasicTimer timer_;
    QElapsedTimer sinceChange_;
    bool hasBegun_ = true; // the motion towards `content_`
};

} // namespace Kestry
