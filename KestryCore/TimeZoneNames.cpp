#include "TimeZoneNames.h"

#include <unicode/strenum.h>
#include <unicode/timezone.h>

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "LedgerError.h"
#include "Spelling.h"

namespace KestryCore {

namespace {

/// Abbreviations that the Unicode library knows beside the names. They are ambiguous between
/// countries (its "BST" is not the British one), so none of them is accepted.
bool isForeignAbbreviation(std::string_view name)
{
    constexpr std::array<std::string_view, 26> abbreviations{"ACT", "AET", "AGT", "ART", "AST",
        "BET", "BST", "CAT", "CNT", "CST", "CTT", "EAT", "ECT", "IET", "IST", "JST", "MIT", "NET",
        "NST", "PLT", "PNT", "PRT", "PST", "SST", "VST", "Etc/Unknown"};
    return std::ranges::find(abbreviations, name) != abbreviations.end();
}

std::vector<std::string> builtInTimeZones()
{
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::StringEnumeration> names(
        icu::TimeZone::createTimeZoneIDEnumeration(UCAL_ZONE_TYPE_ANY, nullptr, nullptr, status));
    std::vector<std::string> result;
    while (U_SUCCESS(status)) {
        const icu::UnicodeString* name = names->snext(status);
        if (name == nullptr) {
            break;
        }
        std::string text;
        name->toUTF8String(text);
        if (!isForeignAbbreviation(text)) {
            result.push_back(std::move(text));
        }
    }
    return result;
}

/// A zone name near to a misspelt one, which may be that of the city alone.
std::optional<std::string> nearTimeZone(
    const std::string& name, const std::vector<std::string>& names)
{
    if (auto nearest = nearestWord(name, names)) {
        return nearest;
    }
    std::vector<std::string> cities;
    cities.reserve(names.size());
    for (const std::string& known : names) {
        cities.push_back(known.substr(known.find_last_of('/') + 1));
    }
    const auto city = nearestWord(name, cities);
    if (!city) {
        return std::nullopt;
    }
    return names[static_cast<std::size_t>(std::ranges::find(cities, *city) - cities.begin())];
}

} // namespace

void requireTimeZone(const std::string& name, const ZoneFiles& files)
{
    if (files.read(name)) {
        return;
    }
    std::vector<std::string> names = files.names();
    if (names.empty()) {
        names = builtInTimeZones();
    }
    if (std::ranges::find(names, name) != names.end()) {
        return;
    }
    const auto near = nearTimeZone(name, names);
    throw LedgerError("There is no time zone \"" + name + "\"."
        + (near ? " Did you mean \"" + *near + "\"?"
                : " Give one as in \"Europe/Berlin\" or \"UTC\"."));
}

} // namespace KestryCore
