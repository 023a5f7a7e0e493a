#include "NativeMenu.h"

#include <QActionGroup>

namespace Kestry {
namespace {

QString text(const std::string& utf8)
{
    // An ampersand in a client's name is no mnemonic.
    return QString::fromStdString(utf8).replace('&', "&&");
}

void addEntry(QMenu& menu, const MenuEntry& entry)
{
    switch (entry.kind) {
    case MenuEntry::Kind::separator:
        menu.addSeparator();
        return;
    case MenuEntry::Kind::heading:
        menu.addSection(text(entry.text));
        return;
    case MenuEntry::Kind::command:
        break;
    }
    if (!entry.entries.empty()) {
        fillNativeMenu(*menu.addMenu(text(entry.text)), entry.entries);
        return;
    }
    QAction* action = menu.addAction(text(entry.text));
    action->setEnabled(entry.isEnabled);
    action->setShortcut(QKeySequence(QString::fromStdString(entry.shortcut)));
    if (entry.isChosen) {
        action->setCheckable(true);
        action->setChecked(*entry.isChosen);
    }
    if (entry.action) {
        QObject::connect(action, &QAction::triggered, &menu, entry.action);
    }
}

} // namespace

void fillNativeMenu(QMenu& menu, const Menu& entries)
{
    menu.clear();
    for (const MenuEntry& entry : entries) {
        addEntry(menu, entry);
    }
}

} // namespace Kestry
