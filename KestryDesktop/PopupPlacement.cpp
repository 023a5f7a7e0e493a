#include "PopupPlacement.h"

#include <algorithm>

namespace Kestry {
namespace {

constexpr int menuGap = 2;
constexpr int tipGap = 6;
// Keep clear of the pointer's own picture.
constexpr int belowPointer = 20;
constexpr int abovePointer = 6;

// The far edges of a QRect are inside it.
int rightOf(const QRect& rectangle)
{
    return rectangle.x() + rectangle.width();
}

int bottomOf(const QRect& rectangle)
{
    return rectangle.y() + rectangle.height();
}

QRect movedInto(const QRect& frame, const QRect& bounds)
{
    const int left = std::min(frame.x(), rightOf(bounds) - frame.width());
    const int top = std::min(frame.y(), bottomOf(bounds) - frame.height());
    return {QPoint(std::max(left, bounds.x()), std::max(top, bounds.y())), frame.size()};
}

} // namespace

QRect menuFrame(const QRect& item, QSize size, const QRect& bounds, MenuSide side)
{
    const QSize shown = size.boundedTo(bounds.size());
    const int left = side == MenuSide::left ? item.x() : rightOf(item) - shown.width();
    const int below = bottomOf(bounds) - bottomOf(item) - menuGap;
    const int above = item.y() - menuGap - bounds.y();
    const bool isAbove = shown.height() > below && above > below;
    const int top = isAbove ? item.y() - menuGap - shown.height() : bottomOf(item) + menuGap;
    return movedInto({QPoint(left, top), shown}, bounds);
}

QRect tipFrameAtPointer(QPoint pointer, QSize size, const QRect& bounds)
{
    const bool fits = pointer.y() + belowPointer + size.height() <= bottomOf(bounds);
    const int top = fits ? pointer.y() + belowPointer : pointer.y() - abovePointer - size.height();
    return movedInto({QPoint(pointer.x(), top), size}, bounds);
}

QRect tipFrameBeside(const QRect& item, QSize size, const QRect& bounds)
{
    const bool fits = rightOf(item) + tipGap + size.width() <= rightOf(bounds);
    const int left = fits ? rightOf(item) + tipGap : item.x() - tipGap - size.width();
    const int top = item.y() + (item.height() - size.height()) / 2;
    return movedInto({QPoint(left, top), size}, bounds);
}

} // namespace Kestry
