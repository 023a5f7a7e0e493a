#include "UpdateViewWorld.h"

namespace Kestry {

UpdateViewWorld::UpdateViewWorld(AppState& state) : state_(state) { }

QStringList UpdateViewWorld::told() const
{
    QStringList told;
    if (witness_.framework != nullptr) {
        for (const std::string& each : witness_.framework->told) {
            told << QString::fromStdString(each);
        }
    }
    return told;
}

void UpdateViewWorld::enable()
{
    updater_.configure();
    witness_.framework->published.canCheckForUpdates.assign(true);
}

void UpdateViewWorld::show(UpdateStage::Step step)
{
    publish({.step = step, .update = update_});
}

void UpdateViewWorld::download(double part)
{
    const auto received = static_cast<std::int64_t>(part * static_cast<double>(update_.bytes));
    publish({.step = UpdateStage::Step::downloading, .update = update_, .received = received});
}

void UpdateViewWorld::fail(const QString& words)
{
    publish({.step = UpdateStage::Step::failed, .update = update_, .failure = words.toStdString()});
}

void UpdateViewWorld::announce(const QString& version)
{
    update_.version = version.toStdString();
    update_.releaseNotes.clear();
}

void UpdateViewWorld::publish(const UpdateStage& stage)
{
    witness_.framework->published.stage.assign(stage);
}

} // namespace Kestry
