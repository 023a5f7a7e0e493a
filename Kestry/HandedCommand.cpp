#include "HandedCommand.h"

#include <unistd.h>

#include <climits>
#include <cstdlib>
#include <string_view>

namespace Kestry {

namespace {

constexpr const char* zoneFiles = "/usr/share/zoneinfo/";

/// Names with a city in them have but one meaning. Short ones without may be abbreviations, which
/// are for others to judge.
std::optional<std::string> knownZone(std::string_view name)
{
    const bool isPlain = name == "UTC"
        || (name.find('/') != std::string_view::npos && name.find("..") == std::string_view::npos
            && name.find_first_of(",:<>") == std::string_view::npos && !name.starts_with("posix/")
            && !name.starts_with("right/"));
    std::string zone(name);
    return isPlain && access((zoneFiles + zone).c_str(), R_OK) == 0 ? std::optional(std::move(zone))
                                                                    : std::nullopt;
}

std::optional<std::string> linkedZone()
{
    char* resolved = realpath("/etc/localtime", nullptr);
    if (resolved == nullptr) {
        return std::nullopt;
    }
    const std::string path(resolved);
    std::free(resolved); // NOLINT(cppcoreguidelines-no-malloc): it is the library's
    return path.starts_with(zoneFiles) ? knownZone(path.substr(std::string(zoneFiles).size()))
                                       : std::nullopt;
}

std::string workingDirectory()
{
    char* path = getcwd(nullptr, 0);
    std::string result = path != nullptr ? path : "";
    std::free(path); // NOLINT(cppcoreguidelines-no-malloc): it is the library's
    return result;
}

} // namespace

std::optional<std::string> plainTimeZone(const KestryCore::EnvironmentLookup& environment)
{
    const auto named = environment("TZ");
    return named ? knownZone(*named) : linkedZone();
}

LocalCommand commandToHandOver(const std::vector<std::string>& words,
    const std::string& dataDirectory, const KestryCore::EnvironmentLookup& environment)
{
    LocalCommand command;
    command.words = words;
    command.dataDirectory = dataDirectory;
    command.workingDirectory = workingDirectory();
    for (const char* name : commandVariables) {
        if (auto value = environment(name)) {
            command.environment[name] = std::move(*value);
        }
    }
    return command;
}

} // namespace Kestry
