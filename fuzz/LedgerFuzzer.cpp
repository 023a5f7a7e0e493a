#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "CanonicalLedger.h"
#include "LedgerCoding.h"
#include "LedgerDocument.h"
#include "LedgerValidation.h"
#include "Verdict.h"

// Any bytes under the name of a ledger either are refused in words or are a ledger. One that was
// read has these properties:
//
// - Where the reader of the written form takes the text, the reader of any JSON takes it too, and
//   both read the same ledger, judged the same, and written the same.
// - It is written in the form that the reader of the written form takes.
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

std::optional<LedgerData> readCanonically(const std::string& bytes)
{
    const std::size_t end = replicationOffset(bytes);
    return readCanonicalLedger(std::make_shared<const std::string>(bytes.substr(0, end)),
        std::string_view(bytes).substr(end));
}

/// What the two readers make of one text.
void requireReadersAgree(const std::string& bytes)
{
    const std::optional<LedgerData> canonical = readCanonically(bytes);
    if (!canonical) {
        return;
    }
    // A blank before the document is good JSON that is never written.
    const std::optional<LedgerData> plain = read(" " + bytes);
    require(plain.has_value(), "what the one reader takes, the other takes too");
    require(*canonical == *plain, "both readers read the same ledger");
    require(encodeLedger(*canonical) == encodeLedger(*plain), "both lead to the same bytes");
    require(verdictOn([&] { validate(*canonical); }) == verdictOn([&] { validate(*plain); }),
        "what both readers read is judged alike");
}

/// One byte away from the written form is where the readers are most likely to differ.
void requireReadersAgreeNear(std::string written)
{
    constexpr std::string_view letters = "0159.-eE\"\\/u{}[],: atfnx\x01\xff";
    const std::size_t chance = std::hash<std::string>{}(written);
    const char letter = letters[chance % letters.size()];
    const std::size_t position = chance / letters.size() % written.size();
    std::string longer = written;
    longer.insert(position, 1, letter);
    requireReadersAgree(longer);
    written[position] = letter;
    requireReadersAgree(written);
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
    requireReadersAgree(bytes);
    const std::optional<LedgerData> ledger = read(bytes);
    if (!ledger) {
        return 0;
    }
    const std::string written = encodeLedger(*ledger);
    const LedgerData again = decodeLedger(written);
    require(again == *ledger, "what was written reads as the same ledger");
    require(encodeLedger(again) == written, "the same ledger is written in the same bytes");
    require(readCanonically(written).has_value(), "what was written has the written form");
    requireReadersAgree(written);
    requireReadersAgreeNear(written);

    const std::string verdict = verdictOn([&] { validate(*ledger); });
    require(verdictOn([&] { validate(*ledger); }) == verdict, "a second judgement is the first");
    require(verdictOn([&] { validate(again); }) == verdict, "equal ledgers are judged alike");
    if (verdict.empty()) {
        requireChangesJudgedAlike(*ledger);
    }
    return 0;
}
