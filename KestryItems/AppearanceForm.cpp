#include "AppearanceForm.h"

#include <algorithm>
#include <array>

#include "AccentPalette.h"

namespace Kestry {
namespace AccentPalette = KestryCore::AccentPalette;

namespace {

constexpr std::array modesInOrder{AppearanceMode::light, AppearanceMode::dark};

QString textOf(std::string_view utf8)
{
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

QColor colorNamed(std::string_view hex)
{
    return QColor("#" + textOf(hex));
}

QColor colorOfPicker(double hue, double saturation, double brightness)
{
    return QColor::fromHsvF(
        static_cast<float>(hue), static_cast<float>(saturation), static_cast<float>(brightness))
        .toRgb();
}

} // namespace

AppearanceForm::AppearanceForm(AppearanceSettings& settings) : settings_(settings)
{
    subscriptions_.push_back(settings_.mode().observe([this](const auto&) { emit changed(); }));
    subscriptions_.push_back(settings_.accentHex().observe([this](const auto&) { follow(); }));
    follow();
}

void AppearanceForm::follow()
{
    const QColor chosen = accent();
    if (colorOfPicker(hue_, saturation_, brightness_).rgb() != chosen.rgb()) {
        // A grey has no hue, and black no saturation.
        hue_ = chosen.hsvHueF() < 0 ? hue_ : static_cast<double>(chosen.hsvHueF());
        brightness_ = static_cast<double>(chosen.valueF());
        saturation_ = brightness_ > 0 ? static_cast<double>(chosen.hsvSaturationF()) : saturation_;
    }
    if (!isTextOfAccent()) {
        hexText_ = "#" + textOf(*settings_.accentHex());
    }
    emit changed();
}

bool AppearanceForm::isTextOfAccent() const
{
    return AccentPalette::normalise(hexText_.toStdString()) == *settings_.accentHex();
}

QStringList AppearanceForm::modes()
{
    QStringList names;
    for (const AppearanceMode mode : modesInOrder) {
        names << textOf(rawValue(mode));
    }
    return names;
}

int AppearanceForm::mode() const
{
    const auto* found = std::ranges::find(modesInOrder, *settings_.mode());
    return static_cast<int>(found - modesInOrder.begin());
}

QVariantList AppearanceForm::presets()
{
    QVariantList presets;
    for (const AccentPalette::Preset& preset : AccentPalette::presets) {
        presets << QVariantMap{{"name", textOf(preset.name)}, {"color", colorNamed(preset.hex)},
            {"mark", colorNamed(AccentPalette::onAccent(preset.hex))}};
    }
    return presets;
}

int AppearanceForm::preset() const
{
    const auto& presets = AccentPalette::presets;
    const auto* found =
        std::ranges::find(presets, *settings_.accentHex(), &AccentPalette::Preset::hex);
    return found == presets.end() ? -1 : static_cast<int>(found - presets.begin());
}

QColor AppearanceForm::accent() const
{
    return colorNamed(*settings_.accentHex());
}

QColor AppearanceForm::onAccent() const
{
    return colorNamed(AccentPalette::onAccent(*settings_.accentHex()));
}

QString AppearanceForm::hexError() const
{
    const bool isColor = AccentPalette::normalise(hexText_.toStdString()).has_value();
    return isColor ? QString() : "Enter a six-digit hex color, like #CBDDA5.";
}

void AppearanceForm::chooseMode(int mode)
{
    if (mode >= 0 && mode < static_cast<int>(modesInOrder.size())) {
        settings_.setMode(modesInOrder.at(static_cast<std::size_t>(mode)));
    }
}

void AppearanceForm::choosePreset(int preset)
{
    if (preset >= 0 && preset < static_cast<int>(AccentPalette::presets.size())) {
        writeHex("#" + textOf(AccentPalette::presets.at(static_cast<std::size_t>(preset)).hex));
    }
}

void AppearanceForm::openEditor()
{
    isEditing_ = true;
    hexText_ = "#" + textOf(*settings_.accentHex());
    emit changed();
}

void AppearanceForm::closeEditor()
{
    isEditing_ = false;
    emit changed();
}

void AppearanceForm::writeHex(const QString& text)
{
    hexText_ = text;
    if (!settings_.setAccentHex(text.toStdString())) {
        emit changed(); // of the text alone
    }
}

void AppearanceForm::pick(double hue, double saturation, double brightness)
{
    hue_ = std::clamp(hue, 0.0, 1.0);
    saturation_ = std::clamp(saturation, 0.0, 1.0);
    brightness_ = std::clamp(brightness, 0.0, 1.0);
    const QColor color = colorOfPicker(hue_, saturation_, brightness_);
    writeHex(color.name(QColor::HexRgb).toUpper());
}

} // namespace Kestry
