#include "LocalMessage.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace Kestry {

namespace {

constexpr std::string_view protocol = "KST3";
constexpr std::size_t headSize = protocol.size() + 1 + sizeof(std::uint32_t);

/// Numbers are in the byte order of the machine, which both sides share.
template <class Number>
void append(std::string& bytes, Number number)
{
    bytes.append(reinterpret_cast<const char*>(&number), sizeof number);
}

std::string frame(LocalMessageKind kind, std::string_view content)
{
    std::string bytes(protocol);
    bytes += static_cast<char>(kind);
    append(bytes, static_cast<std::uint32_t>(content.size()));
    bytes += content;
    return bytes;
}

class ContentWriter {
public:
    ContentWriter& text(std::string_view text)
    {
        number(static_cast<std::uint32_t>(text.size()));
        bytes_ += text;
        return *this;
    }
    template <class Number>
    ContentWriter& number(Number number)
    {
        append(bytes_, number);
        return *this;
    }
    ContentWriter& flag(bool flag) { return number<std::uint8_t>(flag ? 1 : 0); }
    ContentWriter& optionalText(const std::optional<std::string>& optional)
    {
        return flag(optional.has_value()).text(optional.value_or(""));
    }
    ContentWriter& texts(const std::vector<std::string>& texts)
    {
        number(static_cast<std::uint32_t>(texts.size()));
        for (const std::string& each : texts) {
            text(each);
        }
        return *this;
    }
    [[nodiscard]] const std::string& bytes() const { return bytes_; }

private:
    std::string bytes_;
};

/// Reads what a `ContentWriter` wrote. Beyond the end, every field is empty and `isSound_` is
/// false.
class ContentReader {
public:
    explicit ContentReader(std::string_view bytes) : bytes_(bytes) { }

    template <class Number>
    [[nodiscard]] Number number()
    {
        Number result{};
        const std::string_view read = take(sizeof result);
        if (isSound_) {
            std::memcpy(&result, read.data(), sizeof result);
        }
        return result;
    }
    [[nodiscard]] std::string text() { return std::string(take(number<std::uint32_t>())); }
    [[nodiscard]] std::optional<std::string> optionalText()
    {
        const bool isThere = flag();
        std::string content = text();
        return isThere ? std::optional(std::move(content)) : std::nullopt;
    }
    [[nodiscard]] bool flag()
    {
        const auto value = number<std::uint8_t>();
        isSound_ = isSound_ && value <= 1;
        return value == 1;
    }
    [[nodiscard]] std::vector<std::string> texts(std::size_t most)
    {
        std::vector<std::string> result;
        const auto count = number<std::uint32_t>();
        isSound_ = isSound_ && count <= most;
        while (isSound_ && result.size() < count) {
            result.push_back(text());
        }
        return result;
    }
    [[nodiscard]] bool isReadToTheEnd() const { return isSound_ && bytes_.empty(); }

private:
    std::string_view take(std::size_t size)
    {
        isSound_ = isSound_ && size <= bytes_.size();
        if (!isSound_) {
            return {};
        }
        const std::string_view taken = bytes_.substr(0, size);
        bytes_.remove_prefix(size);
        return taken;
    }

    std::string_view bytes_;
    bool isSound_ = true;
};

bool areAtMost(const std::vector<std::string>& texts, std::size_t mostTexts, std::size_t mostBytes)
{
    return texts.size() <= mostTexts && std::ranges::all_of(texts, [&](const std::string& text) {
        return text.size() <= mostBytes;
    });
}

} // namespace

std::string encodeMessage(const LocalCommand& command)
{
    ContentWriter writer;
    writer.texts(command.words).text(command.dataDirectory);
    std::vector<std::string> variables;
    for (const auto& [name, value] : command.environment) {
        variables.push_back(name);
        variables.push_back(value);
    }
    writer.texts(variables).text(command.timeZone);
    writer.optionalText(command.namedDirectory).flag(command.writesToTerminal);
    writer.flag(command.isPrepared).flag(command.isConfirmed);
    writer.optionalText(command.session).optionalText(command.logo);
    writer.optionalText(command.secret);
    return frame(LocalMessageKind::command, writer.bytes());
}

std::string encodeMessage(const LocalActivation& activation)
{
    ContentWriter writer;
    writer.texts(activation.urls).text(activation.activationToken);
    return frame(LocalMessageKind::activate, writer.bytes());
}

