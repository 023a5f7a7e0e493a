#include "SystemTimeZone.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

#include "ZoneFiles.h"

namespace KestryCore {

namespace {

constexpr std::string_view digits = "0123456789";

/// Takes the name of a time off the front of a rule: letters, or anything in angle brackets.
bool takeAbbreviation(std::string_view& rule)
{
    std::size_t length = 0;
    if (rule.starts_with('<')) {
        length = rule.find('>') + 1; // 0 when there is none
    } else {
        length = std::min(rule.size(), rule.find_first_of("0123456789+-,"));
    }
    rule.remove_prefix(length);
    constexpr std::size_t shortest = 3;
    return length >= shortest;
}

bool takeOffset(std::string_view& rule)
{
    const std::size_t sign = rule.starts_with('+') || rule.starts_with('-') ? 1 : 0;
    const std::size_t length =
        std::min(rule.size() - sign, rule.substr(sign).find_first_not_of("0123456789:"));
    rule.remove_prefix(sign + length);
    return length > 0;
}

/// A rule that leaves nothing to its reader, whose library takes no other. When the clocks are set
/// is left to the reader by some, and that is as in the United States then. Clocks that are never
/// set are set twice a year to what they show anyway.
std::string wholeRule(const std::string& rule)
{
    std::string_view rest = rule;
    if (!takeAbbreviation(rest) || !takeOffset(rest) || rest.find(',') != std::string_view::npos) {
        return rule;
    }
    return rule + (rest.empty() ? rule : "") + ",M3.2.0,M11.1.0";
}

bool looksLikeRule(std::string_view text)
{
    return takeAbbreviation(text) && takeOffset(text);
}

void putNumber(std::string& bytes, std::int64_t number, int size)
{
    for (int shift = (size - 1) * 8; shift >= 0; shift -= 8) {
        bytes += static_cast<char>(static_cast<std::uint64_t>(number) >> shift);
    }
}

/// The beginning of each half of a zone file: no leap seconds, so many changes of the clocks, one
/// kind of time, whose name is four bytes long.
std::string halfHeader(int changes)
{
    std::string bytes("TZif2");
    bytes.append(15, '\0');
    for (const int count : {0, 0, 0, changes, 1, 4}) {
        putNumber(bytes, count, 4);
    }
    return bytes;
}

/// UTC, as the kind of time that counts where the rule doesn't.
void putKind(std::string& bytes)
{
    bytes.append(6, '\0');
    bytes.append("UTC", 4);
}

/// The zone file of a rule. The rule holds after the last change of the clocks that a file knows;
/// that one is long before all work.
std::string contentOfRule(const std::string& rule)
{
    constexpr std::int64_t startOf1902 = -2'145'916'800;
    std::string bytes = halfHeader(0);
    putKind(bytes);
    bytes += halfHeader(1);
    putNumber(bytes, startOf1902, 8);
    putNumber(bytes, 0, 1);
    putKind(bytes);
    return bytes + "\n" + wholeRule(rule) + "\n";
}

/// The rule at the end of a zone file, which its clocks follow from some year on.
std::string ruleOfContent(std::string_view content)
{
    if (!content.ends_with('\n')) {
        return {};
    }
    content.remove_suffix(1);
    return std::string(content.substr(content.find_last_of('\n') + 1));
}

SystemTimeZone utc()
{
    SystemTimeZone zone = ruleTimeZone("UTC0");
    zone.name = "UTC";
    return zone;
}

/// The zone of a file in any folder.
std::optional<SystemTimeZone> zoneOfFile(const std::string& path, const ZoneFiles& files)
{
    auto content = readZoneFile(path);
    if (!content) {
        return std::nullopt;
    }
    if (const auto name = files.nameOf(path)) {
        // Not the file itself, which may be of those that count leap seconds.
        return SystemTimeZone{*name, files.read(*name).value_or(""), files.path(*name)};
    }
    const auto equal = files.nameOfContent(*content);
    std::string name = equal ? *equal : ruleOfContent(*content);
    return SystemTimeZone{std::move(name), std::move(*content), path};
}

SystemTimeZone namedZone(std::string named, const ZoneFiles& files)
{
    if (named.starts_with(':')) {
        named.erase(0, 1);
    }
    if (auto content = files.read(named)) {
        return {named, std::move(*content), files.path(named)};
    }
    if (!named.empty()) {
        const std::string path = named.starts_with('/') ? named : files.path(named);
        if (auto zone = zoneOfFile(path, files)) {
            return std::move(*zone);
        }
    }
    if (looksLikeRule(named)) {
        return ruleTimeZone(named);
    }
    return named.empty() || !files.names().empty() ? utc() : SystemTimeZone{named, "", ""};
}

/// The name of the zone whose file a link would lead to if there were any.
std::string nameOfDeadLink(const std::string& path)
{
    std::error_code failure;
    const std::string target = std::filesystem::read_symlink(path, failure).string();
    const std::string folder = "/zoneinfo/";
    const std::size_t place = failure ? std::string::npos : target.find(folder);
    return place == std::string::npos ? std::string() : target.substr(place + folder.size());
}

} // namespace

SystemTimeZone systemTimeZone(
    const EnvironmentLookup& environment, const std::string& localTimePath)
{
    const ZoneFiles files = ZoneFiles::ofSystem(environment);
    if (const auto named = environment("TZ")) {
        return namedZone(*named, files);
    }
    if (auto zone = zoneOfFile(localTimePath, files)) {
        return std::move(*zone);
    }
    return namedZone(nameOfDeadLink(localTimePath), files);
}

SystemTimeZone ruleTimeZone(const std::string& rule)
{
    return {rule, contentOfRule(rule), ""};
}

std::string fixedRule(double offsetSeconds)
{
    const auto seconds = static_cast<long>(std::abs(offsetSeconds));
    // In a rule, clocks ahead of UTC have a negative sign.
    const char* sign = offsetSeconds > 0.0 ? "-" : "";
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "<-00>%s%ld:%02ld:%02ld", sign, seconds / 3600,
        seconds / 60 % 60, seconds % 60);
    return text.data();
}

} // namespace KestryCore
