#pragma once

#include "ApplicationWorld.h"
#include "FakePanels.h"
#include "NotchController.h"

namespace Kestry {

/// A controller over remembered panels, in virtual time, with words for what a user does. The
/// strip is visible and nothing else.
class NotchWorld {
public:
    // Points on the strip, on the detail panel below it, on the bubble below that, and on none.
    static constexpr QPointF onStrip{640, 20};
    static constexpr QPointF onDetail{640, 60};
    static constexpr QPointF onPreview{640, 110};
    static constexpr QPointF away{100, 700};

    NotchWorld()
    {
        notch.makeVisible();
        panels.orders.clear();
    }

    void point(QPointF position) { panels.pointerPosition = position; }
    void movePointer(QPointF position, bool isInside)
    {
        point(position);
        notch.hover(isInside);
    }
    void hoverStrip()
    {
        movePointer(onStrip, true);
        scheduler.turn();
    }
    void hoverDetail()
    {
        hoverStrip();
        movePointer(onDetail, true);
    }
    void leave() { movePointer(away, false); }
    void wait(double seconds) { scheduler.advance(seconds); }
    void beginEditing()
    {
        hoverStrip();
        notch.editingChanged(true);
    }
    void hideStrip() { notch.hide(); }
    void clickElsewhere() { notch.clickElsewhere(); }
    void openMenu() { notch.menuOpened(7); }
    void preview() { notch.previewTitle("A title that is too long for its field"); }
    void showPreview()
    {
        hoverDetail();
        preview();
        wait(0.25);
    }
    void reduceMotion() { panels.reduceMotion = true; }
    void fold()
    {
        hoverStrip();
        leave();
        wait(1);
    }
    void startFolding()
    {
        hoverStrip();
        leave();
        wait(0.121);
    }

    [[nodiscard]] bool isFront(NotchPanel panel) { return panels.isFront[panel]; }
    [[nodiscard]] double detailHeight() { return panels.frames[NotchPanel::detail].height(); }

    ApplicationWorld world;
    KestryCore::VirtualScheduler& scheduler = world.scheduler;
    KestryCore::TimeStore store{world.storePlatform(), ApplicationWorld::inMemory()};
    FakePanels panels;
    int dashboards = 0;
    NotchController notch{panels, scheduler, store, [this] { ++dashboards; }};
};

} // namespace Kestry
