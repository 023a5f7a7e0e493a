#pragma once

#include <QQuickWindow>

#include <vector>

#include "PanelStage.h"

namespace Kestry {

/// The panels in one small ordinary window, for desktops where nothing can be above all windows.
/// They keep their places relative to each other, and the window is as high as they need.
class OrdinaryStage final : public QObject, public PanelStage {
    Q_OBJECT
public:
    OrdinaryStage();

    void monitor(const DesktopActions& actions) override { actions_ = actions; }
    void frameChanged(PanelWindow& panel, double radius) override;
    void show(PanelWindow& panel) override;
    void hide(PanelWindow& panel) override;
    [[nodiscard]] bool isShown(const PanelWindow& panel) const override;
    [[nodiscard]] bool pointerIsOver(const PanelWindow& panel) const override;
    void takeKeyboard(PanelWindow& panel) override;
    void giveKeyboardBack(PanelWindow&) override { }

    bool eventFilter(QObject* object, QEvent* event) override;

    [[nodiscard]] const QQuickWindow& window() const { return window_; }

private:
    void arrange();

    QQuickWindow window_;
    std::vector<PanelWindow*> shown_; ///< The strip first, which is there before all others.
    QRect places_;                    ///< The bounds of all frames so far.
    DesktopActions actions_;
    bool isEntered_ = false;
};

} // namespace Kestry
