#pragma once

#include <simdjson.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "LedgerError.h"

namespace KestryCore {

/// Where in a document a value is: a chain of links on the stack of the reading functions. It is
/// put into words, as in `entries[12].spans[0].start`, only for a failure.
struct JsonPath {
    const JsonPath* parent = nullptr;
    std::string_view key;
    std::optional<std::size_t> index;

    [[nodiscard]] std::string text() const;
};

/// One value of a parsed document. Valid as long as its `JsonDocument` and the readers of its
/// parents.
///
/// The getters throw LedgerError, which names the place, when the value has another type. Only
/// numbers are converted: an integer to a double, and a double without a fraction that fits to an
/// integer.
class JsonValue {
public:
    JsonValue(simdjson::dom::element element, JsonPath path) : element_(element), path_(path) { }

    [[nodiscard]] bool isNull() const { return element_.is_null(); }
    [[nodiscard]] bool flag() const;
    [[nodiscard]] double number() const;
    [[nodiscard]] std::int64_t integer() const;
    [[nodiscard]] std::string_view text() const;

    /// Calls `visit` with each element of an array, in order.
    template <class Visit>
    void forEachElement(Visit visit) const
    {
        std::size_t index = 0;
        for (const simdjson::dom::element element : array()) {
            visit(JsonValue(element, JsonPath{&path_, {}, index++}));
        }
    }

    [[nodiscard]] const JsonPath& path() const { return path_; }
    [[nodiscard]] simdjson::dom::object object() const;

    /// Throws LedgerError with the place of the value and a complaint, as in "is not a number".
    [[noreturn]] void fail(std::string_view complaint) const;

private:
    [[nodiscard]] simdjson::dom::array array() const;

    simdjson::dom::element element_;
    JsonPath path_;
};

/// A parsed document. Reading is strict: everything but one complete JSON text in UTF-8 is refused,
/// and so are a byte order mark, nesting deeper than 128, a key given twice in an object that is
/// read, and a number beyond the range of a double or, as an integer, of 64 bits.
class JsonDocument {
public:
    static constexpr std::size_t maximumDepth = 128;

    /// Throws LedgerError when the bytes are not such a text. For a part of a larger document
    /// `depth` may be less.
    explicit JsonDocument(std::string bytes, std::size_t depth = maximumDepth);

    [[nodiscard]] JsonValue root() const { return {root_, JsonPath{}}; }

private:
    simdjson::dom::document document_; // all values, texts included
    simdjson::dom::element root_;
};

/// The members of one object, looked up by unescaped key in any order. Other keys are ignored.
class JsonObject {
public:
    /// Throws LedgerError when the value is not an object or has a key twice.
    explicit JsonObject(const JsonValue& value);
    JsonObject(const JsonObject&) = delete;
    JsonObject& operator=(const JsonObject&) = delete;
    ~JsonObject() = default;

    /// The member with this key. Throws LedgerError when it is missing.
    [[nodiscard]] JsonValue required(std::string_view key);

    /// Like `required`, but returns nullopt when the key is missing or its value is null.
    [[nodiscard]] std::optional<JsonValue> optional(std::string_view key);

    /// Calls `visit` with the key and value of each member, in the document's order.
    template <class Visit>
    void forEachMember(Visit visit) const
    {
        for (const simdjson::dom::key_value_pair field : members_) {
            visit(field.key, valueOf({field.key, field.value}));
        }
    }

private:
    struct Field {
        std::string_view key;
        simdjson::dom::element element;
    };
    static constexpr std::size_t inlineFieldCount = 16;

    [[nodiscard]] JsonValue valueOf(const Field& field) const
    {
        return {field.element, JsonPath{&path_, field.key, std::nullopt}};
    }
    [[nodiscard]] std::optional<JsonValue> find(std::string_view key);
    void refuseDuplicateKeys(const JsonValue& value) const;

    JsonPath path_;
    simdjson::dom::object members_;
    std::size_t memberCount_ = 0;
    std::array<Field, inlineFieldCount> first_; // the first members: mostly all of them
    std::size_t next_ = 0; // files mostly have the keys in the order of reading
};

} // namespace KestryCore
