#include "NotchSurface.h"

namespace Kestry {

void NotchSurface::setShown(bool shown, RevealMotion motion)
{
    shown_ = shown;
    switch (motion) {
    case RevealMotion::none:
        motion_ = None;
        break;
    case RevealMotion::unfold:
        motion_ = Unfold;
        break;
    case RevealMotion::fold:
        motion_ = Fold;
        break;
    }
    emit shownChanged();
}

void NotchSurface::setHovered(bool hovered)
{
    if (hovered != hovered_) {
        hovered_ = hovered;
        emit hoveredChanged();
    }
}

void NotchSurface::setReducesMotion(bool reduces)
{
    if (reduces != reducesMotion_) {
        reducesMotion_ = reduces;
        emit reducesMotionChanged();
    }
}

void NotchSurface::setPreviewedTitle(const QString& title)
{
    previewedTitle_ = title;
    emit previewedTitleChanged();
}

void NotchSurface::rebuild(const NotchMeasures& measures)
{
    measures_ = measures;
    emit measuresChanged();
    emit contentRebuilt();
}

void NotchSurface::openApp()
{
    if (events_) {
        events_->openApp();
    }
}

void NotchSurface::editingChanged(bool editing)
{
    if (events_) {
        events_->editingChanged(editing);
    }
    if (!editing) {
        emit editingEnded();
    }
}

void NotchSurface::resize(double height)
{
    if (events_) {
        events_->resize(height);
    }
}

void NotchSurface::previewTitle(const QString& title)
{
    if (events_) {
        events_->previewTitle(title.isEmpty() ? std::nullopt : std::optional(title.toStdString()));
    }
}

void NotchSurface::dismissPreview()
{
    if (events_) {
        events_->dismissPreview();
    }
}

void NotchSurface::dashboard()
{
    if (events_) {
        events_->dashboard();
    }
}

} // namespace Kestry
