#include "SessionMenus.h"

#include <utility>

#include "SessionTarget.h"
#include "ShellMenus.h"

namespace Kestry {

SessionMenus::SessionMenus(Commander& commander, const KestryCore::TimeStore& store,
    AppState& state, SoftwareUpdater& updater, MenuWindow& window, KestryCore::MoneyText words)
    : commander_(commander), store_(store), state_(state), updater_(updater), window_(window),
      words_(std::move(words))
{
    connect(&window_, &MenuWindow::opened, this, &SessionMenus::opened);
    connect(&window_, &MenuWindow::closed, this, &SessionMenus::closed);
}

void SessionMenus::openTarget(QQuickItem* item, MenuController::Look look)
{
    if (item) {
        window_.open(targetMenu(store_, state_, words_), "Session client and project", look, *item);
    }
}

void SessionMenus::openTitle(QQuickItem* item)
{
    if (item) {
        window_.open(titleMenu(), "Session title", MenuController::Panel, *item);
    }
}

void SessionMenus::openMain(QQuickItem* item)
{
    if (item) {
        const auto perform = [this](
                                 WindowKeys::Command command) { emit windowActionChosen(command); };
        window_.open(
            mainMenu(commander_, updater_, perform), "Main menu", MenuController::Window, *item);
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

} // namespace Kestry
