#pragma once

#include <QRectF>

#include <optional>
#include <vector>

namespace Kestry {

// Places on the screen in device-independent pixels, the origin at the top left.

/// A screen as the strip needs to know it.
struct ScreenMetrics {
    QRectF frame;
    QRectF visibleFrame; ///< Without what panels and docks keep for themselves.
    bool isMain = false;
    double topInset = 0.0; ///< Height of the camera housing cut into the top edge; 0 without one.
    std::optional<QRectF> auxiliaryTopLeftArea{}; ///< Usable, left of the housing.
    std::optional<QRectF> auxiliaryTopRightArea{};

    bool operator==(const ScreenMetrics&) const = default;
};

/// What the strip hugs, on one screen.
struct NotchMeasures {
    double gap = 0.0;
    double centreX = 0.0;
    double stripHeight = 0.0;
    double stripTop = 0.0;
    bool isFlush = false; ///< The strip touches the screen's edge and reads as one with it.
};

/// What the detail panel has to show.
struct DetailContent {
    bool hasSession = false;
    bool hasMessage = false;
};

struct NotchFrames {
    QRectF bridge;
    QRectF detail;
};

inline constexpr double detailWidth = 320.0;
inline constexpr double bridgeCornerRadius = 12.0;
inline constexpr double detailCornerRadius = 14.0;

/// The screen for the strip: the first with a housing and usable areas on both its sides, else
/// the main one, else the first. Null without screens.
[[nodiscard]] const ScreenMetrics* notchScreen(const std::vector<ScreenMetrics>& screens);

[[nodiscard]] NotchMeasures notchMeasures(const ScreenMetrics& screen);

[[nodiscard]] double detailHeight(const DetailContent& content);

/// The width of the bubble that shows a whole title, on a screen with this usable area.
[[nodiscard]] double titlePreviewWidth(const QRectF& visibleFrame);

/// The bubble below the detail panel, for content that wants `contentHeight` at the width above.
/// Where there is little room below the panel the bubble scrolls, and covers the panel in the end.
[[nodiscard]] QRectF titlePreviewFrame(
    const QRectF& visibleFrame, const QRectF& detail, double contentHeight);

/// Whether a panel with this frame is under the pointer. The right and the lower edge are the
/// first that are not: the pointer stands there when it has just left.
[[nodiscard]] bool covers(const QRectF& frame, QPointF pointer);

/// The strip, and the panel hanging from its lower edge.
[[nodiscard]] NotchFrames notchFrames(const NotchMeasures& measures, double detailHeight);

} // namespace Kestry
