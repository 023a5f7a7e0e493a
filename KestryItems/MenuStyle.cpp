#include "MenuStyle.h"

#include <QMenu>
#include <QPainter>
#include <QStyleOption>

#include "SymbolPainting.h"

namespace Kestry {

MenuStyle::MenuStyle() : QProxyStyle("Fusion") { }

void MenuStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
    QPainter* painter, const QWidget* widget) const
{
    const bool isMark = element == PE_IndicatorCheckBox || element == PE_IndicatorMenuCheckMark;
    if (!isMark || qobject_cast<const QMenu*>(widget) == nullptr) {
        QProxyStyle::drawPrimitive(element, option, painter, widget);
    } else if (option->state.testFlag(State_On)) {
        const QByteArray drawing =
            symbolDrawing("checkmark", option->palette.color(QPalette::WindowText));
        paintSymbol(*painter, drawing, option->rect, 1.0);
    }
}

} // namespace Kestry
