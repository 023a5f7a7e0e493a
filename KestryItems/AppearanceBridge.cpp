#include "AppearanceBridge.h"

#include "AccentPalette.h"

namespace Kestry {
namespace AccentPalette = KestryCore::AccentPalette;

namespace {

constexpr const char* engineProperty = "appearance";
constexpr std::string_view attentionHex = "FF785A";

QColor colorOf(std::string_view hex)
{
    return QColor("#" + QString::fromUtf8(hex.data(), static_cast<qsizetype>(hex.size())));
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

QColor AppearanceBridge::lightAttention() const
{
    return colorOf(AccentPalette::adapted(attentionHex, AccentPalette::Theme::light));
}

QColor AppearanceBridge::darkAttention() const
{
    return colorOf(AccentPalette::adapted(attentionHex, AccentPalette::Theme::dark));
}

} // namespace Kestry
