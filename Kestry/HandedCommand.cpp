#include "HandedCommand.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <string_view>

#include "DataDirectory.h"
#include "FileSystem.h"
#include "StandardStreams.h"

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

/// The folder that the words seem to name; none where they name none.
std::optional<std::string> namedDirectory(const std::vector<std::string>& words)
{
    const std::string option(KestryCore::dataDirectoryOption);
    const auto end = std::ranges::find(words, "--");
    for (auto word = words.begin(); word != end; ++word) {
        if (word->starts_with(option + "=")) {
            return word->substr(option.size() + 1);
        }
        if (*word == option && std::next(word) != end) {
            return *std::next(word);
        }
    }
    return std::nullopt;
}

/// The user's folder for the data of applications, where that shows in the environment.
std::optional<std::string> applicationSupport(const KestryCore::EnvironmentLookup& environment)
{
    auto data = environment("XDG_DATA_HOME");
    if (data && data->starts_with('/')) {
        return data;
    }
    const auto home = environment("HOME");
    return home && !home->empty() ? std::optional(KestryCore::joinPath(*home, ".local/share"))
                                  : std::nullopt;
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

std::optional<LocalCommand> unreadCommandToHandOver(
    const std::vector<std::string>& words, const KestryCore::EnvironmentLookup& environment)
{
    const auto zone = plainTimeZone(environment);
    const auto support = applicationSupport(environment);
    if (words.empty() || !zone || !support) {
        return std::nullopt;
    }
    const auto named = namedDirectory(words);
    const std::string directory = KestryCore::resolveDataDirectory(named, environment, *support);
    LocalCommand command = commandToHandOver(words, directory, environment);
    command.namedDirectory = named;
    command.timeZone = *zone;
    return command;
}

int showAnswer(const LocalAnswer& answer, int outputDescriptor, int errorDescriptor)
{
    (void)writeAll(errorDescriptor, answer.errors);
    const int code = writeAll(outputDescriptor, answer.output);
    if (code == 0) {
        return answer.status;
    }
    const std::string reason = KestryCore::fileError("The output", "written", code).what();
    (void)writeAll(
        errorDescriptor, (answer.hasChanged ? changeNotShown : std::string()) + reason + "\n");
    return 1;
}

} // namespace Kestry
