#include "AppDelegate.h"

namespace Kestry {
namespace {

constexpr double checkpointSeconds = 15.0;

} // namespace

AppDelegate::AppDelegate(Platform platform, KestryCore::StoreOptions options)
    : platform_(platform), state_(platform.defaults), store_(platform.store, std::move(options))
{
}

void AppDelegate::didFinishLaunching(NotchPanels& panels)
{
    notch_ = std::make_unique<NotchController>(
        panels, platform_.scheduler, store_, [this] { state_.openDashboard(); });
    installNotchActions();
    if (*state_.notchEnabled()) {
        notch_->makeVisible();
    }
    startCheckpointTimer();
}

void AppDelegate::installNotchActions()
{
    const auto toggle = [this] {
        state_.setNotchEnabled(true);
        notch_->toggleOpen();
    };
    const auto setVisible = [this](bool visible) {
        if (visible) {
            notch_->makeVisible();
        } else {
            notch_->hide();
        }
    };
    state_.installNotch(toggle, setVisible);
}

void AppDelegate::startCheckpointTimer()
{
    checkpoint_ = platform_.scheduler.after(checkpointSeconds, [this] {
        startCheckpointTimer();
        checkpoint();
    });
}

void AppDelegate::checkpoint()
{
    try {
        store_.checkpoint(now());
    } catch (const std::exception& failure) {
        store_.reportFailure(failure.what()); // the next tick tries again
    }
}

TerminateReply AppDelegate::shouldTerminate()
{
    const auto& active = store_.data()->active;
    if (!active || active->isPaused()) {
        return TerminateReply::terminateNow;
    }
    try {
        store_.pause(now());
        return TerminateReply::terminateNow;
    } catch (const std::exception&) {
        state_.openDashboard();
        return TerminateReply::cancel;
    }
}

void AppDelegate::willTerminate()
{
    checkpoint_.cancel();
    notch_.reset();
}

} // namespace Kestry
