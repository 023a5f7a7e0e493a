#include "SessionMenus.h"

#include <QQuickWindow>

#include <utility>

#include "NativeMenu.h"
#include "SessionTarget.h"
#include "ShellMenus.h"

namespace Kestry {

SessionMenus::SessionMenus(ShellCommands& commands, KestryCore::MoneyText words)
    : commands_(commands), words_(std::move(words))
{
}

void SessionMenus::openTarget(QQuickItem* anchor)
{
    open(targetMenu(commands_.store(), commands_.state(), words_), anchor);
}

void SessionMenus::openTitle(QQuickItem* anchor)
{
    open(titleMenu(), anchor);
}

void SessionMenus::openMain(QQuickItem* anchor)
{
    open(mainMenu(commands_), anchor);
}

Menu SessionMenus::titleMenu()
{
    const auto& active = commands_.store().data()->active;
    if (!active) {
        return {};
    }
    const auto editSession = [this, id = active->id] {
        commands_.state().editor.assign(Editor{Editor::ActiveForm{id}});
        commands_.openMain();
    };
    return {
        {.text = "Edit title", .action = [this] { emit editTitleChosen(); }},
        {.text = "Change project…", .action = editSession},
    };
}

void SessionMenus::open(const Menu& entries, QQuickItem* anchor)
{
    if (entries.empty() || !anchor || !anchor->window()) {
        return;
    }
    menu_ = std::make_unique<QMenu>();
    fillNativeMenu(*menu_, entries);
    const auto identity = static_cast<quint64>(reinterpret_cast<quintptr>(menu_.get()));
    connect(menu_.get(), &QMenu::aboutToShow, this, [this, identity] { emit opened(identity); });
    // What the chosen entry does may need the keyboard, which the menu still holds while it hides.
    connect(
        menu_.get(), &QMenu::aboutToHide, this, [this, identity] { emit closed(identity); },
        Qt::QueuedConnection);
    const QPointF below = anchor->mapToGlobal(QPointF(0, anchor->height()));
    menu_->popup(below.toPoint());
}

} // namespace Kestry
