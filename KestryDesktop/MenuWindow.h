#pragma once

#include <QObject>
#include <QPointer>
#include <QQmlEngine>
#include <QQuickItem>

#include <functional>
#include <memory>

#include "MenuController.h"
#include "PanelStage.h"
#include "PanelWindow.h"

namespace Kestry {

/// The menus that views open: one at a time, in a window of its own beside the item that asked.
/// While it is open all keys of this program go to it, and a press beside it closes it and does
/// nothing else.
class MenuWindow final : public QObject {
    Q_OBJECT
public:
    /// All of these must outlive the window.
    MenuWindow(QQmlEngine& engine, PanelStage& stage, KestryCore::Scheduler& scheduler);
    MenuWindow(const MenuWindow&) = delete;
    MenuWindow& operator=(const MenuWindow&) = delete;
    ~MenuWindow() override;

    /// Opens a menu below an item, in place of one that is open. Does nothing for a menu without
    /// entries or an item that is in no window. `name` is what a screen reader calls it.
    void open(Menu menu, const QString& name, MenuController::Look look, const QQuickItem& item);
    /// Closes the menu that is open; does nothing without one.
    void close();
    [[nodiscard]] bool isOpen() const { return isOpen_; }

    bool eventFilter(QObject* object, QEvent* event) override;

signals:
    /// A menu came up. The number tells it from all others.
    void opened(quint64 menu);
    /// That menu went, and what was chosen in it has been done.
    void closed(quint64 menu);

private:
    void make();
    void place();
    void finish(const std::function<void()>& action);
    [[nodiscard]] bool isOnMenu(const QObject& window, const QEvent& press) const;

    QQmlEngine& engine_;
    PanelStage& stage_;
    MenuController controller_;
    std::unique_ptr<PanelWindow> window_; ///< Made for the first menu.
    QPointer<QWindow> owner_;             ///< The window that the menu was opened from.
    QRect item_;                          ///< Where the item is that it was opened from.
    bool isAtRight_ = false;              ///< That item is in the right half of its window.
    bool isOpen_ = false;
    quint64 identity_ = 0; ///< Of the menu that is open, or was last.
};

} // namespace Kestry
