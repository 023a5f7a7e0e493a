#pragma once

#include <QObject>
#include <QRasterWindow>

#include <memory>
#include <set>

#include "PanelWindow.h"
#include "WaylandLayerShell.h"

namespace Kestry {

/// Lets menus open from a panel that stands in a layer. To the compositor such a window is no
/// parent for a menu of the ordinary kind, so the menu becomes a part of the panel, and a sheet
/// over the whole screen takes the presses that go past both, which close it.
///
/// It concerns popup windows that ask for no window manager, and no others.
class LayerPopups final : public QObject {
    Q_OBJECT
public:
    /// Both must outlive the popups.
    LayerPopups(WaylandLayerShell& layers, const PanelWindow& panel);

    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void open(QWindow& popup);
    void close(QWindow& popup);
    [[nodiscard]] bool isPressBeside(QWindow& window, const QEvent& event) const;
    void closeAll();

    WaylandLayerShell& layers_;
    const PanelWindow& panel_;
    QRasterWindow sheet_;
    std::set<QWindow*> popups_;
};

} // namespace Kestry
