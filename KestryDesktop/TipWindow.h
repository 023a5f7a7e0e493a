#pragma once

#include <QObject>
#include <QQmlEngine>

#include <memory>

#include "MenuWindow.h"
#include "PanelStage.h"
#include "PanelWindow.h"
#include "ToolTips.h"

namespace Kestry {

/// The tool tip that views ask for, in a window of its own, so that it can be larger than the
/// panel that it is of. None is shown while a menu is open: it would cover the menu.
class TipWindow final : public QObject {
    Q_OBJECT
public:
    /// All of these must outlive the window.
    TipWindow(QQmlEngine& engine, PanelStage& stage, ToolTips& tips, const MenuWindow& menus);
    TipWindow(const TipWindow&) = delete;
    TipWindow& operator=(const TipWindow&) = delete;
    ~TipWindow() override;

private:
    void show(QQuickItem* item, const QString& text, ToolTips::Place place, QObject* colors);
    void hide();

    QQmlEngine& engine_;
    PanelStage& stage_;
    const MenuWindow& menus_;
    std::unique_ptr<PanelWindow> window_; ///< Null while no tip is shown.
};

} // namespace Kestry
