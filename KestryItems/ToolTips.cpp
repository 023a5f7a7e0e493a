#include "ToolTips.h"

#include <QApplication>
#include <QCursor>
#include <QPalette>
#include <QQuickWindow>
#include <QToolTip>

namespace Kestry {
namespace {

/// The toolkit shows a tip below and to the right of a place, to keep clear of the pointer.
constexpr QPoint toLeftOfTip(4, -26);

/// Tips are made of widgets, which only a program for widgets has.
bool hasWidgets()
{
    return qobject_cast<QApplication*>(QCoreApplication::instance()) != nullptr;
}

} // namespace

void ToolTips::wear(
    const QColor& background, const QColor& outline, const QColor& text, int fontPixels)
{
    text_ = text;
    if (!hasWidgets()) {
        return;
    }
    QPalette palette(background);
    palette.setColor(QPalette::ToolTipBase, background);
    palette.setColor(QPalette::ToolTipText, outline); // which its text would have as well
    QToolTip::setPalette(palette);
    QFont font = QApplication::font();
    font.setPixelSize(fontPixels);
    QToolTip::setFont(font);
}

void ToolTips::show(const QQuickItem* item, const QString& text, Place place)
{
    if (!hasWidgets() || !item || !item->window() || !item->window()->isVisible()) {
        return;
    }
    if (QApplication::activePopupWidget()) {
        return; // it would lie over the open menu
    }
    const QPoint at = place == BesideItem
        ? item->mapToGlobal(QPointF(item->width(), item->height() / 2)).toPoint() + toLeftOfTip
        : QCursor::pos();
    // Escaped within markup it is never taken for any, and long ones wrap.
    QToolTip::showText(
        at, "<span style='color:" + text_.name() + "'>" + text.toHtmlEscaped() + "</span>");
}

void ToolTips::hide()
{
    if (hasWidgets()) {
        QToolTip::hideText();
    }
}

} // namespace Kestry
