#include "ToolkitScale.h"

#include <QGuiApplication>
#include <QScreen>
#include <QtGui/qpa/qplatformscreen.h>

namespace Kestry {

bool toolkitFollowsTextScale()
{
    const QScreen* screen = QGuiApplication::primaryScreen();
    return QGuiApplication::platformName() == "xcb" && screen != nullptr
        && screen->handle()->logicalDpi() != screen->handle()->logicalBaseDpi();
}

} // namespace Kestry
