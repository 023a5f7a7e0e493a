#pragma once

#include <QObject>
#include <QRasterWindow>

#include <functional>
#include <set>
#include <vector>

#include "PanelWindow.h"
#include "WaylandLayerShell.h"

namespace Kestry {

/// Lets menus and tool tips come up from panels that stand in a layer. To the compositor such a
/// window is no parent for popups of the ordinary kind, and the toolkit would make windows of them
/// that stand anywhere. So they become parts of the panel, and while a menu is open a sheet over
/// the whole screen takes the presses that go past it, which close it. The keys come to the panel
/// then, and are passed on.
class LayerPopups final : public QObject {
    Q_OBJECT
public:
    /// Told which panel has a menu open from now on; null for none.
    using MenuOwner = std::function<void(const PanelWindow*)>;

    /// All of these must outlive the popups. What comes up elsewhere is left alone.
    LayerPopups(
        WaylandLayerShell& layers, std::vector<const PanelWindow*> panels, MenuOwner menuOwner);

    /// Closes what menus are open, on a later turn of the loop.
    void closeMenusSoon();

    bool eventFilter(QObject* object, QEvent* event) override;

private:
    [[nodiscard]] const PanelWindow* panelInUse() const;
    void keepFromWindowManager(QObject& object) const;
    void open(QWindow& popup);
    void close(QWindow& popup);
    [[nodiscard]] bool isPressBeside(QWindow& window, const QEvent& event) const;
    [[nodiscard]] bool passOnKey(const QWindow& window, QEvent& event) const;
    void closeMenus();

    WaylandLayerShell& layers_;
    std::vector<const PanelWindow*> panels_;
    MenuOwner menuOwner_;
    QRasterWindow sheet_;
    std::set<QWindow*> menus_;
};

} // namespace Kestry
