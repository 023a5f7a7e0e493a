#pragma once

#include <QAbstractListModel>
#include <QFont>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "MenuEntry.h"
#include "Scheduler.h"

namespace Kestry {

/// An open menu without its window: which entries are shown, which one is highlighted, and what
/// keys and the pointer do. The rows are the entries of the menu, or of the submenu that has taken
/// its place.
class MenuController final : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The window of the menus makes it.")
    /// Of the menu or submenu that is shown.
    Q_PROPERTY(QString name READ name NOTIFY shown)
    Q_PROPERTY(bool isSubmenu READ isSubmenu NOTIFY shown)
    Q_PROPERTY(Look look READ look NOTIFY shown)
    /// The highlighted row; -1 for none.
    Q_PROPERTY(int current READ current NOTIFY currentChanged)
    Q_PROPERTY(bool hasMarks READ hasMarks NOTIFY shown)
    Q_PROPERTY(bool hasSymbols READ hasSymbols NOTIFY shown)
    Q_PROPERTY(int separatorCount READ separatorCount NOTIFY shown)

public:
    enum Role {
        KindRole = Qt::UserRole,
        TextRole,
        SymbolRole,
        ColorRole,
        ShortcutRole,
        IsEnabledRole,
        IsCheckableRole,
        IsCheckedRole,
        HasSubmenuRole
    };
    enum Kind { Command, Separator, Heading };
    Q_ENUM(Kind)
    /// The panels are always dark; the window follows its theme.
    enum Look { Panel, Window };
    Q_ENUM(Look)

    /// The scheduler must outlive the controller.
    explicit MenuController(KestryCore::Scheduler& scheduler);

    /// Shows a menu in place of the one before. No row is highlighted. `name` is what a screen
    /// reader calls it.
    void open(Menu menu, const QString& name, Look look);

    /// A key went down. `text` is what the key types; a letter moves to an entry that begins with
    /// it. Keys without a meaning in a menu do nothing.
    Q_INVOKABLE void press(int key, const QString& text);
    /// The pointer has moved onto a row. Rows that cannot be chosen take the highlight away.
    Q_INVOKABLE void point(int row);
    /// Chooses a row: emits `chosen`, or shows its submenu. Does nothing for a row that cannot be
    /// chosen.
    Q_INVOKABLE void choose(int row);
    /// Returns from a submenu to the menu that it was opened from; does nothing in a menu.
    Q_INVOKABLE void leaveSubmenu();

    /// The width in pixels of the widest text, or shortcut, of the menu and all its submenus.
    Q_INVOKABLE double widestText(const QFont& font) const;
    Q_INVOKABLE double widestShortcut(const QFont& font) const;

    [[nodiscard]] QString name() const { return levels_.back().name; }
    [[nodiscard]] bool isSubmenu() const { return levels_.size() > 1; }
    [[nodiscard]] Look look() const { return look_; }
    [[nodiscard]] int current() const { return levels_.back().current; }
    [[nodiscard]] bool hasMarks() const;
    [[nodiscard]] bool hasSymbols() const;
    [[nodiscard]] int separatorCount() const;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

signals:
    /// The rows are those of another menu or submenu.
    void shown();
    void currentChanged();
    /// An entry was chosen; the menu should close, and then the action should run.
    void chosen(const std::function<void()>& action);
    /// The menu should close, with nothing chosen.
    void dismissed();

private:
    struct Level {
        Menu entries{};
        QString name{};
        int current = -1;
    };

    void show(std::vector<Level> levels);
    [[nodiscard]] const Menu& entries() const { return levels_.back().entries; }
    [[nodiscard]] const MenuEntry* entry(int row) const;
    [[nodiscard]] bool canBeChosen(int row) const;
    void setCurrent(int row);
    /// Highlights the next row that can be chosen, around the ends. `step` is 1 or -1.
    void move(int from, int step);
    void openSubmenu();
    void dismissOrLeaveSubmenu();
    void typeAhead(const QString& text);
    [[nodiscard]] int findRow(const QString& prefix, int from) const;

    KestryCore::Scheduler& scheduler_;
    std::vector<Level> levels_{Level{}}; ///< The menu, then the submenus on the way to the rows.
    Look look_ = Panel;
    QString typed_; ///< Letters typed shortly after one another.
    KestryCore::Timer typing_;
};

} // namespace Kestry
