#pragma once

#include <QRectF>

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "PanelPlace.h"
#include "TimeStore.h"

namespace Kestry {

// All places are in device-independent pixels from the top left of the screen.

/// What the strip needs to know of a screen.
struct ScreenMetrics {
    QRectF frame;
    QRectF visibleFrame; ///< Without the room that panels and docks reserve.
    bool isMain = false;
    double topInset = 0.0; ///< Height of the camera housing cut into the top edge; 0 without one.
    std::optional<QRectF> auxiliaryTopLeftArea{}; ///< Usable, left of the housing.
    std::optional<QRectF> auxiliaryTopRightArea{};
    std::string name{};
    bool hasPointer = false; ///< Known only where the pointer's screen is wanted.

    bool operator==(const ScreenMetrics&) const = default;
};

/// Where the strip goes on one screen.
struct NotchMeasures {
    double gap = 0.0;
    double centreX = 0.0;
    double stripHeight = 0.0;
    double stripTop = 0.0;
    bool isFlush = false; ///< The strip touches the screen's edge.
    /// Beside the center the panel stays between these; nullopt at the center.
    std::optional<std::pair<double, double>> limits{};
};

/// What decides the height of the detail panel.
struct DetailContent {
    bool hasSession = false;
    bool hasMessage = false;
};

/// What the detail panel shows of a store.
[[nodiscard]] DetailContent detailContent(const KestryCore::TimeStore& store);

struct NotchFrames {
    QRectF bridge;
    QRectF detail;
};

inline constexpr double detailWidth = 320.0;
inline constexpr double bridgeCornerRadius = 12.0;
inline constexpr double detailCornerRadius = 14.0;

/// The screen for the strip: the one that the user has named, or the one with the pointer, if that
/// is wanted and there. Else the first with a camera housing and usable areas on both sides, else
/// the main one, else the first. Returns nullptr without screens.
[[nodiscard]] const ScreenMetrics* notchScreen(
    const std::vector<ScreenMetrics>& screens, const PanelPlace& place = {});

/// Where the strip goes. Only at the center it stands around a camera housing.
[[nodiscard]] NotchMeasures notchMeasures(
    const ScreenMetrics& screen, PanelPlace::Side side = PanelPlace::Side::center);

[[nodiscard]] double detailHeight(const DetailContent& content);

/// The width of the bubble with the whole title, on a screen with this usable area.
[[nodiscard]] double titlePreviewWidth(const QRectF& visibleFrame);

/// The frame of the bubble below the detail panel, for content of `contentHeight` at the width
/// above. With little room below the panel the bubble is lower and scrolls; with none it covers
/// the panel.
[[nodiscard]] QRectF titlePreviewFrame(
    const QRectF& visibleFrame, const QRectF& detail, double contentHeight);

/// Whether the pointer is inside a frame. The right and lower edges are outside: the pointer is
/// there when it has just left.
[[nodiscard]] bool covers(const QRectF& frame, QPointF pointer);

/// The frames of the strip and of the panel below it.
[[nodiscard]] NotchFrames notchFrames(const NotchMeasures& measures, double detailHeight);

} // namespace Kestry
