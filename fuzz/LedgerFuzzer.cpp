#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "LedgerCoding.h"
#include "LedgerValidation.h"
#include "Verdict.h"

// Any bytes under the name of a ledger either are refused in words or are a ledger. One that was
// read has these properties:
//
// - Written and read again it is the same ledger, judged the same, and written the same.
// - What a block of records remembers of having been judged changes no later judgement.
// - A change of a sound ledger is judged as the changed ledger would be on its own.

namespace {

using namespace KestryCore;

std::optional<LedgerData> read(const std::string& bytes)
{
    std::optional<LedgerData> ledger;
    (void)verdictOn([&] { ledger = decodeLedger(bytes); });
    return ledger;
}

LedgerData readBack(const LedgerData& ledger)
{
    return decodeLedger(encodeLedger(ledger));
}

void requireSameJudgement(const LedgerData& sound, const LedgerData& changed)
{
    const LedgerData alone = readBack(changed);
    require(
        verdictOn([&] { validateChange(sound, changed); }) == verdictOn([&] { validate(alone); }),
        "a change is judged as the ledger it leads to");
}

void requireChangesJudgedAlike(const LedgerData& sound)
{
    if (!sound.clients.empty()) {
        LedgerData changed = sound;
        changed.clients.remove(sound.clients.front().id);
        requireSameJudgement(sound, changed);
    }
    if (!sound.projects.empty()) {
        LedgerData changed = sound;
        changed.projects.append(sound.projects.back());
        requireSameJudgement(sound, changed);
    }
    if (!sound.entries.empty()) {
        LedgerData changed = sound;
        changed.entries.modify(
            sound.entries.back().id, [](TimeEntry& entry) { entry.spans.clear(); });
        requireSameJudgement(sound, changed);
        changed = sound;
        changed.active = ActiveSession{};
        changed.active->id = sound.entries.front().id;
        changed.active->projectID = sound.entries.front().projectID;
        requireSameJudgement(sound, changed);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const std::optional<LedgerData> ledger = read(bytes);
    if (!ledger) {
        return 0;
    }
    const std::string written = encodeLedger(*ledger);
    const LedgerData again = decodeLedger(written);
    require(again == *ledger, "what was written reads as the same ledger");
    require(encodeLedger(again) == written, "the same ledger is written in the same bytes");

    const std::string verdict = verdictOn([&] { validate(*ledger); });
    require(verdictOn([&] { validate(*ledger); }) == verdict, "a second judgement is the first");
    require(verdictOn([&] { validate(again); }) == verdict, "equal ledgers are judged alike");
    if (verdict.empty()) {
        requireChangesJudgedAlike(*ledger);
    }
    return 0;
}
