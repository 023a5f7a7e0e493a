#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "Date.h"
#include "Uuid.h"

namespace KestryCore {

/// The order in which the members of an object are written.
enum class JsonKeyOrder {
    declared, ///< As the caller hands them over.
    sorted,   ///< Ascending by the bytes of the key, at every depth.
};

/// More characters than the text of any number has.
inline constexpr std::size_t longestNumber = 32;

/// The text of a finite number in the notation that `JsonWriter` tells, in the given room.
[[nodiscard]] std::string_view numberText(double number, std::array<char, longestNumber>& room);

/// Writes one compact JSON text: no blanks, no line ends, solidus escaped, other text raw UTF-8
/// with the mandatory escapes. Numbers are the shortest digits that read back exactly, in plain
/// notation for magnitudes from 0.0001 to below 10^16 and with an exponent outside.
///
/// Equal calls give equal bytes, for ever: replicated payloads are compared with bytes that
/// earlier versions wrote.
class JsonWriter {
public:
    explicit JsonWriter(JsonKeyOrder order = JsonKeyOrder::declared) : order_(order) { }

    void beginObject();
    void endObject();
    void beginArray();
    void endArray();

    /// Starts a member of the open object; exactly one value must follow.
    void key(std::string_view name);

    /// Fails with a `LedgerError` when the text is not well-formed UTF-8: written as it stands,
    /// it would make the whole document unreadable.
    void value(std::string_view text);
    void value(const char* text) { value(std::string_view(text)); }
    void value(bool flag);
    void value(std::int64_t number);
    /// Fails with a `LedgerError` for an infinity or a NaN.
    void value(double number);
    void value(Date date) { value(date.seconds); }
    void value(const Uuid& uuid) { value(uuid.text()); }
    void null();
    /// Takes a value that has been written as JSON already.
    void json(std::string_view written);

    /// Makes room for array elements whose text the caller puts between this writer's pieces.
    void elementWrittenElsewhere() { beginElement(); }

    template <class Value>
    void member(std::string_view name, const Value& content)
    {
        key(name);
        value(content);
    }

    /// The text since the last call. Open objects and arrays stay open, so that a document can
    /// be taken in pieces, unless keys are sorted.
    [[nodiscard]] std::string take();

private:
    struct Member {
        std::string key;
        std::size_t start = 0;
    };
    struct Scope {
        std::size_t start = 0;
        bool isObject = false;
        bool isEmpty = true;
        std::vector<Member> members;
    };

    void beginElement();
    void beginValue();
    void begin(char bracket, bool isObject);
    void appendQuoted(std::string_view text);
    void sortMembers(const Scope& scope);

    JsonKeyOrder order_;
    std::string text_;
    std::vector<Scope> scopes_;
    bool afterKey_ = false;
};

} // namespace KestryCore
