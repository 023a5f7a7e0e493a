#include "SessionDeletion.h"

namespace Kestry {

SessionDeletion::SessionDeletion(KestryCore::TimeStore& store, KestryCore::Scheduler& scheduler)
    : store_(store), ledger_(store.data().observe([this, &scheduler](const auto&) {
          // Whoever made the change has its answer first.
          if (isAsking()) {
              refresh_ = scheduler.after(0.0, [this] { followLedger(); });
          }
      }))
{
}

void SessionDeletion::set(std::optional<KestryCore::Uuid> session)
{
    if (session != session_) {
        session_ = session;
        emit askingChanged();
    }
}

void SessionDeletion::followLedger()
{
    if (session_ && !store_.data()->entries.find(*session_)) {
        cancel();
    }
}

void SessionDeletion::ask(const KestryCore::Uuid& session)
{
    if (store_.data()->entries.find(session)) {
        set(session);
    }
}

void SessionDeletion::cancel()
{
    set(std::nullopt);
}

void SessionDeletion::confirm()
{
    const auto session = session_;
    cancel();
    if (!session) {
        return;
    }
    try {
        store_.deleteEntry(*session);
    } catch (const std::exception& failure) {
        store_.reportFailure(KestryCore::failureText(failure));
    }
}

} // namespace Kestry
