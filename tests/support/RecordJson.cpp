#include "RecordJson.h"

#include <algorithm>
#include <stdexcept>

#include "Base64.h"
#include "LogoImages.h"

namespace KestryCore {

namespace {

constexpr std::string_view uuid = R"("00000000-0000-0000-0000-000000000001")";

std::string quoted(const std::string& text)
{
    return '"' + text + '"';
}

JsonField optionalField(std::string_view key, std::string value, JsonForm form)
{
    return {key, std::move(value), form, Presence::optional};
}

std::vector<JsonField> clientFields()
{
    return {
        {"id", std::string(uuid), JsonForm::identifier},
        {"name", R"("Harbour Books")"},
        {"hourlyRateCents", "15000", JsonForm::integer},
        {"colorHex", R"("B7A5FF")"},
        optionalField("rateIsKnown", "true", JsonForm::flag),
        optionalField("logoData", quoted(encodeBase64(LogoImages::png())), JsonForm::bytes),
        optionalField("projectsEnabled", "true", JsonForm::flag),
    };
}

std::vector<JsonField> projectFields()
{
    return {
        {"id", std::string(uuid), JsonForm::identifier},
        {"clientID", std::string(uuid), JsonForm::identifier},
        {"name", R"("Catalogue")"},
        {"hourlyRateCents", "15000", JsonForm::integer},
        optionalField("rateIsKnown", "true", JsonForm::flag),
        optionalField("isClientDefault", "false", JsonForm::flag),
    };
}

std::vector<JsonField> spanFields()
{
    return {
        {"start", "785000000", JsonForm::number},
        {"end", "785003600", JsonForm::number},
    };
}

std::vector<JsonField> entryFields()
{
    return {
        {"id", std::string(uuid), JsonForm::identifier},
        {"projectID", std::string(uuid), JsonForm::identifier},
        {"title", R"("Proofs")"},
        {"hourlyRateCents", "15000", JsonForm::integer},
        {"spans", R"([{"start":785000000,"end":785003600}])", JsonForm::array},
        optionalField("isBillable", "true", JsonForm::flag),
        optionalField("rateIsKnown", "true", JsonForm::flag),
        optionalField("recordedDuration", "1800.5", JsonForm::number),
        optionalField("sourceID", R"("import-7")", JsonForm::text),
    };
}

std::vector<JsonField> sessionFields()
{
    return {
        {"id", std::string(uuid), JsonForm::identifier},
        {"projectID", std::string(uuid), JsonForm::identifier},
        {"title", R"("Index")"},
        {"hourlyRateCents", "15000", JsonForm::integer},
        {"spans", "[]", JsonForm::array},
        optionalField("runningSince", "785003600.25", JsonForm::number),
        {"checkpointAt", "785003615", JsonForm::number},
        optionalField("isBillable", "true", JsonForm::flag),
        optionalField("rateIsKnown", "true", JsonForm::flag),
        optionalField("sourceID", R"("import-8")", JsonForm::text),
    };
}

std::vector<JsonField> syncRecordFields()
{
    return {
        {"recordID", R"("Client:00000000-0000-0000-0000-000000000001")"},
        {"revision", std::string(uuid)},
        {"deviceID", R"("device-a")"},
        optionalField("payload", R"("e30=")", JsonForm::bytes),
        {"isDeleted", "false", JsonForm::flag},
    };
}

std::string objectOf(const std::vector<JsonField>& fields, std::string_view changedKey = {},
    std::string_view changedValue = {})
{
    std::string json;
    for (const JsonField& field : fields) {
        const std::string_view value = field.key == changedKey ? changedValue : field.value;
        if (!value.empty()) {
            json += json.empty() ? "\"" : ",\"";
            json.append(field.key).append("\":").append(value);
        }
    }
    return '{' + json + '}';
}

std::vector<JsonField> syncedSessionFields()
{
    return {
        {"ownerDeviceID", R"("device-b")"},
        {"ownerName", R"("attic")"},
        optionalField("active", objectOf(sessionFields()), JsonForm::object),
        optionalField("entry", objectOf(entryFields()), JsonForm::object),
    };
}

std::vector<JsonField> conflictFields()
{
    return {
        {"id", R"("Client:00000000-0000-0000-0000-000000000001")"},
        {"local", objectOf(syncRecordFields()), JsonForm::object},
        {"remote", objectOf(syncRecordFields()), JsonForm::object},
    };
}

std::vector<JsonField> stateFields()
{
    const std::string records = R"({"key":)" + objectOf(syncRecordFields()) + '}';
    return {
        {"deviceID", R"("device-a")"},
        {"deviceName", R"("studio")"},
        {"accountID", R"("account")"},
        optionalField("environment", R"("Production")", JsonForm::text),
        optionalField("enabled", "false", JsonForm::flag),
        optionalField("changeToken", R"("AAEC")", JsonForm::bytes),
        optionalField("systemFields", R"({"key":"AAEC"})", JsonForm::object),
        optionalField("baseRevisions", R"({"key":"text"})", JsonForm::object),
        optionalField("outbox", records, JsonForm::object),
        optionalField("conflicts", '[' + objectOf(conflictFields()) + ']', JsonForm::array),
        optionalField("remoteSessions", R"({"key":)" + objectOf(syncedSessionFields()) + '}',
            JsonForm::object),
        optionalField("staged", records, JsonForm::object),
        optionalField("tombstones", records, JsonForm::object),
    };
}

std::vector<JsonField> ledgerFields()
{
    return {
        {"clients", '[' + objectOf(clientFields()) + ']', JsonForm::array},
        {"projects", '[' + objectOf(projectFields()) + ']', JsonForm::array},
        {"entries", '[' + objectOf(entryFields()) + ']', JsonForm::array},
        optionalField("active", objectOf(sessionFields()), JsonForm::object),
        optionalField("replication", objectOf(stateFields()), JsonForm::object),
    };
}

std::vector<RecordJson> allForms()
{
    const std::string empty = R"({"clients":[],"projects":[],"entries":[])";
    const std::string state =
        empty + R"(,"replication":{"deviceID":"a","deviceName":"b","accountID":"c",)";
    const std::string session = objectOf(sessionFields());
    const std::size_t inSpans = session.find("[]") + 1;
    return {
        {"ledger", ledgerFields(), "", ""},
        {"client", clientFields(), R"({"projects":[],"entries":[],"clients":[)", "]}"},
        {"project", projectFields(), R"({"clients":[],"entries":[],"projects":[)", "]}"},
        {"entry", entryFields(), R"({"clients":[],"projects":[],"entries":[)", "]}"},
        {"span", spanFields(), empty + R"(,"active":)" + session.substr(0, inSpans),
            session.substr(inSpans) + '}'},
        {"session", sessionFields(), empty + R"(,"active":)", "}"},
        {"state", stateFields(), empty + R"(,"replication":)", "}"},
        {"synced record", syncRecordFields(), state + R"("staged":{"key":)", "}}}"},
        {"synced session", syncedSessionFields(), state + R"("remoteSessions":{"key":)", "}}}"},
        {"conflict", conflictFields(), state + R"("conflicts":[)", "]}}"},
    };
}

} // namespace

std::string RecordJson::object(std::string_view changedKey, std::string_view changedValue) const
{
    return objectOf(fields, changedKey, changedValue);
}

std::string RecordJson::document(std::string_view changedKey, std::string_view changedValue) const
{
    return before + object(changedKey, changedValue) + after;
}

const std::vector<RecordJson>& recordForms()
{
    static const std::vector<RecordJson> forms = allForms();
    return forms;
}

const RecordJson& recordForm(std::string_view kind)
{
    const auto found = std::ranges::find(recordForms(), kind, &RecordJson::kind);
    if (found == recordForms().end()) {
        throw std::logic_error("no such kind of record");
    }
    return *found;
}

std::vector<std::string_view> wrongValues(JsonForm form)
{
    switch (form) {
    case JsonForm::identifier:
        return {"7", "true", "[]", "{}", R"("")", R"("7")",
            R"("{00000000-0000-0000-0000-000000000001}")", R"("00000000000000000000000000000001")"};
    case JsonForm::text:
        return {"7", "1.5", "true", "[]", "{}", R"(["text"])"};
    case JsonForm::integer:
        return {R"("7")", "true", "[]", "{}", "15000.5", "9223372036854775808"};
    case JsonForm::number:
        return {R"("7")", "true", "[]", "{}", R"("2025-11-16T00:00:00Z")"};
    case JsonForm::flag:
        return {R"("true")", "0", "1", "[]", "{}"};
    case JsonForm::bytes:
        return {"7", "true", "[]", "{}", R"("Zg=")", R"("Zm9-")", "[137,80]"};
    case JsonForm::array:
        return {R"("7")", "7", "true", "{}", "[7]", "[null]", "[[]]"};
    case JsonForm::object:
        return {R"("7")", "7", "true", "[]", "[{}]"};
    }
    throw std::logic_error("an unknown form");
}

} // namespace KestryCore
