#include "JsonReader.h"

#include <algorithm>
#include <cmath>
#include <new>

namespace KestryCore {

namespace {

/// The parser's error as text for people: the kind of damage. The parser's offsets and names would
/// not help somebody who looks at a damaged file.
std::string describe(simdjson::error_code error)
{
    switch (error) {
    case simdjson::EMPTY:
        return "The file is empty.";
    case simdjson::UTF8_ERROR:
        return "The file isn't valid UTF-8 text.";
    case simdjson::DEPTH_ERROR:
        return "The JSON in the file is nested too deeply.";
    case simdjson::CAPACITY:
    case simdjson::MEMALLOC:
        return "The file is too large to be read into memory.";
    case simdjson::NUMBER_ERROR:
        return "The file isn't valid JSON: it holds a malformed or excessive number.";
    case simdjson::STRING_ERROR:
    case simdjson::UNCLOSED_STRING:
    case simdjson::UNESCAPED_CHARS:
        return "The file isn't valid JSON: it holds a malformed string.";
    default:
        return "The file isn't valid JSON.";
    }
}

/// A key as a sentence can name it. Keys come from the file and may be of any length.
std::string shortened(std::string_view key)
{
    constexpr std::size_t mostBytes = 80;
    if (key.size() <= mostBytes) {
        return std::string(key);
    }
    std::size_t end = mostBytes;
    // Never within a character: all its bytes but the first begin with the bits 10.
    while ((static_cast<unsigned char>(key[end]) & 0xC0U) == 0x80U) {
        --end;
    }
    return std::string(key.substr(0, end)) + "…";
}

} // namespace

std::string JsonPath::text() const
{
    if (parent == nullptr) {
        return {};
    }
    std::string result = parent->text();
    if (index) {
        result += '[' + std::to_string(*index) + ']';
    } else {
        if (!result.empty()) {
            result += '.';
        }
        result += shortened(key);
    }
    return result;
}

void JsonValue::fail(std::string_view complaint) const
{
    const std::string place = path_.text();
    throw LedgerError("The data is malformed: " + (place.empty() ? "the document" : place) + " "
        + std::string(complaint) + ".");
}

bool JsonValue::flag() const
{
    bool result = false;
    if (element_.get(result) != simdjson::SUCCESS) {
        fail("isn't true or false");
    }
    return result;
}

double JsonValue::number() const
{
    double result = 0.0;
    if (element_.get(result) != simdjson::SUCCESS) {
        fail("isn't a number");
    }
    return result;
}

std::int64_t JsonValue::integer() const
{
    std::int64_t result = 0;
    if (element_.get(result) == simdjson::SUCCESS) {
        return result;
    }
    // 2^63 is the first double beyond the range.
    constexpr double limit = 9223372036854775808.0;
    double number = 0.0;
    if (element_.get(number) != simdjson::SUCCESS || std::trunc(number) != number || number < -limit
        || number >= limit) {
        fail("isn't a whole number of 64 bits");
    }
    return static_cast<std::int64_t>(number);
}

std::string_view JsonValue::text() const
{
    std::string_view result;
    if (element_.get(result) != simdjson::SUCCESS) {
        fail("isn't text");
    }
    return result;
}

simdjson::dom::array JsonValue::array() const
{
    simdjson::dom::array result;
    if (element_.get(result) != simdjson::SUCCESS) {
        fail("isn't an array");
    }
    return result;
}

simdjson::dom::object JsonValue::object() const
{
    simdjson::dom::object result;
    if (element_.get(result) != simdjson::SUCCESS) {
        fail("isn't an object");
    }
    return result;
}

JsonDocument::JsonDocument(std::string bytes, std::size_t depth)
{
    // Newer parsers skip a byte order mark; the form of our files has none.
    if (bytes.starts_with("\xEF\xBB\xBF")) {
        throw LedgerError("The file isn't valid JSON: it begins with a byte order mark.");
    }
    const std::size_t length = bytes.size();
    bytes.reserve(length + simdjson::SIMDJSON_PADDING);
    // Its tables are of the size of the text or more, and go with it at the end.
    simdjson::dom::parser parser;
    simdjson::error_code error = parser.allocate(std::max<std::size_t>(length, 1), depth);
    if (error == simdjson::SUCCESS) {
        error = parser.parse_into_document(document_, bytes.data(), length, false).get(root_);
    }
    if (error != simdjson::SUCCESS) {
        throw LedgerError(describe(error));
    }
}

JsonObject::JsonObject(const JsonValue& value) : path_(value.path()), members_(value.object())
{
    for (const simdjson::dom::key_value_pair member : members_) {
        if (memberCount_ < first_.size()) {
            first_[memberCount_] = {member.key, member.value};
        }
        ++memberCount_;
    }
    refuseDuplicateKeys(value);
}

void JsonObject::refuseDuplicateKeys(const JsonValue& value) const
{
    const auto complain = [&](std::string_view key) {
        value.fail("gives the key \"" + shortened(key) + "\" twice");
    };
    if (memberCount_ <= first_.size()) {
        for (std::size_t later = 1; later < memberCount_; ++later) {
            for (std::size_t earlier = 0; earlier < later; ++earlier) {
                if (first_[later].key == first_[earlier].key) {
                    complain(first_[later].key);
                }
            }
        }
        return;
    }
    std::vector<std::string_view> keys;
    keys.reserve(memberCount_);
    for (const simdjson::dom::key_value_pair member : members_) {
        keys.push_back(member.key);
    }
    std::ranges::sort(keys);
    if (const auto twice = std::ranges::adjacent_find(keys); twice != keys.end()) {
        complain(*twice);
    }
}

std::optional<JsonValue> JsonObject::find(std::string_view key)
{
    const std::size_t firstCount = std::min(memberCount_, first_.size());
    for (std::size_t count = 0; count < firstCount; ++count) {
        const std::size_t index = (next_ + count) % firstCount;
        if (first_[index].key == key) {
            next_ = index + 1;
            return valueOf(first_[index]);
        }
    }
    if (firstCount < memberCount_) {
        for (const simdjson::dom::key_value_pair member : members_) {
            if (member.key == key) {
                return valueOf({member.key, member.value});
            }
        }
    }
    return std::nullopt;
}

JsonValue JsonObject::required(std::string_view key)
{
    const std::optional<JsonValue> value = find(key);
    if (!value) {
        const std::string place = path_.text();
        throw LedgerError("The data is malformed: " + (place.empty() ? "the document" : place)
            + " has no \"" + std::string(key) + "\".");
    }
    return *value;
}

std::optional<JsonValue> JsonObject::optional(std::string_view key)
{
    const std::optional<JsonValue> value = find(key);
    return value && !value->isNull() ? value : std::nullopt;
}

} // namespace KestryCore
