#include "ToolTips.h"

#include <QQuickWindow>

namespace Kestry {
namespace {

constexpr const char* engineProperty = "toolTips";

} // namespace

void ToolTips::serve(QQmlEngine& engine)
{
    engine.setProperty(engineProperty, QVariant::fromValue(this));
}

ToolTips* ToolTips::create(QQmlEngine* engine, QJSEngine* /*scripts*/)
{
    if (auto* served = engine->property(engineProperty).value<ToolTips*>()) {
        QJSEngine::setObjectOwnership(served, QJSEngine::CppOwnership);
        return served;
    }
    return new ToolTips(engine);
}

void ToolTips::show(QQuickItem* item, const QString& text, Place place, QObject* colors)
{
    if (item && item->window() && item->window()->isVisible()) {
        emit showAsked(item, text, place, colors);
    }
}

} // namespace Kestry
