#include "AppearanceBridge.h"

#include "AccentPalette.h"

namespace Kestry {
namespace AccentPalette = KestryCore::AccentPalette;

namespace {

constexpr const char* engineProperty = "appearance";

QColor colorOf(std::string_view hex)
{
    return QColor("#" + QString::fromUtf8(hex.data(), static_cast<qsizetype>(hex.size())));
}

std::string hexOf(const QColor& color)
{
    return color.name(QColor::HexRgb).toStdString();
}

QColor nearestWith(
    double contrast, const QColor& color, const QColor& target, const QVariantList& surfaces)
{
    std::vector<std::string> hexes;
    for (const QVariant& surface : surfaces) {
        hexes.push_back(hexOf(surface.value<QColor>()));
    }
    // More than the least: a screen rounds each layer that it draws.
    constexpr double reserve = 0.1;
    return colorOf(AccentPalette::legible(hexOf(color), hexOf(target), hexes, contrast + reserve));
}

} // namespace

AppearanceBridge::AppearanceBridge(
    const AppearanceSettings& settings, const DesktopPreferences& preferences)
    : settings_(settings), preferences_(preferences)
{
    const auto follow = [this](const auto& observable) {
        subscriptions_.push_back(observable.observe([this](const auto&) { emit changed(); }));
    };
    follow(settings_.mode());
    follow(settings_.accentHex());
    follow(preferences_.reducesMotion());
    follow(preferences_.reducesTransparency());
    follow(preferences_.increasesContrast());
    follow(preferences_.textScale());
}

void AppearanceBridge::serve(QQmlEngine& engine)
{
    engine.setProperty(engineProperty, QVariant::fromValue(this));
}

AppearanceBridge* AppearanceBridge::create(QQmlEngine* engine, QJSEngine* /*scripts*/)
{
    auto* bridge = engine->property(engineProperty).value<AppearanceBridge*>();
    QJSEngine::setObjectOwnership(bridge, QJSEngine::CppOwnership);
    return bridge;
}

QColor AppearanceBridge::lightAccent() const
{
    return colorOf(settings_.lightAccentHex());
}

QColor AppearanceBridge::darkAccent() const
{
    return colorOf(settings_.darkAccentHex());
}

QColor AppearanceBridge::onLightAccent() const
{
    return colorOf(AccentPalette::onAccent(settings_.lightAccentHex()));
}

QColor AppearanceBridge::onDarkAccent() const
{
    return colorOf(AccentPalette::onAccent(settings_.darkAccentHex()));
}

QColor AppearanceBridge::legible(
    const QColor& color, const QColor& target, const QVariantList& surfaces)
{
    return nearestWith(AccentPalette::leastContrast, color, target, surfaces);
}

QColor AppearanceBridge::distinct(
    const QColor& color, const QColor& target, const QVariantList& surfaces)
{
    constexpr double leastContrastOfControls = 3.0;
    return nearestWith(leastContrastOfControls, color, target, surfaces);
}

} // namespace Kestry
