// The bubble that shows a title too long for its field.

#include "NotchController.h"

namespace Kestry {
namespace {

constexpr double showDelaySeconds = 0.24;
constexpr double hideDelaySeconds = 0.12; // time enough to move from the title onto the bubble
constexpr double fadeSeconds = 0.12;

} // namespace

void NotchController::previewTitle(const std::optional<std::string>& title)
{
    if (!title) {
        dismissPreview();
        return;
    }
    previewTask_.cancel();
    previewDismissTask_.cancel();
    if (!expanded_ || editingTitle_) {
        return;
    }
    previewTask_ = scheduler_.after(showDelaySeconds, [this, title = *title] {
        if (expanded_ && !editingTitle_) {
            showPreview(title);
        }
    });
}

void NotchController::dismissPreview()
{
    previewTask_.cancel();
    previewDismissTask_.cancel();
    previewDismissTask_ = scheduler_.after(hideDelaySeconds, [this] {
        if (!previewIsVisible_ || !panels_.pointerIsOver(NotchPanel::titlePreview)) {
            hidePreview();
        }
    });
}

void NotchController::showPreview(const std::string& title)
{
    const double contentHeight = panels_.layOutPreview(title, titlePreviewWidth(visibleFrame_));
    panels_.place(
        NotchPanel::titlePreview, titlePreviewFrame(visibleFrame_, frames_.detail, contentHeight));
    const bool still = panels_.reducesMotion();
    panels_.fadePreviewIn(still ? 1.0 : 0.0, still ? 0.0 : fadeSeconds);
    panels_.show(NotchPanel::titlePreview);
    previewIsVisible_ = true;
}

void NotchController::hidePreview()
{
    previewTask_.cancel();
    previewDismissTask_.cancel();
    panels_.hide(NotchPanel::titlePreview);
    previewIsVisible_ = false;
}

void NotchController::hoverPreview(bool inside)
{
    if (inside) {
        previewDismissTask_.cancel();
        hover(true);
    } else {
        hidePreview();
        hover(false);
    }
}

} // namespace Kestry
