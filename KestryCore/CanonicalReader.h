#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "RecordMembers.h"

namespace KestryCore {

/// Thrown where a text is not, byte for byte, what `JsonWriter` would write. It says nothing of
/// whether the text is good JSON.
struct NotCanonical { };

/// Reads JSON in the one form that `JsonWriter` gives it, and nothing else: writing what was read
/// gives the same bytes again. Much faster than reading any JSON, because every next byte is known
/// beforehand or part of a value.
///
/// Every function but `takes` throws `NotCanonical` where the text differs from that form. That a
/// text is well-formed UTF-8 is the caller's to check.
class CanonicalReader {
public:
    explicit CanonicalReader(std::string_view text)
        : begin_(text.data()), position_(begin_), end_(begin_ + text.size())
    {
    }

    /// Whether the text goes on with these bytes; steps over them if so.
    [[gnu::always_inline]] bool takes(std::string_view expected)
    {
        if (!rest().starts_with(expected)) {
            return false;
        }
        position_ += expected.size();
        return true;
    }
    [[gnu::always_inline]] void expect(std::string_view expected)
    {
        if (!takes(expected)) {
            throw NotCanonical{};
        }
    }
    /// Whether the text goes on with a key, after a comma unless it is an object's first; steps
    /// over it if so. Inlined, each comparison is one of a few words: it is what reading does most.
    [[gnu::always_inline]] bool takesKey(std::string_view key, bool& isFirst)
    {
        const std::size_t comma = isFirst ? 0 : 1;
        const std::size_t length = comma + key.size() + 3;
        if (static_cast<std::size_t>(end_ - position_) < length) {
            return false;
        }
        const char* const text = position_ + comma;
        if ((comma == 1 && *position_ != ',') || text[0] != '"'
            || std::string_view(text + 1, key.size()) != key || text[key.size() + 1] != '"'
            || text[key.size() + 2] != ':') {
            return false;
        }
        position_ += length;
        isFirst = false;
        return true;
    }
    [[nodiscard]] std::string_view rest() const
    {
        return {position_, static_cast<std::size_t>(end_ - position_)};
    }
    /// Bytes read so far.
    [[nodiscard]] std::size_t offset() const
    {
        return static_cast<std::size_t>(position_ - begin_);
    }

    void read(bool& flag);
    void read(std::int64_t& number);
    void read(double& number);
    void read(Date& date) { read(date.seconds); }
    void read(std::string& text);
    void read(Uuid& uuid);
    /// A base64 string; returns the bytes.
    [[nodiscard]] std::string readBytes();
    void read(std::vector<TimeSpan>& spans);
    template <class Record>
    void read(Record& record);

private:
    void readAnyNumber(double& number);
    [[nodiscard]] char escapedCharacter();

    const char* begin_;
    const char* position_;
    const char* end_;
};

/// The members of one object in the order in which they are written.
class CanonicalObject {
public:
    explicit CanonicalObject(CanonicalReader& reader) : reader_(reader) { reader_.expect("{"); }

    template <class Value>
    [[gnu::always_inline]] void required(std::string_view key, Value& target)
    {
        if (!takesKey(key)) {
            throw NotCanonical{};
        }
        reader_.read(target);
    }

    /// Only what may be absent from the record is ever left out by the writer.
    template <class Value>
    [[gnu::always_inline]] void optional(std::string_view key, Value& target)
    {
        required(key, target);
    }
    template <class Value>
    [[gnu::always_inline]] void optional(std::string_view key, std::optional<Value>& target)
    {
        if (takesKey(key)) {
            reader_.read(target.emplace());
        }
    }
    template <class Check>
    void bytes(std::string_view key, std::optional<std::string>& target, Check check)
    {
        if (takesKey(key)) {
            std::string content = reader_.readBytes();
            check(content);
            target = std::move(content);
        }
    }

    /// Steps over the next key; false, and nothing read, when it is another.
    [[gnu::always_inline]] bool takesKey(std::string_view key)
    {
        return reader_.takesKey(key, isFirst_);
    }

    void end() { reader_.expect("}"); }

private:
    CanonicalReader& reader_;
    bool isFirst_ = true;
};

template <class Record>
void CanonicalReader::read(Record& record)
{
    CanonicalObject object(*this);
    visitMembers(object, record);
    object.end();
}

} // namespace KestryCore
