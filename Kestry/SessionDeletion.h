#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <optional>

#include "Scheduler.h"
#include "TimeStore.h"

namespace Kestry {

/// The question that comes before a saved session is deleted, for all lists of sessions. It goes
/// away with a session that is deleted elsewhere.
class SessionDeletion final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application makes the bridges.")
    Q_PROPERTY(bool isAsking READ isAsking NOTIFY askingChanged)

public:
    /// Both must outlive the question.
    SessionDeletion(KestryCore::TimeStore& store, KestryCore::Scheduler& scheduler);

    [[nodiscard]] bool isAsking() const { return session_.has_value(); }

    /// Asks about a session; does nothing for one that is gone. Nothing is deleted yet.
    void ask(const KestryCore::Uuid& session);
    /// Deletes the session that was asked about. A failure is published as the store's
    /// `errorMessage`, and nothing has changed then.
    Q_INVOKABLE void confirm();
    Q_INVOKABLE void cancel();

signals:
    void askingChanged();

private:
    void set(std::optional<KestryCore::Uuid> session);
    void followLedger();

    KestryCore::TimeStore& store_;
    std::optional<KestryCore::Uuid> session_;
    KestryCore::Timer refresh_;
    KestryCore::Subscription ledger_;
};

} // namespace Kestry
