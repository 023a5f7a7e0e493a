#pragma once

#include <cstddef>
#include <optional>
#include <variant>

#include "Calendar.h"
#include "SessionList.h"

namespace Kestry {

/// The few newest sessions of a month or of a client, with the session in progress above them.
class RecentSessions final : private SessionSelection {
public:
    static constexpr std::size_t most = 5;

    /// The sessions that have a span in a month. The session in progress is shown in the month that
    /// is not over, whenever it began.
    struct OfMonth {
        KestryCore::MonthInterval month;
        bool showsActive = false;
    };
    /// The sessions of a client, and the session in progress when it is of that client.
    struct OfClient {
        KestryCore::Uuid clientID;
    };
    using Criteria = std::variant<OfMonth, OfClient>;

    explicit RecentSessions(SessionList::World world) : list_(std::move(world), *this) { }

    [[nodiscard]] SessionList& list() { return list_; }

    /// Shows the sessions that match. Where the list is open already with this `revealID`, it keeps
    /// its place.
    void show(const Criteria& criteria, const QString& revealID);
    void close() { list_.close(); }

private:
    [[nodiscard]] SessionsModel::Entries sessions(const KestryCore::LedgerData& ledger) override;
    [[nodiscard]] Active active(
        const KestryCore::LedgerData& ledger, KestryCore::Date until) override;

    std::optional<Criteria> criteria_;
    SessionList list_;
};

} // namespace Kestry
