#include "SettingsBridge.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <utility>

namespace Kestry {

SettingsBridge::SettingsBridge(World world) : world_(std::move(world))
{
    const auto follow = [this](const auto& observable) {
        subscriptions_.push_back(observable.observe([this](const auto&) { refresh(); }));
    };
    follow(world_.state.notchEnabled());
    follow(world_.state.menuBarEnabled());
    follow(world_.store.data());
    follow(world_.store.errorMessage());
    follow(world_.store.recoveryAvailable());
    refresh();
}

void SettingsBridge::refresh()
{
    canRestore_ = *world_.store.recoveryAvailable();
    isAskingToRestore_ = isAskingToRestore_ && canRestore_;
    emit changed();
}

QString SettingsBridge::exportDetail() const
{
    return QString("%1 saved sessions · CSV").arg(world_.store.data()->entries.size());
}

QString SettingsBridge::versionLine() const
{
    const std::string version = world_.version();
    return "Kestry · " + (version.empty() ? "Development" : QString::fromStdString(version));
}

void SettingsBridge::toggleNotch()
{
    const bool isWanted = !notchEnabled();
    world_.state.setNotchEnabled(isWanted);
    world_.state.setNotchVisible(isWanted);
}

void SettingsBridge::toggleMenuBar()
{
    world_.state.setMenuBarEnabled(!menuBarEnabled());
}

void SettingsBridge::openFolder()
{
    const QString name = QFile::decodeName(QByteArray::fromStdString(world_.store.directory()));
    const QString folder = QDir(name).absolutePath();
    if (!QFileInfo(folder).isDir()) {
        world_.store.reportFailure(
            "Your data folder will be created when you save your first client.");
        return;
    }
    world_.folders.open(folder, [this, folder](bool isOpened) {
        if (!isOpened) {
            world_.store.reportFailure(
                "No file browser could be opened. Your data folder is:\n" + folder.toStdString());
        }
    });
}

void SettingsBridge::askToRestore()
{
    setAskingToRestore(canRestore_);
}

void SettingsBridge::cancelRestore()
{
    setAskingToRestore(false);
}

void SettingsBridge::confirmRestore()
{
    if (!isAskingToRestore_) {
        return;
    }
    setAskingToRestore(false);
    try {
        world_.store.restoreBackup();
    } catch (const std::exception&) {
        return; // The store has published why.
    }
}

void SettingsBridge::setShowingKeys(bool isShowing)
{
    isShowingKeys_ = isShowing;
    emit changed();
}

void SettingsBridge::setAskingToRestore(bool isAsking)
{
    isAskingToRestore_ = isAsking;
    emit changed();
}

} // namespace Kestry
