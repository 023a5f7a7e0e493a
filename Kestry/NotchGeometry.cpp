#include "NotchGeometry.h"

#include <algorithm>
#include <cmath>

namespace Kestry {
namespace {

constexpr double gapWithoutNotch = 42.0;
constexpr double stripHeightWithoutNotch = 34.0;
constexpr double stripMarginWithoutNotch = 6.0;
constexpr double stripSideWidth = 70.0;
constexpr double idleHeight = 48.0;
constexpr double sessionHeight = 74.0;
constexpr double messageHeight = 18.0;
constexpr double previewMargin = 8.0;
constexpr double previewGap = 6.0;
constexpr double previewMinimumRoom = 40.0;

bool hasNotch(const ScreenMetrics& screen)
{
    return screen.topInset > 0.0 && screen.auxiliaryTopLeftArea && screen.auxiliaryTopRightArea;
}

bool isWanted(const ScreenMetrics& screen, const PanelPlace& place)
{
    switch (place.screen) {
    case PanelPlace::Screen::named:
        return screen.name == place.screenName;
    case PanelPlace::Screen::pointer:
        return screen.hasPointer;
    case PanelPlace::Screen::primary:
        break;
    }
    return false;
}

/// At an end of the screen's upper edge, at the same distance as from that edge.
NotchMeasures measuresBeside(const ScreenMetrics& screen, PanelPlace::Side side)
{
    const double left = screen.visibleFrame.left() + stripMarginWithoutNotch;
    const double right = screen.visibleFrame.right() - stripMarginWithoutNotch;
    const double half = gapWithoutNotch / 2.0 + stripSideWidth;
    return {.gap = gapWithoutNotch,
        .centreX = side == PanelPlace::Side::left ? left + half : right - half,
        .stripHeight = stripHeightWithoutNotch,
        .stripTop = screen.visibleFrame.top() + stripMarginWithoutNotch,
        .limits = std::pair(left, right)};
}

QRectF previewBounds(const QRectF& visibleFrame)
{
    return visibleFrame.adjusted(previewMargin, previewMargin, -previewMargin, -previewMargin);
}

} // namespace

const ScreenMetrics* notchScreen(const std::vector<ScreenMetrics>& screens, const PanelPlace& place)
{
    auto found = std::ranges::find_if(
        screens, [&place](const ScreenMetrics& screen) { return isWanted(screen, place); });
    if (found == screens.end()) {
        found = std::ranges::find_if(screens, hasNotch);
    }
    if (found == screens.end()) {
        found = std::ranges::find_if(screens, &ScreenMetrics::isMain);
    }
    if (found == screens.end()) {
        found = screens.begin();
    }
    return found == screens.end() ? nullptr : &*found;
}

NotchMeasures notchMeasures(const ScreenMetrics& screen, PanelPlace::Side side)
{
    if (side != PanelPlace::Side::center) {
        return measuresBeside(screen, side);
    }
    if (hasNotch(screen)) {
        const double left = screen.auxiliaryTopLeftArea->right();
        const double right = screen.auxiliaryTopRightArea->left();
        return {std::max(0.0, right - left), (left + right) / 2.0, screen.topInset,
            screen.frame.top(), true, std::nullopt};
    }
    return {gapWithoutNotch, screen.frame.center().x(), stripHeightWithoutNotch,
        screen.visibleFrame.top() + stripMarginWithoutNotch, false, std::nullopt};
}

DetailContent detailContent(const KestryCore::TimeStore& store)
{
    return {.hasSession = store.data()->active.has_value(),
        .hasMessage = store.errorMessage()->has_value() || store.clockJump()->has_value()};
}

double detailHeight(const DetailContent& content)
{
    return (content.hasSession ? sessionHeight : idleHeight)
        + (content.hasMessage ? messageHeight : 0.0);
}

NotchFrames notchFrames(const NotchMeasures& measures, double detailHeight)
{
    const double bridgeWidth = measures.gap + 2.0 * stripSideWidth;
    const QRectF bridge(
        measures.centreX - bridgeWidth / 2.0, measures.stripTop, bridgeWidth, measures.stripHeight);
    double left = measures.centreX - detailWidth / 2.0;
    if (measures.limits) {
        left =
            std::max(measures.limits->first, std::min(left, measures.limits->second - detailWidth));
    }
    const QRectF detail(left, bridge.bottom(), detailWidth, detailHeight);
    return {bridge, detail};
}

double titlePreviewWidth(const QRectF& visibleFrame)
{
    return std::min(detailWidth, previewBounds(visibleFrame).width());
}

QRectF titlePreviewFrame(const QRectF& visibleFrame, const QRectF& detail, double contentHeight)
{
    const QRectF bounds = previewBounds(visibleFrame);
    const double width = titlePreviewWidth(visibleFrame);
    const double room = bounds.bottom() - detail.bottom() - previewGap;
    const double height = std::min(std::ceil(contentHeight), std::max(previewMinimumRoom, room));
    const double left = std::max(bounds.left(), std::min(detail.left(), bounds.right() - width));
    const double top = std::min(detail.bottom() + previewGap, bounds.bottom() - height);
    return {left, top, width, height};
}

bool covers(const QRectF& frame, QPointF pointer)
{
    return frame.left() <= pointer.x() && pointer.x() < frame.right() && frame.top() <= pointer.y()
        && pointer.y() < frame.bottom();
}

} // namespace Kestry
