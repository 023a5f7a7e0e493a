#include "HandedCommand.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "DataDirectory.h"
#include "FileSystem.h"
#include "StandardStreams.h"
#include "SystemTimeZone.h"

namespace Kestry {

namespace {

/// The data directory that the words seem to name; nullopt when they name none.
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

/// The user's folder for application data; empty when the environment does not name it.
std::string applicationSupport(const KestryCore::EnvironmentLookup& environment)
{
    const auto data = environment("XDG_DATA_HOME");
    if (data && data->starts_with('/')) {
        return *data;
    }
    const auto home = environment("HOME");
    return home && !home->empty() ? KestryCore::joinPath(*home, ".local/share") : "";
}

std::optional<std::string> directoryAtAGlance(
    const std::optional<std::string>& named, const KestryCore::EnvironmentLookup& environment)
{
    bool isKnown = true;
    std::string directory = KestryCore::resolveDataDirectory(named, environment, [&] {
        std::string support = applicationSupport(environment);
        isKnown = !support.empty();
        return support;
    });
    return isKnown ? std::optional(std::move(directory)) : std::nullopt;
}

} // namespace

LocalCommand commandToHandOver(const std::vector<std::string>& words,
    const std::string& dataDirectory, const KestryCore::EnvironmentLookup& environment)
{
    LocalCommand command;
    command.words = words;
    command.dataDirectory = dataDirectory;
    command.timeZone = KestryCore::systemTimeZone(environment).name;
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
    const auto named = namedDirectory(words);
    const auto directory = directoryAtAGlance(named, environment);
    if (words.empty() || !directory) {
        return std::nullopt;
    }
    LocalCommand command = commandToHandOver(words, *directory, environment);
    command.namedDirectory = named;
    return !command.timeZone.empty() && isWithinLimits(command) ? std::optional(std::move(command))
                                                                : std::nullopt;
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
