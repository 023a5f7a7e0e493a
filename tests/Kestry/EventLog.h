#pragma once

#include <string>
#include <utility>
#include <vector>

#include "NotchPanels.h"

namespace Kestry {

/// Writes down what it is told.
class EventLog final : public NotchPanelEvents {
public:
    void hover(bool inside) override { add(inside ? "hover" : "leave"); }
    void hoverPreview(bool inside) override { add(inside ? "hover preview" : "leave preview"); }
    void clickInside() override { add("click inside"); }
    void clickElsewhere() override { add("click elsewhere"); }
    void detailLostFocus() override { add("lost focus"); }
    void editingChanged(bool editing) override { add(editing ? "editing" : "not editing"); }
    void resize(double height) override { add("resize " + std::to_string(int(height))); }
    void screensChanged() override { add("screens changed"); }
    void openApp() override { add("open app"); }
    void dashboard() override { add("dashboard"); }
    void previewTitle(const std::optional<std::string>& title) override
    {
        add("preview " + title.value_or("nothing"));
    }
    void dismissPreview() override { add("dismiss preview"); }
    void menuOpened(MenuIdentity menu) override { add("menu " + std::to_string(menu) + " opens"); }
    void menuClosed(MenuIdentity menu) override { add("menu " + std::to_string(menu) + " closes"); }

    std::vector<std::string> lines;

private:
    void add(std::string line) { lines.push_back(std::move(line)); }
};

} // namespace Kestry
