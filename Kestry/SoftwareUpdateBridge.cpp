#include "SoftwareUpdateBridge.h"

#include <QUrl>

#include <utility>

namespace Kestry {

SoftwareUpdateBridge::SoftwareUpdateBridge(World world) : world_(std::move(world))
{
    const auto follow = [this](const auto& observable) {
        subscriptions_.push_back(observable.observe([this](const auto&) { refresh(); }));
    };
    follow(fields().isConfigured);
    follow(fields().canCheck);
    follow(fields().automaticChecks);
    follow(fields().status);
    follow(fields().errorMessage);
    follow(fields().stage);
    refresh();
}

void SoftwareUpdateBridge::refresh()
{
    text_ =
        UpdateSheetText::of(*fields().stage, world_.version, *fields().errorMessage, world_.locale);
    emit changed();
    emit sheetChanged();
}

void SoftwareUpdateBridge::toggleAutomatic()
{
    world_.updater.setAutomaticChecks(!isAutomatic());
}

void SoftwareUpdateBridge::check()
{
    world_.updater.checkForUpdates();
}

void SoftwareUpdateBridge::install()
{
    if (!text_.install.isEmpty()) {
        world_.updater.install();
    }
}

void SoftwareUpdateBridge::dismiss()
{
    if (isOpen() && canDismiss()) {
        world_.updater.dismiss();
    }
}

// The feed comes from outside, and a link can also start programs.
QString SoftwareUpdateBridge::releaseNotes() const
{
    const QUrl link(QString::fromStdString(fields().stage->update.releaseNotes), QUrl::StrictMode);
    const bool isPage = link.isValid() && link.scheme() == "https" && !link.host().isEmpty();
    return isPage ? link.toString(QUrl::FullyEncoded) : QString();
}

bool SoftwareUpdateBridge::hasReleaseNotes() const
{
    return !text_.install.isEmpty() && !releaseNotes().isEmpty();
}

void SoftwareUpdateBridge::openReleaseNotes()
{
    const QString link = releaseNotes();
    if (hasReleaseNotes() && !world_.openLink(link)) {
        world_.fail(
            "No web browser could be opened. The release notes are at:\n" + link.toStdString());
    }
}

} // namespace Kestry
