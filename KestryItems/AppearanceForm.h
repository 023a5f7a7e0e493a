#pragma once

#include <QColor>
#include <QObject>
#include <QVariantList>
#include <QtQml/qqmlregistration.h>

#include <vector>

#include "AppearanceSettings.h"

namespace Kestry {

/// Where the user chooses the theme and the accent: each choice applies at once. It follows the
/// settings, whoever changes them.
class AppearanceForm final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application makes the one form.")
    Q_PROPERTY(QStringList modes READ modes CONSTANT)
    Q_PROPERTY(int mode READ mode NOTIFY changed)
    Q_PROPERTY(QVariantList presets READ presets CONSTANT)
    Q_PROPERTY(int preset READ preset NOTIFY changed)
    Q_PROPERTY(QColor accent READ accent NOTIFY changed)
    Q_PROPERTY(QColor onAccent READ onAccent NOTIFY changed)
    Q_PROPERTY(bool isEditing READ isEditing NOTIFY changed)
    Q_PROPERTY(QString hexText READ hexText NOTIFY changed)
    Q_PROPERTY(QString hexError READ hexError NOTIFY changed)
    Q_PROPERTY(double hue READ hue NOTIFY changed)
    Q_PROPERTY(double saturation READ saturation NOTIFY changed)
    Q_PROPERTY(double brightness READ brightness NOTIFY changed)

public:
    /// The settings must outlive the form.
    explicit AppearanceForm(AppearanceSettings& settings);

    /// The names of the themes, and the one in use.
    [[nodiscard]] static QStringList modes();
    [[nodiscard]] int mode() const;
    /// Each preset with `name`, `color` and `mark`, which is the colour of a sign on it.
    [[nodiscard]] static QVariantList presets();
    /// The preset in use; -1 when the accent is none of them.
    [[nodiscard]] int preset() const;
    /// The accent as chosen, and the colour of a sign on it.
    [[nodiscard]] QColor accent() const;
    [[nodiscard]] QColor onAccent() const;

    // The editor of a colour of the user's own.

    [[nodiscard]] bool isEditing() const { return isEditing_; }
    /// What is written in the field, with "#" before the digits unless the user wrote none.
    [[nodiscard]] QString hexText() const { return hexText_; }
    /// Why the text is no colour; empty when it is one.
    [[nodiscard]] QString hexError() const;
    // The accent as the picker has it, each from 0 to 1. A grey keeps the hue that it came from.
    [[nodiscard]] double hue() const { return hue_; }
    [[nodiscard]] double saturation() const { return saturation_; }
    [[nodiscard]] double brightness() const { return brightness_; }

    /// Do nothing for a number that is none of a theme, or of a preset.
    Q_INVOKABLE void chooseMode(int mode);
    Q_INVOKABLE void choosePreset(int preset);
    Q_INVOKABLE void openEditor();
    Q_INVOKABLE void closeEditor();
    /// Takes what the user wrote. A text that is no colour is kept, and changes no colour.
    Q_INVOKABLE void writeHex(const QString& text);
    /// Takes a colour from the picker. What is below 0 counts as 0, what is above 1 as 1.
    Q_INVOKABLE void pick(double hue, double saturation, double brightness);

signals:
    void changed();

private:
    void follow();
    [[nodiscard]] bool isTextOfAccent() const;

    AppearanceSettings& settings_;
    bool isEditing_ = false;
    QString hexText_;
    double hue_ = 0.0;
    double saturation_ = 0.0;
    double brightness_ = 0.0;
    std::vector<KestryCore::Subscription> subscriptions_;
};

} // namespace Kestry
