#include "InterfaceFont.h"

#include <QGuiApplication>
#include <QQuickItem>
#include <QQuickWindow>

namespace Kestry {
namespace {

constexpr const char* ownFamily = "Inter";

/// A text takes the application's font when it is made, and does not follow it afterwards. Those
/// with a family of their own keep it.
void replaceFamilies(QQuickItem& item, const QStringList& before, const QStringList& after)
{
    const QVariant value = item.property("font");
    if (value.typeId() == QMetaType::QFont) {
        QFont font = value.value<QFont>();
        if (font.families() == before) {
            font.setFamilies(after);
            item.setProperty("font", font);
        }
    }
    for (QQuickItem* child : item.childItems()) {
        replaceFamilies(*child, before, after);
    }
}

} // namespace

InterfaceFont::InterfaceFont(const DesktopPreferences& preferences)
    : fallback_(QGuiApplication::font().family()),
      subscription_(
          preferences.fontFamily().observe([this](const std::string& family) { use(family); }))
{
    use(*preferences.fontFamily());
}

void InterfaceFont::use(const std::string& family) const
{
    // Whether a family is there is for the first text to find out: asking would load all fonts at
    // once.
    QFont font = QGuiApplication::font();
    const QStringList before = font.families();
    QStringList families{ownFamily, fallback_};
    if (!family.empty()) {
        families.prepend(QString::fromStdString(family));
    }
    font.setFamilies(families);
    QGuiApplication::setFont(font);
    for (QWindow* each : QGuiApplication::allWindows()) {
        if (auto* window = qobject_cast<QQuickWindow*>(each)) {
            replaceFamilies(*window->contentItem(), before, families);
        }
    }
}

} // namespace Kestry
