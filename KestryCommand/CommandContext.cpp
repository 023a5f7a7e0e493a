#include "CommandContext.h"

#include "JsonWriter.h"
#include "PlainText.h"

namespace Kestry {

CommandAnswer changeAnswer(const std::string& sentence, const std::optional<KestryCore::Uuid>& id)
{
    KestryCore::JsonWriter json;
    json.beginObject();
    json.member("ok", true);
    json.key("id");
    if (id) {
        json.value(*id);
    } else {
        json.null();
    }
    json.endObject();
    return {printable(sentence) + "\n", json.take()};
}

} // namespace Kestry
