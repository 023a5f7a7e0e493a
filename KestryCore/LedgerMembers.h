#pragma once

#include <optional>
#include <string>
#include <utility>

#include "ClientLogo.h"
#include "Ledger.h"

namespace KestryCore {

/// Bytes are a base64 string in JSON; the wrapper tells them from text when a member is read.
struct Base64Bytes {
    std::string content;
};

// The members of each record, in the order in which they are written. `Object` is any reader of
// one JSON object with `read`, for a member that must be there, and `readOptional`, which leaves
// the target as it stands when the member is absent.

template <class Object>
void readMembers(Object& object, TimeSpan& span)
{
    object.read("start", span.start);
    object.read("end", span.end);
}

/// A logo that is no valid one fails with its `LedgerError`.
template <class Object>
void readMembers(Object& object, Client& client)
{
    object.read("id", client.id);
    object.read("name", client.name);
    object.read("hourlyRateCents", client.hourlyRateCents);
    object.read("colorHex", client.colorHex);
    object.readOptional("rateIsKnown", client.rateIsKnown);
    std::optional<Base64Bytes> logo;
    object.readOptional("logoData", logo);
    if (logo) {
        validateClientLogo(logo->content);
        client.logoData = std::move(logo->content);
    }
    object.readOptional("projectsEnabled", client.projectsEnabled);
}

template <class Object>
void readMembers(Object& object, Project& project)
{
    object.read("id", project.id);
    object.read("clientID", project.clientID);
    object.read("name", project.name);
    object.read("hourlyRateCents", project.hourlyRateCents);
    object.readOptional("rateIsKnown", project.rateIsKnown);
    object.readOptional("isClientDefault", project.isClientDefault);
}

template <class Object>
void readMembers(Object& object, TimeEntry& entry)
{
    object.read("id", entry.id);
    object.read("projectID", entry.projectID);
    object.read("title", entry.title);
    object.read("hourlyRateCents", entry.hourlyRateCents);
    object.read("spans", entry.spans);
    object.readOptional("isBillable", entry.isBillable);
    object.readOptional("rateIsKnown", entry.rateIsKnown);
    object.readOptional("recordedDuration", entry.recordedDuration);
    object.readOptional("sourceID", entry.sourceID);
}

template <class Object>
void readMembers(Object& object, ActiveSession& session)
{
    object.read("id", session.id);
    object.read("projectID", session.projectID);
    object.read("title", session.title);
    object.read("hourlyRateCents", session.hourlyRateCents);
    object.read("spans", session.spans);
    object.readOptional("runningSince", session.runningSince);
    object.read("checkpointAt", session.checkpointAt);
    object.readOptional("isBillable", session.isBillable);
    object.readOptional("rateIsKnown", session.rateIsKnown);
    object.readOptional("sourceID", session.sourceID);
}

} // namespace KestryCore