std::string encodeMessage(const LocalAnswer& answer)
{
    ContentWriter writer;
    writer.number<std::int32_t>(answer.status).flag(answer.hasChanged);
    writer.text(answer.output).text(answer.errors);
    const FileToWrite file = answer.file.value_or(FileToWrite{});
    writer.flag(answer.file.has_value()).text(file.name).text(file.bytes);
    return frame(LocalMessageKind::answer, writer.bytes());
}

std::string encodeMessage(LocalMessageKind kind)
{
    return frame(kind, {});
}

bool isWithinLimits(const LocalCommand& command)
{
    using Limits = LocalMessageLimits;
    const auto fits = [](const std::optional<std::string>& text, std::size_t most) {
        return !text || text->size() <= most;
    };
    return areAtMost(command.words, Limits::words, Limits::word)
        && command.environment.size() <= Limits::settings
        && fits(command.dataDirectory, Limits::path) && fits(command.namedDirectory, Limits::path)
        && std::ranges::all_of(command.environment,
            [&](const auto& variable) {
                return fits(variable.first, Limits::setting)
                    && fits(variable.second, Limits::setting);
            })
        && fits(command.timeZone, Limits::setting) && fits(command.session, Limits::setting)
        && fits(command.logo, Limits::file) && fits(command.secret, Limits::secret);
}

bool isWithinLimits(const LocalActivation& activation)
{
    using Limits = LocalMessageLimits;
    return areAtMost(activation.urls, Limits::urls, Limits::word)
        && activation.activationToken.size() <= Limits::path;
}

std::optional<LocalCommand> decodeCommand(std::string_view content)
{
    ContentReader reader(content);
    LocalCommand command;
    command.words = reader.texts(LocalMessageLimits::words);
    command.dataDirectory = reader.text();
    // Each variable is two texts: its name and its value.
    const auto variables = reader.texts(2 * LocalMessageLimits::settings);
    for (std::size_t index = 0; index + 1 < variables.size(); index += 2) {
        command.environment[variables[index]] = variables[index + 1];
    }
    command.timeZone = reader.text();
    command.namedDirectory = reader.optionalText();
    command.writesToTerminal = reader.flag();
    command.isPrepared = reader.flag();
    command.isConfirmed = reader.flag();
    command.session = reader.optionalText();
    command.logo = reader.optionalText();
    command.secret = reader.optionalText();
    const bool isWhole = reader.isReadToTheEnd() && variables.size() % 2 == 0;
    return isWhole && isWithinLimits(command) ? std::optional(std::move(command)) : std::nullopt;
}

std::optional<LocalActivation> decodeActivation(std::string_view content)
{
    ContentReader reader(content);
    LocalActivation activation;
    activation.urls = reader.texts(LocalMessageLimits::urls);
    activation.activationToken = reader.text();
    return reader.isReadToTheEnd() && isWithinLimits(activation)
        ? std::optional(std::move(activation))
        : std::nullopt;
}

std::optional<LocalAnswer> decodeAnswer(std::string_view content)
{
    ContentReader reader(content);
    LocalAnswer answer;
    answer.status = reader.number<std::int32_t>();
    answer.hasChanged = reader.flag();
    answer.output = reader.text();
    answer.errors = reader.text();
    const bool hasFile = reader.flag();
    FileToWrite file{reader.text(), reader.text()};
    if (hasFile) {
        answer.file = std::move(file);
    }
    return reader.isReadToTheEnd() ? std::optional(std::move(answer)) : std::nullopt;
}

std::optional<LocalFrameReader::Frame> LocalFrameReader::next()
{
    const std::string_view known = std::string_view(bytes_).substr(0, protocol.size());
    isBroken_ = isBroken_ || known != protocol.substr(0, known.size());
    if (isBroken_ || bytes_.size() < headSize) {
        return std::nullopt;
    }
    std::uint32_t size = 0;
    std::memcpy(&size, bytes_.data() + protocol.size() + 1, sizeof size);
    isBroken_ = size > mostBytes_;
    if (isBroken_ || bytes_.size() - headSize < size) {
        return std::nullopt;
    }
    Frame frame{
        static_cast<LocalMessageKind>(bytes_[protocol.size()]), bytes_.substr(headSize, size)};
    bytes_.erase(0, headSize + size);
    return frame;
}

} // namespace Kestry
