#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

#include <optional>
#include <string>
#include <vector>

namespace Kestry {

/// Where the workspace window was, in device-independent pixels: the position of its frame, and
/// the size of what is inside the frame.
struct WindowPlace {
    QPoint position;
    QSize size;

    friend bool operator==(const WindowPlace&, const WindowPlace&) = default;
};

/// "120,48,1200,820", as it is kept in the user's settings.
[[nodiscard]] std::string placeText(const WindowPlace& place);
/// Returns nullopt for any other text.
[[nodiscard]] std::optional<WindowPlace> placeFrom(const std::string& text);

/// Where a window with a smallest size should open. `areas` are those that the desktop's panels
/// leave of the screens, the primary one first; there is at least one.
///
/// A window that was on one of them is there again, moved and made smaller as far as that has
/// changed. For the first time, or when its screen has gone, it is in the middle of the primary
/// one, below the strip at the top.
[[nodiscard]] WindowPlace windowPlace(const std::optional<WindowPlace>& before,
    const std::vector<QRect>& areas, const QSize& smallest);

} // namespace Kestry
