#include "ZoneTransitions.h"

#include <unicode/basictz.h>
#include <unicode/strenum.h>

#include <memory>
#include <stdexcept>

namespace KestryCore {

namespace {

constexpr double thousand = 1000.0;

double offset(const icu::TimeZoneRule* rule)
{
    return (rule->getRawOffset() + rule->getDSTSavings()) / thousand;
}

std::vector<ZoneTransitions::Transition> transitionsOf(
    const icu::BasicTimeZone& zone, Date from, Date to)
{
    std::vector<ZoneTransitions::Transition> result;
    icu::TimeZoneTransition next;
    UDate base = (from.seconds + referenceDateSecondsSince1970) * thousand;
    while (zone.getNextTransition(base, false, next)) {
        base = next.getTime();
        const Date date{base / thousand - referenceDateSecondsSince1970};
        if (!(date < to)) {
            break;
        }
        result.push_back({date, offset(next.getFrom()), offset(next.getTo())});
    }
    return result;
}

} // namespace

std::vector<ZoneTransitions> allZoneTransitions(Date from, Date to)
{
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::StringEnumeration> names(icu::TimeZone::createTimeZoneIDEnumeration(
        UCAL_ZONE_TYPE_CANONICAL, nullptr, nullptr, status));
    std::vector<ZoneTransitions> zones;
    while (const icu::UnicodeString* name = U_SUCCESS(status) ? names->snext(status) : nullptr) {
        const std::unique_ptr<icu::TimeZone> zone(icu::TimeZone::createTimeZone(*name));
        std::string text;
        name->toUTF8String(text);
        if (text != "Etc/Unknown") {
            zones.push_back(
                {text, transitionsOf(dynamic_cast<const icu::BasicTimeZone&>(*zone), from, to)});
        }
    }
    if (U_FAILURE(status)) {
        throw std::runtime_error("The zone database cannot be read.");
    }
    return zones;
}

} // namespace KestryCore
