#pragma once

#include <QObject>

#include "ApplicationWorld.h"
#include "CloudFixture.h"
#include "CloudSyncBridge.h"
#include "FakeSecrets.h"

namespace Kestry {

/// Replication for a view under test: a ledger that is connected or not, and a cloud that answers
/// when told.
class CloudViewWorld : public QObject {
    Q_OBJECT
    Q_PROPERTY(Kestry::CloudSyncBridge* bridge READ bridge CONSTANT)

public:
    CloudViewWorld();

    [[nodiscard]] CloudSyncBridge* bridge() { return &*bridge_; }

    /// Connects the ledger, which it is not at first.
    Q_INVOKABLE void connectLedger();
    /// Answers all that the cloud is asked; before that an exchange goes on.
    Q_INVOKABLE void answerAll();
    /// The next exchange fails in these words.
    Q_INVOKABLE void failNext(const QString& words);
    /// The cloud has another version of the first client, which was changed here too.
    Q_INVOKABLE void bringConflict(const QString& here, const QString& there);
    /// A session runs on another device.
    Q_INVOKABLE void bringSession(const QString& device);
    /// Whether a version of the first client waits to be delivered.
    Q_INVOKABLE [[nodiscard]] bool isClientPending() const;

private:
    void bring(const KestryCore::SyncRecord& record);

    KestryCore::CloudWorld world_;
    KestryCore::Observable<KestryCore::ZoneCalendar> calendar_{
        KestryCore::ZoneCalendar("UTC", "en_US")};
    MapDefaults defaults_;
    FakeSecrets secrets_;
    CloudAccount account_{{defaults_, secrets_, world_.scheduler,
        [this](const CloudCredentials& credentials, StoreUse /*use*/) {
            return world_.cloud.open(credentials.address);
        }}};
    std::optional<CloudSyncBridge> bridge_;
};

} // namespace Kestry
