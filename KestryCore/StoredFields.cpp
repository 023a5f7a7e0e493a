#include "StoredFields.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <utility>

namespace KestryCore {

namespace {

// The sum, then the type, then for each field its name, a letter for its kind and its value. Texts
// have their length before them. Numbers are little-endian.
constexpr char numberKind = 'n';
constexpr char textKind = 't';
constexpr char bytesKind = 'b';
constexpr std::size_t wordBytes = 8;

void appendWord(std::string& bytes, std::uint64_t word)
{
    for (std::size_t index = 0; index < wordBytes; ++index) {
        bytes += static_cast<char>((word >> (8U * index)) & 0xFFU);
    }
}

void appendText(std::string& bytes, std::string_view text)
{
    appendWord(bytes, text.size());
    bytes += text;
}

/// Takes numbers and texts from the front; nullopt when too few bytes are left.
class Taker {
public:
    explicit Taker(std::string_view bytes) : rest_(bytes) { }

    [[nodiscard]] bool isAtEnd() const { return rest_.empty(); }
    [[nodiscard]] std::optional<std::string_view> take(std::uint64_t count)
    {
        if (count > rest_.size()) {
            return std::nullopt;
        }
        const std::string_view taken = rest_.substr(0, static_cast<std::size_t>(count));
        rest_.remove_prefix(taken.size());
        return taken;
    }
    [[nodiscard]] std::optional<std::uint64_t> takeWord()
    {
        const auto bytes = take(wordBytes);
        if (!bytes) {
            return std::nullopt;
        }
        std::uint64_t word = 0;
        for (std::size_t index = 0; index < wordBytes; ++index) {
            word |= std::uint64_t{static_cast<unsigned char>((*bytes)[index])} << (8U * index);
        }
        return word;
    }
    [[nodiscard]] std::optional<std::string> takeText()
    {
        const auto size = takeWord();
        const auto text = size ? take(*size) : std::nullopt;
        return text ? std::optional(std::string(*text)) : std::nullopt;
    }

private:
    std::string_view rest_;
};

/// FNV-1a: each step maps different sums to different sums, so that any one changed byte shows.
class Sum {
public:
    void add(std::string_view bytes)
    {
        for (const char byte : bytes) {
            value_ = (value_ ^ static_cast<unsigned char>(byte)) * 0x100000001B3U;
        }
    }
    [[nodiscard]] std::uint64_t value() const { return value_; }

private:
    std::uint64_t value_ = 0xCBF29CE484222325U;
};

std::uint64_t sumOf(const CloudRecord& record, std::string_view content)
{
    std::string head;
    appendText(head, record.id.name);
    appendText(head, record.serverVersion);
    Sum sum;
    sum.add(head);
    sum.add(content);
    return sum.value();
}

void appendValue(std::string& bytes, const CloudValue& value)
{
    if (const auto* const number = std::get_if<double>(&value)) {
        bytes += numberKind;
        appendWord(bytes, std::bit_cast<std::uint64_t>(*number));
    } else if (const auto* const text = std::get_if<std::string>(&value)) {
        bytes += textKind;
        appendText(bytes, *text);
    } else {
        bytes += bytesKind;
        appendText(bytes, std::get<CloudBytes>(value).bytes);
    }
}

std::optional<CloudValue> takeValue(Taker& taker)
{
    const auto kind = taker.take(1);
    if (kind && kind->front() == numberKind) {
        const auto word = taker.takeWord();
        return word ? std::optional<CloudValue>(std::bit_cast<double>(*word)) : std::nullopt;
    }
    const bool isText = kind && kind->front() == textKind;
    if (!isText && (!kind || kind->front() != bytesKind)) {
        return std::nullopt;
    }
    auto text = taker.takeText();
    if (!text) {
        return std::nullopt;
    }
    return isText ? CloudValue(*std::move(text)) : CloudValue(CloudBytes{*std::move(text)});
}

std::optional<std::map<std::string, CloudValue>> takeFields(Taker& taker)
{
    std::map<std::string, CloudValue> fields;
    while (!taker.isAtEnd()) {
        auto name = taker.takeText();
        auto value = name ? takeValue(taker) : std::nullopt;
        if (!value || !fields.emplace(*std::move(name), *std::move(value)).second) {
            return std::nullopt;
        }
    }
    return fields;
}

} // namespace

std::string encodeStoredFields(const CloudRecord& record)
{
    std::string content;
    appendText(content, record.type);
    for (const auto& [name, value] : record.fields) {
        appendText(content, name);
        appendValue(content, value);
    }
    std::string bytes;
    bytes.reserve(wordBytes + content.size());
    appendWord(bytes, sumOf(record, content));
    return bytes += content;
}

bool decodeStoredFields(std::string_view bytes, CloudRecord& record)
{
    Taker taker(bytes);
    const auto sum = taker.takeWord();
    if (!sum || *sum != sumOf(record, bytes.substr(wordBytes))) {
        return false;
    }
    auto type = taker.takeText();
    auto fields = type ? takeFields(taker) : std::nullopt;
    if (!fields) {
        return false;
    }
    record.type = *std::move(type);
    record.fields = *std::move(fields);
    return true;
}

} // namespace KestryCore
