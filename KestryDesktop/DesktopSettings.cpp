#include "DesktopSettings.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QScreen>
#include <QSettings>

#include <algorithm>
#include <array>
#include <utility>

#include "ToolkitScale.h"

namespace Kestry {
namespace {

constexpr auto portalService = "org.freedesktop.portal.Desktop";
constexpr auto portalPath = "/org/freedesktop/portal/desktop";
constexpr auto portalInterface = "org.freedesktop.portal.Settings";

using Settings = QMap<QString, QVariantMap>;

enum class Subject { motion, contrast };

/// A setting, and the value at which it asks for less motion, or for more contrast.
struct Rule {
    const char* group;
    const char* key;
    Subject subject;
    bool (*asks)(const QVariant& value);
};

bool isOne(const QVariant& value)
{
    return value.toUInt() == 1;
}

bool isFalse(const QVariant& value)
{
    return value.typeId() == QMetaType::Bool && !value.toBool();
}

bool isTrue(const QVariant& value)
{
    return value.typeId() == QMetaType::Bool && value.toBool();
}

bool isZero(const QVariant& value)
{
    bool isNumber = false;
    const double factor = value.toString().toDouble(&isNumber);
    return isNumber && factor == 0.0;
}

constexpr std::array rules{
    Rule{"org.freedesktop.appearance", "reduced-motion", Subject::motion, isOne},
    Rule{"org.gnome.desktop.interface", "enable-animations", Subject::motion, isFalse},
    Rule{"org.kde.kdeglobals.KDE", "AnimationDurationFactor", Subject::motion, isZero},
    Rule{"org.freedesktop.appearance", "contrast", Subject::contrast, isOne},
    Rule{"org.gnome.desktop.a11y.interface", "high-contrast", Subject::contrast, isTrue},
};

// KDE has no text scale of its own: people who want larger texts choose a larger font.
constexpr double kdeDefaultPoints = 10.0;
constexpr double leastTextScale = 0.8;
constexpr double largestTextScale = 3.0;

constexpr auto kdeGeneral = "org.kde.kdeglobals.General";
constexpr auto gnomeInterface = "org.gnome.desktop.interface";

bool anyOf(const std::map<std::string, bool>& settings)
{
    return std::ranges::any_of(settings, [](const auto& setting) { return setting.second; });
}

} // namespace

DesktopSettings::DesktopSettings(DesktopPreferences& preferences, QString configuration)
    : preferences_(preferences), configuration_(std::move(configuration))
{
    qDBusRegisterMetaType<Settings>();
    // The bus finds the slot by the names of its parameters' types. The toolkit registers this one
    // in a thread of its own, at times too late, and the connection is refused.
    qRegisterMetaType<QDBusVariant>();
    connect(&watcher_, &QFileSystemWatcher::fileChanged, this, &DesktopSettings::followFiles);
    connect(&watcher_, &QFileSystemWatcher::directoryChanged, this, &DesktopSettings::followFiles);
    if (const QScreen* screen = QGuiApplication::primaryScreen()) {
        connect(screen, &QScreen::logicalDotsPerInchChanged, this, &DesktopSettings::apply);
    }
}

void DesktopSettings::follow()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.connect(portalService, portalPath, portalInterface, "SettingChanged", this,
        SLOT(settingChanged(QString, QString, QDBusVariant)));
    QDBusMessage call =
        QDBusMessage::createMethodCall(portalService, portalPath, portalInterface, "ReadAll");
    QStringList groups;
    for (const Rule& rule : rules) {
        groups.append(rule.group);
    }
    groups.append(kdeGeneral);
    groups.removeDuplicates();
    call << groups;
    auto* answer = new QDBusPendingCallWatcher(bus.asyncCall(call), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        answer->deleteLater();
        const QDBusPendingReply<Settings> reply = *answer;
        if (reply.isError()) {
            followFiles();
            return;
        }
        const Settings settings = reply.value();
        for (auto group = settings.begin(); group != settings.end(); ++group) {
            for (auto entry = group->begin(); entry != group->end(); ++entry) {
                take(group.key(), entry.key(), entry.value());
            }
        }
        if (!kdeFont_ && !gtkFont_) { // not every portal knows fonts
            followFiles();
        }
    });
}

void DesktopSettings::settingChanged(
    const QString& group, const QString& key, const QDBusVariant& value)
{
    take(group, key, value.variant());
}

void DesktopSettings::take(const QString& group, const QString& key, const QVariant& value)
{
    for (const Rule& rule : rules) {
        if (group == QLatin1String(rule.group) && key == QLatin1String(rule.key)) {
            auto& settings = rule.subject == Subject::motion ? motion_ : contrast_;
            settings[std::string(rule.group) + '/' + rule.key] = rule.asks(value);
        }
    }
    takeFont(group, key, value);
    apply();
}

void DesktopSettings::takeFont(const QString& group, const QString& key, const QVariant& value)
{
    if (group == kdeGeneral && key == "font") {
        kdeFont_ = kdeFont(value.toString());
    } else if (group == gnomeInterface && key == "font-name") {
        gtkFont_ = gtkFont(value.toString());
    } else if (group == gnomeInterface && key == "text-scaling-factor") {
        gtkTextScale_ = value.toDouble();
    }
}

void DesktopSettings::followFiles()
{
    readFiles();
    // A file that is replaced is watched no longer, and one that is missing may come.
    for (const char* name : {"", "kdeglobals", "gtk-3.0", "gtk-3.0/settings.ini"}) {
        const QString path = QDir(configuration_).filePath(name);
        if (QFile::exists(path)) {
            watcher_.addPath(path);
        }
    }
}

void DesktopSettings::readFiles()
{
    const QDir directory(configuration_);
    const QSettings kde(directory.filePath("kdeglobals"), QSettings::IniFormat);
    motion_["kdeglobals"] = isZero(kde.value("KDE/AnimationDurationFactor"));
    // The group "General" has no name here, and the commas of a font are those of a list.
    kdeFont_ = kdeFont(kde.value("font").toStringList().join(','));
    const QSettings gtk(directory.filePath("gtk-3.0/settings.ini"), QSettings::IniFormat);
    const QString animations = gtk.value("Settings/gtk-enable-animations").toString().toLower();
    motion_["gtk"] = animations == "false" || animations == "0";
    gtkFont_ = gtkFont(gtk.value("Settings/gtk-font-name").toStringList().join(','));
    apply();
}

void DesktopSettings::apply()
{
    preferences_.setReducesMotion(anyOf(motion_));
    preferences_.setIncreasesContrast(anyOf(contrast_));
    // What shows through a surface takes contrast from what is on it.
    preferences_.setReducesTransparency(anyOf(contrast_));
    const auto& font = kdeFont_ ? kdeFont_ : gtkFont_;
    preferences_.setFontFamily(font ? font->family : std::string());
    preferences_.setTextScale(textScale());
}

double DesktopSettings::textScale() const
{
    if (toolkitFollowsTextScale()) {
        return 1.0;
    }
    const double scale =
        kdeFont_ && kdeFont_->points > 0.0 ? kdeFont_->points / kdeDefaultPoints : gtkTextScale_;
    // Also without a meaning: not a number, or 0.
    return scale > 0.0 ? std::clamp(scale, leastTextScale, largestTextScale) : 1.0;
}

} // namespace Kestry
