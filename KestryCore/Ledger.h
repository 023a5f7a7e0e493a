#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Date.h"
#include "RecordList.h"
#include "Shared.h"
#include "Uuid.h"

namespace KestryCore {

struct LedgerSyncState;

/// Whole US cents.
using Cents = std::int64_t;

/// One paying customer.
struct Client {
    Uuid id;
    std::string name;
    Cents hourlyRateCents = 0;
    std::string colorHex;    ///< Six hexadecimal digits without a number sign.
    bool rateIsKnown = true; ///< False: time at this rate earns nothing and counts as unpriced.
    std::optional<std::string> logoData; ///< The bytes of a PNG image.
    bool projectsEnabled = true;         ///< False: all sessions go to one hidden default project.

    friend bool operator==(const Client&, const Client&) = default;
};

/// A piece of work for one client.
struct Project {
    Uuid id;
    Uuid clientID;
    std::string name;
    Cents hourlyRateCents = 0;
    bool rateIsKnown = true;
    bool isClientDefault = false; ///< The hidden project of a client without projects.

    friend bool operator==(const Project&, const Project&) = default;
};

/// One closed interval of work; `end` may equal `start`.
struct TimeSpan {
    Date start;
    Date end;

    /// Seconds.
    [[nodiscard]] double duration() const { return end - start; }

    friend bool operator==(const TimeSpan&, const TimeSpan&) = default;
};

/// What time comes to at an hourly rate: fractional cents, unrounded. The one formula for money.
[[nodiscard]] double centsFor(double seconds, Cents hourlyRateCents);

/// The seconds in the spans, added up in their order.
[[nodiscard]] double totalDuration(const std::vector<TimeSpan>& spans);

/// One saved session.
struct TimeEntry {
    Uuid id; ///< That of the active session from which it was saved.
    Uuid projectID;
    std::string title;
    Cents hourlyRateCents = 0;   ///< Frozen when the session began.
    std::vector<TimeSpan> spans; ///< In time order; never empty once saved.
    bool isBillable = true;
    bool rateIsKnown = true;
    std::optional<double> recordedDuration; ///< Seconds that replace the sum of `spans`.
    std::optional<std::string> sourceID;    ///< Identifier in the application it was imported from.

    /// The length that counts everywhere, in seconds: `recordedDuration`, else the sum of `spans`.
    [[nodiscard]] double duration() const;
    /// Fractional cents, unrounded; 0 unless billable at a known rate.
    [[nodiscard]] double earnedCents() const;
    /// The start of the first span; `distantPast` without spans.
    [[nodiscard]] Date startedAt() const;
    /// The end of the last span; `distantPast` without spans.
    [[nodiscard]] Date endedAt() const;

    friend bool operator==(const TimeEntry&, const TimeEntry&) = default;
};

/// The session in progress, running or paused.
struct ActiveSession {
    Uuid id;
    Uuid projectID;
    std::string title;
    Cents hourlyRateCents = 0;
    std::vector<TimeSpan> spans;      ///< The closed intervals; empty until the first pause.
    std::optional<Date> runningSince; ///< Start of the open interval; absent while paused.
    Date checkpointAt; ///< The latest instant up to which the session is known to have run.
    bool isBillable = true;
    bool rateIsKnown = true;
    std::optional<std::string> sourceID;

    [[nodiscard]] bool isPaused() const { return !runningSince.has_value(); }
    /// Seconds worked until a date: the closed intervals and the open one, which is never negative.
    [[nodiscard]] double elapsed(Date date) const;
    /// What `elapsedSeconds` have earned: fractional cents, 0 unless billable at a known rate.
    [[nodiscard]] double earnedCents(double elapsedSeconds) const;

    friend bool operator==(const ActiveSession&, const ActiveSession&) = default;
};

/// The whole ledger, one document. A copy is complete, and cheap.
struct LedgerData {
    RecordList<Client> clients;
    RecordList<Project> projects;
    RecordList<TimeEntry> entries; ///< In the order of saving.
    std::optional<ActiveSession> active;
    Shared<LedgerSyncState> replication; ///< Empty until replication was connected once.

    friend bool operator==(const LedgerData& left, const LedgerData& right);
};

} // namespace KestryCore
