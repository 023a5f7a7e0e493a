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

/// More than the characters of any number.
inline constexpr std::size_t longestNumber = 32;

/// The text of a finite number in the notation of `JsonWriter`, written into `room`.
[[nodiscard]] std::string_view numberText(double number, std::array<char, longestNumber>& room);

/// Writes one compact JSON text: no blanks, no line breaks, the solidus escaped, other text as raw
/// UTF-8 with the mandatory escapes. Numbers are the shortest digits that read back exactly, in
/// plain notation for magnitudes from 0.0001 to below 10^16 and with an exponent outside.
///
/// Equal calls must give equal bytes in all versions of the program: replicated payloads are
/// compared with bytes that earlier versions wrote.
class JsonWriter {
public:
    explicit JsonWriter(JsonKeyOrder order = JsonKeyOrder::declared) : order_(order) { }

    void beginObject();
    void endObject();
    void beginArray();
    void endArray();

    /// Starts a member of the open object; exactly one value must follow.
    void key(std::string_view name);

    /// Throws LedgerError when the text is not UTF-8, which would make the whole document
    /// unreadable.
    void value(std::string_view text);
    void value(const char* text) { value(std::string_view(text)); }
    void value(bool flag);
    void value(std::int64_t number);
    /// Throws LedgerError for an infinity or a NaN.
    void value(double number);
    void value(Date date) { value(date.seconds); }
    void value(const Uuid& uuid) { value(uuid.text()); }
    void null();
    /// Writes a value that is JSON already.
    void json(std::string_view written);

    /// Begins an element whose text the caller puts between the pieces of this writer.
    void elementWrittenElsewhere() { beginElement(); }

    template <class Value>
    void member(std::string_view name, const Value& content)
    {
        key(name);
        value(content);
    }

    /// Returns the text written since the last call. Open objects and arrays stay open, so that a
    /// document can be taken in pieces; not with sorted keys.
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
