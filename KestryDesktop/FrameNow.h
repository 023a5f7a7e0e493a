#pragma once

class QQuickWindow;

namespace Kestry {

/// Brings what has changed in a window to the screen at once, for a program that is about to wait
/// outside its event loop. Does nothing for a window that is not on the screen.
void showFrameNow(QQuickWindow& window);

} // namespace Kestry
