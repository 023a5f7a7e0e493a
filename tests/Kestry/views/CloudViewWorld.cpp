#include "CloudViewWorld.h"

namespace Kestry {

using namespace KestryCore;

CloudViewWorld::CloudViewWorld()
{
    world_.control(StoreWorld::sampleLedger());
    bridge_.emplace(
        CloudSyncBridge::World{world_.store(), *world_.controller, account_, calendar_});
}

void CloudViewWorld::connectLedger()
{
    world_.controller->enable();
    world_.scheduler.turn();
    world_.answerAll();
}

void CloudViewWorld::answerAll()
{
    for (int turn = 0; turn < 5; ++turn) { // what is answered may ask more, a turn later
        world_.scheduler.turn();
        world_.answerAll();
    }
}

void CloudViewWorld::failNext(const QString& words)
{
    world_.cloud.failures.emplace("status", CloudError(words.toStdString()));
}

void CloudViewWorld::bring(const SyncRecord& record)
{
    world_.store().applyRemoteSync({record}, {}, world_.state().changeToken);
}

void CloudViewWorld::bringConflict(const QString& here, const QString& there)
{
    world_.rename(here.toStdString());
    bring(CloudWorld::remote(CloudWorld::renamedAcme(there.toStdString())));
}

void CloudViewWorld::bringSession(const QString& device)
{
    ActiveSession session = *StoreWorld::runningLedger().active;
    session.title = "";
    SyncedSession elsewhere = Sample::synced(session);
    elsewhere.ownerDeviceID = "device-b";
    elsewhere.ownerName = device.toStdString();
    bring(Sample::record(elsewhere));
}

bool CloudViewWorld::isClientPending() const
{
    const auto& outbox = world_.state().outbox;
    return outbox.find(CloudWorld::clientKey(StoreWorld::acme)) != outbox.end();
}

} // namespace Kestry
