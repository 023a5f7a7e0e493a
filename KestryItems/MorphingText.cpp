#include "MorphingText.h"

#include <QEasingCurve>
#include <QPainter>
#include <QQuickWindow>
#include <QTimerEvent>

#include <algorithm>

namespace Kestry {
namespace {

constexpr double durationMilliseconds = 250.0;

} // namespace

MorphingText::MorphingText(QQuickItem* parent) : QQuickPaintedItem(parent)
{
    setAntialiasing(true);
    connect(this, &QQuickItem::visibleChanged, this, &MorphingText::showContent);
}

void MorphingText::setText(const QString& text)
{
    changeContent({text, content_.value});
}

QVariant MorphingText::value() const
{
    return content_.value ? QVariant(*content_.value) : QVariant();
}

void MorphingText::setValue(const QVariant& value)
{
    bool isNumber = false;
    const double number = value.toDouble(&isNumber);
    changeContent({content_.text, isNumber ? std::optional(number) : std::nullopt});
}

void MorphingText::setColor(const QColor& color)
{
    if (color != color_) {
        color_ = color;
        emit styleChanged();
        redraw();
    }
}

void MorphingText::setFont(const QFont& font)
{
    if (font != font_) {
        font_ = font;
        shapes_ = ShapedRuns(font_);
        emit styleChanged();
        showContent();
    }
}

void MorphingText::setReducesMotion(bool reduces)
{
    if (reduces != reducesMotion_) {
        reducesMotion_ = reduces;
        emit styleChanged();
        showContent();
    }
}

/// What nobody sees changes at once: moving it would only cost time.
bool MorphingText::isSeen() const
{
    return isComponentComplete() && isVisible() && window() && window()->isVisible();
}

void MorphingText::changeContent(MorphContent content)
{
    if (content == content_) {
        return;
    }
    content_ = std::move(content);
    emit contentChanged();
    if (reducesMotion_ || !isSeen() || shown_.text.isEmpty()) {
        showContent();
        return;
    }
    // How to move is decided with the first frame: text and value come one after the other, and
    // belong together.
    hasBegun_ = false;
    sinceChange_.start();
    polish();
    // Anew for each change: texts that change together move in the same frames.
    const bool wasMoving = isMoving();
    timer_.start(frameInterval_, this);
    if (!wasMoving) {
        emit isMovingChanged();
    }
}

/// The first picture of a motion is in the frame that shows what else has changed with it.
void MorphingText::updatePolish()
{
    if (!hasBegun_) {
        begin();
        if (isMoving()) {
            advance();
        }
    }
}

void MorphingText::begin()
{
    hasBegun_ = true;
    effect_ = morphEffect(shown_, content_, reducesMotion_);
    changes_ = runChanges(morphRuns(shown_.text), morphRuns(content_.text));
    before_ = shapes_.placed(shown_.text);
    const bool keepsText = std::exchange(shown_, content_).text == content_.text;
    if (effect_ == MorphEffect::none || keepsText) {
        showContent();
    } else {
        measure();
    }
}

/// Puts what is to be shown in its place, without any motion.
void MorphingText::showContent()
{
    shown_ = content_;
    progress_ = 1.0;
    hasBegun_ = true;
    measure();
    redraw();
    if (isMoving()) {
        timer_.stop();
        emit isMovingChanged();
    }
}

void MorphingText::timerEvent(QTimerEvent* event)
{
    if (event->timerId() != timer_.timerId()) {
        QQuickPaintedItem::timerEvent(event);
        return;
    }
    if (!hasBegun_) {
        begin();
    }
    if (isMoving()) {
        advance();
    }
}

void MorphingText::advance()
{
    // A timer may come a little early; another frame for what is left would be one too many. A
    // picture is on the screen until the next one, and so is that of the middle of this time.
    const auto elapsed = static_cast<double>(sinceChange_.elapsed());
    const double middle = elapsed + frameInterval_ / 2.0;
    const bool isLast = middle > durationMilliseconds;
    const double part = isLast ? 1.0 : middle / durationMilliseconds;
    progress_ = QEasingCurve(QEasingCurve::OutQuad).valueForProgress(part);
    updateChangedRuns();
    if (isLast) {
        timer_.stop();
        emit isMovingChanged();
    }
}

void MorphingText::measure()
{
    after_ = shapes_.placed(content_.text);
    setImplicitSize(after_.empty() ? 0.0 : after_.front().right, shapes_.lineHeight());
}

QRectF MorphingText::placeOf(const PlacedRun& run) const
{
    return {implicitWidth() - run.right, 0.0, run.width, implicitHeight()};
}

/// All of it, in so many words: to the toolkit an update of everything gives way to a later one of
/// a part, in the same frame.
void MorphingText::redraw()
{
    update(boundingRect().toAlignedRect());
}

void MorphingText::geometryChange(const QRectF& after, const QRectF& before)
{
    QQuickPaintedItem::geometryChange(after, before);
    redraw();
}

void MorphingText::updateChangedRuns()
{
    if (effect_ == MorphEffect::crossFade) {
        redraw();
        return;
    }
    for (std::size_t index = 0; index < std::min(after_.size(), changes_.size()); ++index) {
        if (changes_[index] != RunChange::still) {
            const PlacedRun& run = after_[index];
            update(QRectF(implicitWidth() - run.right, 0.0, run.width, height()).toAlignedRect());
        }
    }
}

void MorphingText::paint(QPainter* painter)
{
    painter->setFont(font_);
    painter->setPen(color_);
    if (progress_ < 1.0 && effect_ == MorphEffect::crossFade) {
        drawFade(*painter);
    } else {
        drawRuns(*painter);
    }
}

/// `rise` moves the run up, in parts of its height.
void MorphingText::drawRun(
    QPainter& painter, const PlacedRun& run, double rise, double opacity) const
{
    const double left = implicitWidth() - run.right + run.inset;
    painter.setOpacity(opacity);
    painter.drawStaticText(QPointF(left, -rise * implicitHeight()), run.drawing);
}

void MorphingText::drawFade(QPainter& painter) const
{
    for (const PlacedRun& run : before_) {
        drawRun(painter, run, 0.0, 1.0 - progress_);
    }
    for (const PlacedRun& run : after_) {
        drawRun(painter, run, 0.0, progress_);
    }
}

void MorphingText::drawRoll(
    QPainter& painter, const PlacedRun& before, const PlacedRun& after) const
{
    const double direction = effect_ == MorphEffect::rollDown ? -1.0 : 1.0;
    painter.save();
    painter.setClipRect(QRectF(implicitWidth() - after.right, 0.0, after.width, implicitHeight()),
        Qt::IntersectClip);
    drawRun(painter, before, direction * progress_, 1.0 - progress_);
    drawRun(painter, after, direction * (progress_ - 1.0), progress_);
    painter.restore();
}

void MorphingText::drawRuns(QPainter& painter) const
{
    const QRectF dirty = painter.hasClipping() ? painter.clipBoundingRect() : boundingRect();
    for (std::size_t index = 0; index < after_.size(); ++index) {
        const PlacedRun& run = after_[index];
        if (!placeOf(run).intersects(dirty)) {
            continue;
        }
        const std::size_t fromRight = after_.size() - index;
        const PlacedRun* before =
            fromRight <= before_.size() ? &before_[before_.size() - fromRight] : nullptr;
        const bool isMoved = progress_ < 1.0 && changes_[index] != RunChange::still;
        if (!isMoved) {
            drawRun(painter, run, 0.0, 1.0);
        } else if (before && changes_[index] == RunChange::roll) {
            drawRoll(painter, *before, run);
        } else {
            drawRun(painter, run, 0.0, progress_);
        }
    }
}

} // namespace Kestry
