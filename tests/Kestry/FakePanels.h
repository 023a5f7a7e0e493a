#pragma once

#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include "NotchPanels.h"

namespace Kestry {

/// Panels that are only remembered, with every order written down, on a plain screen with the
/// pointer far away.
class FakePanels final : public NotchPanels {
public:
    void deliverEventsTo(NotchPanelEvents* receiver) override { events = receiver; }
    [[nodiscard]] std::vector<ScreenMetrics> screens() const override { return attachedScreens; }
    [[nodiscard]] PanelPlace wantedPlace() const override { return wanted; }
    [[nodiscard]] bool pointerIsOver(NotchPanel panel) const override
    {
        const auto frame = frames.find(panel);
        return frame != frames.end() && covers(frame->second, pointerPosition);
    }
    [[nodiscard]] bool reducesMotion() const override { return reduceMotion; }
    [[nodiscard]] bool detailHasFocus() const override { return isKey; }

    void place(NotchPanel panel, const QRectF& frame) override
    {
        frames[panel] = frame;
        note("place " + name(panel));
    }
    void show(NotchPanel panel) override
    {
        isFront[panel] = true;
        note(name(panel) + " front");
    }
    void hide(NotchPanel panel) override
    {
        isFront[panel] = false;
        note(name(panel) + " out");
    }
    void focusDetail() override
    {
        isKey = true;
        note("focus detail");
    }
    void endEditing() override
    {
        isKey = false;
        note("end editing");
    }
    void closeMenus() override { note("close menus"); }
    void rebuildContent(const NotchMeasures&) override { note("rebuild"); }
    void setHovered(bool value) override
    {
        hovered = value;
        note(value ? "hovered" : "not hovered");
    }
    void setShown(bool value, RevealMotion how) override
    {
        shown = value;
        motion = how;
        note((value ? "shown " : "hidden ") + name(how));
    }
    double layOutPreview(const std::string& title, double width) override
    {
        previewedTitle = title;
        previewWidth = width;
        note("lay out preview");
        return previewContentHeight;
    }
    void fadePreviewIn(double fromOpacity, double seconds) override
    {
        previewOpacity = fromOpacity;
        previewFadeSeconds = seconds;
        note("fade preview in");
    }

    [[nodiscard]] bool wasOrdered(const std::string& order) const
    {
        return std::ranges::find(orders, order) != orders.end();
    }

    NotchPanelEvents* events = nullptr;
    std::vector<ScreenMetrics> attachedScreens{
        {.frame = {0, 0, 1280, 800}, .visibleFrame = {0, 0, 1280, 800}, .isMain = true}};
    PanelPlace wanted;
    QPointF pointerPosition{100, 700};
    bool reduceMotion = false;
    bool isKey = false;
    std::map<NotchPanel, QRectF> frames;
    std::map<NotchPanel, bool> isFront;
    std::vector<std::string> orders; ///< In the order of giving.
    bool hovered = false;
    bool shown = false;
    RevealMotion motion = RevealMotion::none;
    std::string previewedTitle;
    double previewWidth = 0.0;
    double previewContentHeight = 56.0;
    double previewOpacity = -1.0;
    double previewFadeSeconds = -1.0;

private:
    void note(std::string order) { orders.push_back(std::move(order)); }

    static std::string name(NotchPanel panel)
    {
        switch (panel) {
        case NotchPanel::bridge:
            return "bridge";
        case NotchPanel::detail:
            return "detail";
        case NotchPanel::titlePreview:
            break;
        }
        return "preview";
    }
    static std::string name(RevealMotion how)
    {
        switch (how) {
        case RevealMotion::unfold:
            return "by spring";
        case RevealMotion::fold:
            return "by ease-out";
        case RevealMotion::none:
            break;
        }
        return "at once";
    }
};

} // namespace Kestry
