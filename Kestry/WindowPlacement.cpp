#include "WindowPlacement.h"

#include <QString>
#include <QStringList>

#include <algorithm>
#include <cassert>
#include <cstdlib>

namespace Kestry {
namespace {

constexpr QSize defaultSize(1200, 820);
// What a window manager puts around it, and some of the desktop to be seen beside it.
constexpr int besides = 40;
constexpr int titleBar = 40;
// The strip, with the gap above it and one below.
constexpr int stripRoom = 48;
// Less of a window than this cannot be gripped to move it.
constexpr QSize grip(80, 20);

int areaOf(const QRect& rectangle)
{
    return std::max(0, rectangle.width()) * std::max(0, rectangle.height());
}

/// The first of those that have most of the window; null when none has enough.
const QRect* areaWithMostOf(const WindowPlace& place, const std::vector<QRect>& areas)
{
    const QRect window(place.position, place.size + QSize(0, titleBar));
    const auto part = [&](const QRect& area) { return areaOf(area & window); };
    const auto most = std::ranges::max_element(areas, {}, part);
    const QRect seen = *most & window;
    return seen.width() >= grip.width() && seen.height() >= grip.height() ? &*most : nullptr;
}

QSize fitted(const QSize& size, const QSize& room, const QSize& smallest)
{
    return size.boundedTo(room).expandedTo(smallest);
}

WindowPlace placeOn(const QRect& area, const WindowPlace& before, const QSize& smallest)
{
    // The desktop had room for it and its title, however high that is.
    if (const QSize whole = before.size.expandedTo(smallest);
        area.contains(QRect(before.position, whole))) {
        return {before.position, whole};
    }
    const QSize size = fitted(before.size, area.size() - QSize(0, titleBar), smallest);
    const auto within = [](int position, int length, int start, int room) {
        return std::max(start, std::min(position, start + room - length));
    };
    return {{within(before.position.x(), size.width(), area.x(), area.width()),
                within(before.position.y(), size.height() + titleBar, area.y(), area.height())},
        size};
}

WindowPlace firstPlace(const QRect& area, const QSize& wanted, const QSize& smallest)
{
    const QSize size = fitted(wanted, area.size() - QSize(besides, stripRoom + titleBar), smallest);
    const int middle = (area.height() - size.height() - titleBar) / 2;
    return {{area.x() + std::max(0, (area.width() - size.width()) / 2),
                area.y() + std::max(stripRoom, middle)},
        size};
}

} // namespace

std::string placeText(const WindowPlace& place)
{
    return QString("%1,%2,%3,%4")
        .arg(place.position.x())
        .arg(place.position.y())
        .arg(place.size.width())
        .arg(place.size.height())
        .toStdString();
}

std::optional<WindowPlace> placeFrom(const std::string& text)
{
    std::vector<int> numbers;
    for (const QString& part : QString::fromStdString(text).split(',')) {
        bool isNumber = false;
        numbers.push_back(part.toInt(&isNumber));
        if (!isNumber || std::abs(numbers.back()) > 100'000) {
            return std::nullopt;
        }
    }
    if (numbers.size() != 4 || numbers[2] <= 0 || numbers[3] <= 0) {
        return std::nullopt;
    }
    return WindowPlace{{numbers[0], numbers[1]}, {numbers[2], numbers[3]}};
}

WindowPlace windowPlace(const std::optional<WindowPlace>& before, const std::vector<QRect>& areas,
    const QSize& smallest)
{
    assert(!areas.empty());
    if (before) {
        if (const QRect* area = areaWithMostOf(*before, areas)) {
            return placeOn(*area, *before, smallest);
        }
    }
    return firstPlace(areas.front(), before ? before->size : defaultSize, smallest);
}

} // namespace Kestry
