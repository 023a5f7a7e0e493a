#include "StatusItem.h"

#include <cmath>
#include <utility>

#include "StatusFrame.h"

namespace Kestry {
namespace {

constexpr double frameSeconds = 1.0 / 30.0;
constexpr double edgeSeconds = 0.001;

} // namespace

StatusItem::StatusItem(World world, std::function<Menu()> menu)
    : world_(std::move(world)), menu_(std::move(menu)), session_(world_.store.data()->active)
{
    subscriptions_.push_back(
        world_.state.menuBarEnabled().observe([this](bool enabled) { setEnabled(enabled); }));
    subscriptions_.push_back(world_.store.data().observe([this](const auto&) { followSession(); }));
    subscriptions_.push_back(
        world_.preferences.reducesMotion().observe([this](bool) { refresh(); }));
    setEnabled(*world_.state.menuBarEnabled());
}

void StatusItem::setEnabled(bool enabled)
{
    if (enabled == exists_) {
        return;
    }
    exists_ = enabled;
    frame_.reset();
    if (enabled) {
        world_.area.create(menu_());
    } else {
        world_.area.remove();
    }
    refresh();
}

void StatusItem::followSession()
{
    const auto& active = world_.store.data()->active;
    if (active != session_) {
        session_ = active;
        refresh();
    }
}

void StatusItem::refresh()
{
    if (!exists_) {
        animation_.cancel();
        return;
    }
    drawCurrentFrame();
    if (isAnimated()) {
        animate();
    } else {
        animation_.cancel();
    }
}

bool StatusItem::isAnimated() const
{
    return session_ && !session_->isPaused() && !*world_.preferences.reducesMotion()
        && world_.area.frameCount() > 0;
}

void StatusItem::animate()
{
    // Woken a little after each frame begins, never at its very edge, where rounding would skip
    // one frame and repeat the next.
    const double seconds = world_.store.elapsed(world_.now());
    const double sinceFrame = std::isfinite(seconds) ? std::fmod(seconds, frameSeconds) : 0.0;
    animation_ = world_.scheduler.after(frameSeconds - sinceFrame + edgeSeconds, [this] {
        animate();
        drawCurrentFrame();
    });
}

void StatusItem::drawCurrentFrame()
{
    if (world_.area.frameCount() == 0) {
        world_.area.showSymbol();
        return;
    }
    const bool stands = *world_.preferences.reducesMotion();
    const int frame = stands ? 0 : statusFrame(world_.store.elapsed(world_.now()));
    if (frame != frame_) {
        frame_ = frame;
        world_.area.showFrame(frame);
    }
}

} // namespace Kestry
