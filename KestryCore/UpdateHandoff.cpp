#include "UpdateHandoff.h"

#include <utility>

#include "MemberReader.h"
#include "MemberWriter.h"

namespace KestryCore {

template <class Visitor, RecordOf<UpdateHandoff> Subject>
void visitMembers(Visitor& visitor, Subject& handoff)
{
    visitor.required("token", handoff.token);
    visitor.optional("active", handoff.active);
}

std::string encodeUpdateHandoff(const UpdateHandoff& handoff)
{
    JsonWriter writer;
    MemberWriter(writer).write(handoff);
    return writer.take();
}

UpdateHandoff decodeUpdateHandoff(std::string bytes)
{
    return readRecord<UpdateHandoff>(std::move(bytes));
}

} // namespace KestryCore
