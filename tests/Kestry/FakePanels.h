#pragma once

#include <map>

#include "NotchPanels.h"

namespace Kestry {

/// Panels that are only remembered, on a plain screen with the pointer far away.
class FakePanels final : public NotchPanels {
public:
    void deliverEventsTo(NotchPanelEvents* receiver) override { events = receiver; }
    [[nodiscard]] std::vector<ScreenMetrics> screens() const override { return attachedScreens; }
    [[nodiscard]] QPointF pointer() const override { return pointerPosition; }
    [[nodiscard]] bool reducesMotion() const override { return reduceMotion; }
    [[nodiscard]] bool detailIsKey() const override { return isKey; }

    void place(NotchPanel panel, const QRectF& frame) override { frames[panel] = frame; }
    void orderFront(NotchPanel panel) override { isFront[panel] = true; }
    void orderOut(NotchPanel panel) override { isFront[panel] = false; }
    void makeDetailKey() override { isKey = true; }
    void clearFirstResponder() override
    {
        isKey = false;
        ++responderClears;
    }
    void rebuildContent(const NotchMeasures&) override { ++rebuilds; }
    void setHovered(bool value) override { hovered = value; }
    void setShown(bool value, RevealMotion how) override
    {
        shown = value;
        motion = how;
    }

    NotchPanelEvents* events = nullptr;
    std::vector<ScreenMetrics> attachedScreens{
        {.frame = {0, 0, 1280, 800}, .visibleFrame = {0, 0, 1280, 800}, .isMain = true}};
    QPointF pointerPosition{100, 700};
    bool reduceMotion = false;
    bool isKey = false;
    std::map<NotchPanel, QRectF> frames;
    std::map<NotchPanel, bool> isFront;
    int responderClears = 0;
    int rebuilds = 0;
    bool hovered = false;
    bool shown = false;
    RevealMotion motion = RevealMotion::none;
};

} // namespace Kestry
