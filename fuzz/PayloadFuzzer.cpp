#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "LedgerCoding.h"
#include "SyncRecords.h"
#include "Verdict.h"

// Any bytes under the name of a payload either are refused in words or are a client, a project or
// a session of the other devices. One that was read is written in bytes that read as the same, are
// written the same again, and make a record that is judged as the one with the first bytes was.

namespace {

using namespace KestryCore;

std::string verdictOnRecord(SyncRecordKind kind, const Uuid& id, const std::string& payload)
{
    const SyncRecord record{recordID(kind, id), Uuid{}.text(), "device", payload, false};
    return verdictOn([&] { validateRecord(record); });
}

Uuid identifierOf(const Client& client)
{
    return client.id;
}

Uuid identifierOf(const Project& project)
{
    return project.id;
}

Uuid identifierOf(const SyncedSession& session)
{
    if (session.active) {
        return session.active->id;
    }
    return session.entry ? session.entry->id : Uuid{};
}

template <class Thing>
void tryAs(SyncRecordKind kind, const std::string& bytes)
{
    std::optional<Thing> thing;
    const std::string refusal = verdictOn([&] { thing = decodeRecord<Thing>(bytes); });
    if (!thing) {
        require(verdictOnRecord(kind, Uuid{}, bytes) == refusal, "the record is refused alike");
        return;
    }
    const std::string written = canonicalJson(*thing);
    const Thing again = decodeRecord<Thing>(written);
    require(again == *thing, "what was written reads as the same");
    require(canonicalJson(again) == written, "it is written in the same bytes");
    const Uuid id = identifierOf(*thing);
    require(verdictOnRecord(kind, id, bytes) == verdictOnRecord(kind, id, written),
        "equal payloads are judged alike");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    tryAs<Client>(SyncRecordKind::client, bytes);
    tryAs<Project>(SyncRecordKind::project, bytes);
    tryAs<SyncedSession>(SyncRecordKind::session, bytes);
    return 0;
}
