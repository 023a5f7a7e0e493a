#include <cstddef>
#include <cstdint>
#include <string>

#include "CloudError.h"
#include "CouchAnswers.h"
#include "CouchCursor.h"
#include "CouchDocument.h"
#include "Require.h"

// Any bytes that a record store answers either are refused in one sentence or are an answer, and a
// document that was read can be written and reads as the same one.

namespace {

using namespace Kestry;
using KestryCore::CloudError;
using KestryCore::require;

template <class Read>
void requireWords(Read read)
{
    constexpr std::size_t longestSentence = 400;
    try {
        read();
    } catch (const CloudError& refusal) {
        const std::string sentence = refusal.what();
        require(!sentence.empty() && sentence.size() <= longestSentence, "a refusal is a sentence");
    }
}

void requireSame(const CouchDocument& document)
{
    CouchDocument written = document;
    written.overruled.clear();
    written.history.clear();
    std::string json;
    if (written.revision.empty()) {
        return; // It would be sent as a new one.
    }
    try {
        json = couchJson(written);
    } catch (const CloudError&) {
        return; // It has a name or revision that is never sent.
    }
    const KestryCore::JsonDocument read(json);
    const CouchDocument again = couchDocument(read.root());
    require(again == written, "a document reads as it was written");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    requireWords([&] { (void)couchWelcome(bytes); });
    requireWords([&] { (void)couchUser(bytes); });
    requireWords([&] { (void)couchSaved(bytes); });
    requireWords([&] {
        for (const CouchRow& row : couchRows(bytes)) {
            require(!row.document || !row.isMissing, "what is missing has no body");
        }
    });
    requireWords([&] {
        for (const CouchDocument& document : couchVersions(bytes)) {
            requireSame(document);
        }
    });
    requireWords([&] {
        for (const CouchChange& change : couchFeed(bytes).changes) {
            if (change.document) {
                requireSame(*change.document);
            }
        }
    });
    (void)couchErrorWord(bytes);
    if (const auto cursor = CouchCursor::decode({bytes})) {
        require(CouchCursor::decode(cursor->encoded()) == cursor, "a cursor reads as written");
    }
    return 0;
}
