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

/// Where in a document a value stands: a chain of links that lives on the stack of the reading
/// functions and is put into words, as in `entries[12].spans[0].start`, only for a failure.
struct JsonPath {
    const JsonPath* parent = nullptr;
    std::string_view key;
    std::optional<std::size_t> index;

    [[nodiscard]] std::string text() const;
};

/// One value of a parsed document, usable as long as its `JsonDocument` and its parents' readers.
///
/// The getters fail with a `LedgerError` that names the place when the value has another type.
/// Only numbers are converted: an integer reads as a double, and a double without a fraction
/// that fits reads as an integer.
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

    /// Fails with this value's place and what it ought to be, as in "is not a number".
    [[noreturn]] void fail(std::string_view complaint) const;

private:
    [[nodiscard]] simdjson::dom::array array() const;

    simdjson::dom::element element_;
    JsonPath path_;
};

/// A parsed document. Reading is strict: anything but one complete JSON text in UTF-8 fails, as
/// do a byte order mark, nesting deeper than 128, a key given twice in an object that is read,
/// and a number beyond the range of a double or, as a whole number, of 64 bits.
class JsonDocument {
public:
    static constexpr std::size_t maximumDepth = 128;

    /// Fails with a `LedgerError` when the bytes are not such a text. The part of a document that
    /// lies within others may be given less depth.
    explicit JsonDocument(std::string bytes, std::size_t depth = maximumDepth);

    [[nodiscard]] JsonValue root() const { return {root_, JsonPath{}}; }

private:
    simdjson::dom::document document_; // all values, texts included
    simdjson::dom::element root_;
};

/// The members of one object, looked up by unescaped key in any order. Keys that nobody asks for
/// are ignored.
class JsonObject {
public:
    /// Fails when the value is no object or gives a key twice.
    explicit JsonObject(const JsonValue& value);
    JsonObject(const JsonObject&) = delete;
    JsonObject& operator=(const JsonObject&) = delete;
    ~JsonObject() = default;

    /// The member with this key. Fails when it is absent.
    [[nodiscard]] JsonValue required(std::string_view key);

    /// The same; returns nullopt when the key is absent or its value null.
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
    std::size_t next_ = 0; // files mostly hold the keys in the order in which they are asked for
};

} // namespace KestryCore
