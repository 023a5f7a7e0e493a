#pragma once

#include <QProxyStyle>

namespace Kestry {

/// Draws the chosen entry of a menu with a check mark alone; the others have no empty box.
class MenuStyle final : public QProxyStyle {
    Q_OBJECT
public:
    MenuStyle();

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
        const QWidget* widget) const override;
};

} // namespace Kestry
