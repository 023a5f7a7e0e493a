#include "UpdateHandoff.h"

#include "LedgerCoding.h"

namespace KestryCore {

std::string encodeUpdateHandoff(const UpdateHandoff& handoff)
{
    JsonWriter writer;
    writer.beginObject();
    writer.member("token", handoff.token);
    if (handoff.active) {
        writer.key("active");
        encode(writer, *handoff.active);
    }
    writer.endObject();
    return writer.take();
}

UpdateHandoff decodeUpdateHandoff(std::string bytes)
{
    const JsonDocument document(std::move(bytes));
    JsonObject object(document.root());
    UpdateHandoff handoff;
    handoff.token = object.required<Uuid>("token");
    handoff.active = object.optional<ActiveSession>("active");
    return handoff;
}

} // namespace KestryCore
