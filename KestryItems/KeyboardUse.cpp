#include "KeyboardUse.h"

#include <QAccessible>
#include <QCoreApplication>
#include <QEvent>

namespace Kestry {

KeyboardUse::KeyboardUse(QObject* parent) : QObject(parent)
{
    QCoreApplication::instance()->installEventFilter(this);
}

void KeyboardUse::tellFocus(QObject* item)
{
    QAccessibleEvent event(item, QAccessible::Focus);
    QAccessible::updateAccessibility(&event);
}

bool KeyboardUse::eventFilter(QObject* /*object*/, QEvent* event)
{
    switch (event->type()) {
    case QEvent::KeyPress:
        setCurrent(true);
        break;
    case QEvent::MouseButtonPress:
    case QEvent::TouchBegin:
    case QEvent::TabletPress:
        setCurrent(false);
        break;
    default:
        break;
    }
    return false;
}

void KeyboardUse::setCurrent(bool isCurrent)
{
    if (isCurrent != isCurrent_) {
        isCurrent_ = isCurrent;
        emit isCurrentChanged();
    }
}

} // namespace Kestry
