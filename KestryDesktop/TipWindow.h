#pragma once

#include <QObject>
#include <QPoint>
#include <QPointer>
#include <QQmlEngine>

#include <memory>
#include <optional>

#include "MenuWindow.h"
#include "PanelStage.h"
#include "PanelWindow.h"
#include "ToolTips.h"

namespace Kestry {

/// The tool tip that views ask for, in a window of its own, so that it can be larger than the
/// panel that it is of. None is shown while a menu is open: it would cover the menu.
///
/// A tip goes when what it is about goes: when its item is destroyed, hidden, disabled or scrolled
/// out of sight, and when the item's window is hidden or no longer in front. One beside an item
/// that moves moves with it; one at the pointer goes then. The Escape key hides it, and does all
/// that it does without one.
class TipWindow final : public QObject {
    Q_OBJECT
public:
    /// All of these must outlive the window.
    TipWindow(QQmlEngine& engine, PanelStage& stage, ToolTips& tips, const MenuWindow& menus);
    TipWindow(const TipWindow&) = delete;
    TipWindow& operator=(const TipWindow&) = delete;
    ~TipWindow() override;

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void show(QQuickItem* item, const QString& text, ToolTips::Place place, QObject* colors);
    void change(QQuickItem* item, const QString& text);
    void hide();
    /// Shows the window where its item wants it, in the size of its text.
    void place();
    /// The item has moved.
    void move();
    /// Looks after the item from now on.
    void follow(QQuickWindow& owner);

    QQmlEngine& engine_;
    PanelStage& stage_;
    const MenuWindow& menus_;
    QPointer<QQuickItem> item_;           ///< What the tip is about.
    QPointer<QQuickWindow> owner_;        ///< The window of the item.
    ToolTips::Place place_{};             ///< Where the item wants it.
    std::optional<QPointF> placeOfItem_;  ///< When the tip was placed last.
    QPoint pointer_;                      ///< Where the pointer was when the tip was asked for.
    std::unique_ptr<PanelWindow> window_; ///< Null while no tip is shown.
    std::unique_ptr<QObject> following_;  ///< What the item's signals reach while one is shown.
};

} // namespace Kestry
