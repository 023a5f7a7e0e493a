#pragma once

#include <QGuiApplication>
#include <QKeyEvent>
#include <QQuickWindow>

#include <gtest/gtest.h>

#include <memory>

#include "ApplicationWorld.h"
#include "MenuWindow.h"
#include "ServedEngine.h"
#include "StageChoice.h"
#include "TipWindow.h"

namespace Kestry {

/// A window with an item on a page, and the menus and tool tips that it may ask for.
class PopupFixture : public ::testing::Test {
protected:
    PopupFixture()
    {
        toolTips.serve(engine);
        owner.setGeometry(100, 100, 400, 300);
        owner.show();
        page.setParentItem(owner.contentItem());
        item->setPosition({10, 10});
        item->setSize({80, 30});
    }

    /// The window of this title that is shown; null without one.
    static PanelWindow* shownWindow(const QString& title)
    {
        for (QWindow* each : QGuiApplication::topLevelWindows()) {
            if (each->title() == title && each->isVisible()) {
                return qobject_cast<PanelWindow*>(each);
            }
        }
        return nullptr;
    }
    static PanelWindow* menu() { return shownWindow("Menu"); }
    static PanelWindow* tip() { return shownWindow("Tip"); }
    void press(Qt::Key key)
    {
        QKeyEvent event(QEvent::KeyPress, key, {});
        QCoreApplication::sendEvent(&owner, &event);
    }

    KestryCore::VirtualScheduler scheduler;
    MapDefaults defaults;
    AppearanceSettings settings{defaults};
    DesktopPreferences preferences;
    AppearanceBridge appearance{settings, preferences};
    ToolTips toolTips{nullptr};
    std::unique_ptr<PanelStage> stage = panelStage();
    ServedEngine engine{appearance};
    MenuWindow menus{engine, *stage, scheduler};
    TipWindow tips{engine, *stage, toolTips, menus};
    QQuickWindow owner;
    QQuickItem page;
    std::unique_ptr<QQuickItem> item = std::make_unique<QQuickItem>(&page);
};

} // namespace Kestry
