#include "CommandContext.h"

#include "Instants.h"
#include "JsonWriter.h"
#include "LedgerError.h"
#include "PlainText.h"
#include "UsageError.h"
#include "UserLocale.h"

namespace Kestry {

using KestryCore::ZoneCalendar;

namespace {

ZoneCalendar calendarOf(const CommonOptions& options, const CommandOrigin& origin)
{
    const std::string locale = options.locale ? KestryCore::requireLocale(*options.locale)
                                              : KestryCore::userLocale(origin.environment);
    return options.timeZone ? ZoneCalendar(*options.timeZone, locale) : origin.calendar(locale);
}

} // namespace

CommandContext commandContext(const CommonOptions& options, const CommandOrigin& origin,
    const KestryCore::StorePlatform& platform)
{
    try {
        const ZoneCalendar calendar = calendarOf(options, origin);
        const KestryCore::Date now = platform.now();
        const bool isColored = origin.writesToTerminal && !origin.environment("NO_COLOR")
            && origin.environment("TERM") != "dumb";
        return {platform.files, calendar,
            options.at ? readInstant(*options.at, now, calendar) : now, now,
            origin.writesToTerminal, isColored, options.json, platform.newUuid,
            origin.dataDirectory()};
    } catch (const KestryCore::LedgerError& failure) {
        throw UsageError(failure.what());
    }
}

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
