#include "UserLocale.h"

#include <unicode/locid.h>

#include <optional>
#include <string_view>
#include <vector>

#include "LedgerError.h"
#include "Spelling.h"
#include "Text.h"

namespace KestryCore {

namespace {

constexpr const char* fallbackLocale = "en_US";

bool isListed(const char* name, const char* const* list)
{
    for (; *list != nullptr; ++list) {
        if (std::string_view(name) == *list) {
            return true;
        }
    }
    return false;
}

/// Whether there is text in this language to be had at all.
bool isKnownLanguage(const char* language)
{
    std::int32_t count = 0;
    const icu::Locale* available = icu::Locale::getAvailableLocales(count);
    for (std::int32_t index = 0; index < count; ++index) {
        if (std::string_view(language) == available[index].getLanguage()) {
            return true;
        }
    }
    return false;
}

/// Whether this is the code of a country, or the number of a part of the world, as in "es_419".
bool isKnownRegion(const char* region)
{
    const std::string_view code(region);
    const bool isNumber = code.size() == 3 && code.find_first_not_of("0123456789") == code.npos;
    return isNumber || isListed(region, icu::Locale::getISOCountries());
}

std::optional<std::string> knownLocale(const std::string& name)
{
    constexpr std::size_t longestName = 128;
    if (name.size() > longestName) {
        return std::nullopt;
    }
    const std::string bare = name.substr(0, name.find_first_of(".@"));
    if (bare == "C" || bare == "POSIX") {
        return fallbackLocale;
    }
    const icu::Locale locale = icu::Locale::createCanonical(bare.c_str());
    const std::string_view country = locale.getCountry();
    const bool isKnown = !bare.empty() && !locale.isBogus() && isKnownLanguage(locale.getLanguage())
        && (country.empty() || isKnownRegion(locale.getCountry()));
    return isKnown ? std::optional<std::string>(locale.getName()) : std::nullopt;
}

/// A locale that was probably meant by a name that is none: one spelt nearly so, or the language
/// of an unknown country, or the language called by its English name.
std::optional<std::string> nearLocale(const std::string& name)
{
    const icu::Locale asked = icu::Locale::createCanonical(name.c_str());
    const bool namesCountry = std::string_view(asked.getCountry()).size() == 2;
    if (!asked.isBogus() && namesCountry && isKnownLanguage(asked.getLanguage())) {
        return asked.getLanguage();
    }
    std::int32_t count = 0;
    const icu::Locale* available = icu::Locale::getAvailableLocales(count);
    std::vector<std::string> names;
    for (std::int32_t index = 0; index < count; ++index) {
        icu::UnicodeString language;
        std::string english;
        available[index].getDisplayLanguage(icu::Locale::getEnglish(), language);
        if (equalsIgnoringCase(language.toUTF8String(english), name)) {
            return available[index].getLanguage();
        }
        names.emplace_back(available[index].getName());
    }
    // With one wrong letter, a word of two letters does not show what was meant.
    constexpr std::size_t fewestLetters = 4;
    return name.size() < fewestLetters ? std::nullopt : nearestWord(name, names);
}

} // namespace

std::string userLocale(const EnvironmentLookup& environment)
{
    for (const char* variable : {"LC_ALL", "LC_MONETARY", "LANG"}) {
        const auto name = environment(variable);
        if (name && !name->empty()) {
            return knownLocale(*name).value_or(fallbackLocale);
        }
    }
    return fallbackLocale;
}

std::string requireLocale(const std::string& name)
{
    if (auto locale = knownLocale(name)) {
        return *locale;
    }
    // Nothing is near a name that is longer than all there are.
    constexpr std::size_t longestNear = 64;
    const auto near = name.size() <= longestNear ? nearLocale(name) : std::nullopt;
    throw LedgerError("There is no locale \"" + name + "\"."
        + (near ? " Did you mean \"" + *near + "\"?" : " Give one as in \"de_DE\" or \"en\"."));
}

} // namespace KestryCore
