#pragma once

#include <QObject>
#include <QQmlEngine>

#include "NotchPanels.h"
#include "NotchSurface.h"
#include "PanelWindow.h"
#include "SessionBridge.h"
#include "X11Desktop.h"

namespace Kestry {

/// The panels on a real desktop.
class NotchWindows final : public QObject, public NotchPanels {
    Q_OBJECT
public:
    /// Makes both windows, hidden. The engine and the bridge must outlive them.
    NotchWindows(QQmlEngine& engine, SessionBridge& session);
    NotchWindows(const NotchWindows&) = delete;
    NotchWindows& operator=(const NotchWindows&) = delete;
    ~NotchWindows() override;

    void deliverEventsTo(NotchPanelEvents* events) override { surface_.deliverEventsTo(events); }
    [[nodiscard]] std::vector<ScreenMetrics> screens() const override;
    [[nodiscard]] QPointF pointer() const override;
    [[nodiscard]] bool reducesMotion() const override { return surface_.reducesMotion(); }
    [[nodiscard]] bool detailIsKey() const override { return detailIsKey_; }

    void place(NotchPanel panel, const QRectF& frame) override;
    void orderFront(NotchPanel panel) override;
    void orderOut(NotchPanel panel) override;
    void makeDetailKey() override;
    void clearFirstResponder() override;
    void rebuildContent(const NotchMeasures& measures) override { surface_.rebuild(measures); }
    void setHovered(bool hovered) override { surface_.setHovered(hovered); }
    void setShown(bool shown, RevealMotion motion) override { surface_.setShown(shown, motion); }

private:
    [[nodiscard]] PanelWindow& window(NotchPanel panel);
    void load(PanelWindow& panel, const QString& view, SessionBridge& session);
    void followScreens();
    void mouseDown();
    void detailActiveChanged();
    void giveKeyboardBack();

    X11Desktop desktop_;
    NotchSurface surface_;
    PanelWindow bridge_;
    PanelWindow detail_;
    // True from asking for the keyboard until it is lost or given back. The toolkit's own word
    // comes later, by way of the server, and cannot tell losing from giving back.
    bool detailIsKey_ = false;
};

} // namespace Kestry
