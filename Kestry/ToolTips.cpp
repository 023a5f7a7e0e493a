#include "ToolTips.h"

#include <QApplication>
#include <QCursor>
#include <QQuickWindow>
#include <QToolTip>

namespace Kestry {
namespace {

/// Tips are made of widgets, which only a program for widgets has.
bool hasWidgets()
{
    return qobject_cast<QApplication*>(QCoreApplication::instance()) != nullptr;
}

} // namespace

void ToolTips::show(const QQuickItem* item, const QString& text)
{
    if (hasWidgets() && item && item->window() && item->window()->isVisible()) {
        // Escaped and marked as rich it is never taken for markup of its own, and long ones wrap.
        QToolTip::showText(QCursor::pos(), "<span>" + text.toHtmlEscaped() + "</span>");
    }
}

void ToolTips::hide()
{
    if (hasWidgets()) {
        QToolTip::hideText();
    }
}

} // namespace Kestry
