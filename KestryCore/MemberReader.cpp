#include "MemberReader.h"

#include "Base64.h"

namespace KestryCore {

void MemberReader::read(const JsonValue& value, Uuid& target)
{
    const std::optional<Uuid> uuid = Uuid::parse(value.text());
    if (!uuid) {
        value.fail("isn't a UUID");
    }
    target = *uuid;
}

void MemberReader::read(const JsonValue& value, CloudSyncEnvironment& target)
{
    const std::string_view name = value.text();
    for (const auto environment :
        {CloudSyncEnvironment::development, CloudSyncEnvironment::production}) {
        if (name == environmentName(environment)) {
            target = environment;
            return;
        }
    }
    value.fail("is an unknown environment");
}

void MemberReader::read(const JsonValue& value, std::vector<TimeSpan>& target)
{
    value.forEachElement([&](const JsonValue& element) { read(element, target.emplace_back()); });
}

std::string MemberReader::bytesOf(const JsonValue& value)
{
    std::optional<std::string> bytes = decodeBase64(value.text());
    if (!bytes) {
        value.fail("isn't base64");
    }
    return *std::move(bytes);
}

void MemberReader::bytesByKey(std::string_view key, SharedMap<std::string>& target)
{
    if (const std::optional<JsonValue> present = object_.optional(key)) {
        const JsonObject object(*present);
        object.forEachMember([&](std::string_view name, const JsonValue& member) {
            target[std::string(name)] = bytesOf(member);
        });
    }
}

} // namespace KestryCore
