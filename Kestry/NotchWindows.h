#pragma once

#include <QObject>
#include <QQmlEngine>

#include <array>
#include <memory>
#include <vector>

#include "NotchPanels.h"
#include "NotchSurface.h"
#include "Observable.h"
#include "PanelStage.h"
#include "PanelWindow.h"
#include "SessionBridge.h"
#include "SessionMenus.h"

namespace Kestry {

/// The panels on a real desktop.
class NotchWindows final : public QObject, public NotchPanels {
    Q_OBJECT
public:
    /// Creates the windows, hidden. All arguments must outlive them.
    NotchWindows(QQmlEngine& engine, PanelStage& stage, SessionBridge& session, SessionMenus& menus,
        const KestryCore::Observable<bool>& reducesMotion,
        const KestryCore::Observable<PanelPlace>& place);
    NotchWindows(const NotchWindows&) = delete;
    NotchWindows& operator=(const NotchWindows&) = delete;
    ~NotchWindows() override;

    void deliverEventsTo(NotchPanelEvents* events) override { surface_.deliverEventsTo(events); }
    [[nodiscard]] std::vector<ScreenMetrics> screens() const override;
    [[nodiscard]] PanelPlace wantedPlace() const override { return *place_; }
    [[nodiscard]] bool pointerIsOver(NotchPanel panel) const override;
    [[nodiscard]] bool reducesMotion() const override { return surface_.reducesMotion(); }
    [[nodiscard]] bool detailHasFocus() const override { return detailHasFocus_; }

    void place(NotchPanel panel, const QRectF& frame) override;
    void show(NotchPanel panel) override;
    void hide(NotchPanel panel) override;
    void focusDetail() override;
    void endEditing() override;
    void closeMenus() override;
    void rebuildContent(const NotchMeasures& measures) override { surface_.rebuild(measures); }
    void setHovered(bool hovered) override { surface_.setHovered(hovered); }
    void setShown(bool shown, RevealMotion motion) override { surface_.setShown(shown, motion); }
    double layOutPreview(const std::string& title, double width) override;
    void fadePreviewIn(double fromOpacity, double seconds) override;

private:
    [[nodiscard]] PanelWindow& window(NotchPanel panel);
    [[nodiscard]] const PanelWindow& window(NotchPanel panel) const;
    void setViews(QQmlEngine& engine, SessionBridge& session, SessionMenus& menus);
    void reportHover();
    void reportMenus();
    void followScreens();
    void workAreaChanged();
    void reportScreens();
    void followPointer();
    void mouseDown();
    void raiseAgain();
    void keyboardLost();
    void giveKeyboardBack();

    PanelWindow bridge_{"Kestry"};
    PanelWindow detail_{"Kestry session controls"};
    PanelWindow titlePreview_{"Full session title"};
    PanelStage& stage_;
    SessionMenus& menus_;
    NotchSurface surface_;
    const KestryCore::Observable<PanelPlace>& place_;
    KestryCore::Subscription motion_;
    KestryCore::Subscription placing_;
    std::vector<ScreenMetrics> reportedScreens_;
    // True from asking for the keyboard until it is lost or given back. The toolkit's own word
    // comes later, by way of the server, and cannot tell losing from giving back.
    bool detailHasFocus_ = false;
};

} // namespace Kestry
