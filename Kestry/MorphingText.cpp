#include "MorphingText.h"

#include <QEasingCurve>
#include <QFontMetricsF>
#include <QPainter>
#include <QQuickWindow>
#include <QTimerEvent>

#include <algorithm>
#include <cmath>

namespace Kestry {
namespace {

constexpr double durationMilliseconds = 250.0;
/// Smooth enough for a quarter of a second, and light enough to happen every second of a day.
constexpr int frameMilliseconds = 33;

/// Whole pixels, so that the digits stand on the same ones whatever stands around them.
double widthOf(const MorphRun& run, const QFontMetricsF& metrics)
{
    if (!run.isDigit) {
        return std::ceil(metrics.horizontalAdvance(run.text));
    }
    return std::round(
        std::max(metrics.horizontalAdvance(run.text), metrics.horizontalAdvance('0')));
}

} // namespace

MorphingText::MorphingText(QQuickItem* parent) : QQuickPaintedItem(parent)
{
    setAntialiasing(true);
    connect(this, &QQuickItem::visibleChanged, this, &MorphingText::stopMoving);
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
        update();
    }
}

void MorphingText::setFont(const QFont& font)
{
    if (font != font_) {
        font_ = font;
        emit styleChanged();
        stopMoving();
        measure();
    }
}

void MorphingText::setReducesMotion(bool reduces)
{
    if (reduces != reducesMotion_) {
        reducesMotion_ = reduces;
        emit styleChanged();
        stopMoving();
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
    if (isSeen() && !shown_.text.isEmpty()) {
        polish(); // text and value come one after the other, and belong together
    } else {
        shown_ = content_;
        stopMoving();
    }
    measure();
}

void MorphingText::updatePolish()
{
    if (content_ == shown_) {
        return;
    }
    const bool wasMoving = isMoving();
    effect_ = morphEffect(shown_, content_, reducesMotion_);
    before_ = placed(shown_.text);
    changes_ = runChanges(morphRuns(shown_.text), morphRuns(content_.text));
    const bool keepsText = std::exchange(shown_, content_).text == content_.text;
    if (effect_ == MorphEffect::none || keepsText) {
        stopMoving();
        update();
        return;
    }
    progress_ = 0.0;
    begun_.start();
    timer_.start(frameMilliseconds, this);
    update();
    if (!wasMoving) {
        emit isMovingChanged();
    }
}

void MorphingText::stopMoving()
{
    progress_ = 1.0;
    if (isMoving()) {
        timer_.stop();
        emit isMovingChanged();
        update();
    }
}

void MorphingText::timerEvent(QTimerEvent* event)
{
    if (event->timerId() != timer_.timerId()) {
        QQuickPaintedItem::timerEvent(event);
        return;
    }
    const double part = std::min(1.0, static_cast<double>(begun_.elapsed()) / durationMilliseconds);
    progress_ = QEasingCurve(QEasingCurve::OutQuad).valueForProgress(part);
    updateChangedRuns();
    if (part >= 1.0) {
        timer_.stop();
        emit isMovingChanged();
    }
}

void MorphingText::measure()
{
    after_ = placed(content_.text);
    const QFontMetricsF metrics(font_);
    setImplicitSize(after_.empty() ? 0.0 : after_.front().right, std::ceil(metrics.height()));
    update();
}

std::vector<MorphingText::PlacedRun> MorphingText::placed(const QString& text) const
{
    const QFontMetricsF metrics(font_);
    std::vector<PlacedRun> runs;
    for (MorphRun& run : morphRuns(text)) {
        runs.push_back({run, 0.0, widthOf(run, metrics)});
    }
    double right = 0.0;
    for (auto run = runs.rbegin(); run != runs.rend(); ++run) {
        right += run->width;
        run->right = right;
    }
    return runs;
}

void MorphingText::updateChangedRuns()
{
    if (effect_ == MorphEffect::crossFade) {
        update();
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
    const QFontMetricsF metrics(font_);
    const double left =
        implicitWidth() - run.right + (run.width - metrics.horizontalAdvance(run.run.text)) / 2.0;
    const double baseline = std::round(metrics.ascent()) - rise * implicitHeight();
    painter.setOpacity(opacity);
    painter.drawText(QPointF(left, baseline), run.run.text);
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
    for (std::size_t index = 0; index < after_.size(); ++index) {
        const PlacedRun& run = after_[index];
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
