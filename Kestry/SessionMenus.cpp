#include "SessionMenus.h"

#include <QQuickWindow>
#include <QToolTip>

#include <utility>

#include "NativeMenu.h"
#include "SessionTarget.h"
#include "ShellMenus.h"

namespace Kestry {
namespace {

constexpr int fontPixels = 13;

QFont menuFont(QFont font)
{
    font.setPixelSize(fontPixels);
    return font;
}

/// Below the item, at its left edge, or at its right one where that is nearer the window's.
QPoint placeFor(const QMenu& menu, const QQuickItem& anchor)
{
    const double middle = anchor.mapToScene(QPointF(anchor.width() / 2.0, 0)).x();
    const bool isRight = middle > anchor.window()->width() / 2.0;
    const double x = isRight ? anchor.width() - menu.sizeHint().width() : 0.0;
    return anchor.mapToGlobal(QPointF(x, anchor.height())).toPoint();
}

} // namespace

SessionMenus::SessionMenus(Commander& commander, const KestryCore::TimeStore& store,
    AppState& state, const AppearanceSettings& appearance, KestryCore::MoneyText words)
    : commander_(commander), store_(store), state_(state), appearance_(appearance),
      words_(std::move(words))
{
}

void SessionMenus::openTarget(QQuickItem* anchor)
{
    open(targetMenu(store_, state_, words_), anchor, MenuTheme::dark);
}

void SessionMenus::openTitle(QQuickItem* anchor)
{
    open(titleMenu(), anchor, MenuTheme::dark);
}

void SessionMenus::openMain(QQuickItem* anchor)
{
    const bool isDark = *appearance_.mode() == AppearanceMode::dark;
    open(mainMenu(commander_), anchor, isDark ? MenuTheme::dark : MenuTheme::light);
}

void SessionMenus::close()
{
    if (menu_) {
        menu_->close();
    }
}

Menu SessionMenus::titleMenu()
{
    const auto& active = store_.data()->active;
    if (!active) {
        return {};
    }
    const auto editSession = [this, id = active->id] {
        state_.editor.assign(Editor{Editor::ActiveForm{id}});
        commander_.openMain();
    };
    return {
        {.text = "Edit title", .action = [this] { emit editTitleChosen(); }},
        {.text = "Change project…", .action = editSession},
    };
}

void SessionMenus::open(const Menu& entries, QQuickItem* anchor, MenuTheme theme)
{
    if (entries.empty() || !anchor || !anchor->window()) {
        return;
    }
    menu_ = std::make_unique<QMenu>();
    const std::string& accent =
        theme == MenuTheme::dark ? appearance_.darkAccentHex() : appearance_.lightAccentHex();
    menu_->setPalette(menuPalette(theme, QColor("#" + QString::fromStdString(accent))));
    menu_->setStyle(&style_);
    menu_->setFont(menuFont(menu_->font()));
    fillNativeMenu(*menu_, entries);
    const auto identity = static_cast<quint64>(reinterpret_cast<quintptr>(menu_.get()));
    connect(menu_.get(), &QMenu::aboutToShow, this, [this, identity] { emit opened(identity); });
    // What the chosen entry does may need the keyboard, which the menu still holds while it hides.
    connect(
        menu_.get(), &QMenu::aboutToHide, this, [this, identity] { emit closed(identity); },
        Qt::QueuedConnection);
    QToolTip::hideText(); // it would lie over the menu
    menu_->popup(placeFor(*menu_, *anchor));
}

} // namespace Kestry
