#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "JsonReader.h"
#include "RecordMembers.h"

namespace KestryCore {

/// Reads the members that `visitMembers` names from any JSON object, in any order. Members that it
/// does not name are ignored. Every failure is a `LedgerError` that names the place; what was read
/// until then is of no use.
class MemberReader {
public:
    /// `value` must outlive the reader. Fails when it is no object or gives a key twice.
    explicit MemberReader(const JsonValue& value) : object_(value) { }

    template <class Value>
    void required(std::string_view key, Value& target)
    {
        read(object_.required(key), target);
    }
    template <class Value>
    void optional(std::string_view key, Value& target)
    {
        if (const std::optional<JsonValue> present = object_.optional(key)) {
            read(*present, target);
        }
    }
    template <class Value>
    void optional(std::string_view key, std::optional<Value>& target)
    {
        if (const std::optional<JsonValue> present = object_.optional(key)) {
            read(*present, target.emplace());
        }
    }
    template <class Value>
    void optional(std::string_view key, Shared<Value>& target)
    {
        if (const std::optional<JsonValue> present = object_.optional(key)) {
            Value value;
            read(*present, value);
            target = std::move(value);
        }
    }
    void bytes(std::string_view key, std::optional<std::string>& target)
    {
        if (const std::optional<JsonValue> present = object_.optional(key)) {
            target = bytesOf(*present);
        }
    }
    template <class Check>
    void bytes(std::string_view key, std::optional<std::string>& target, Check check)
    {
        bytes(key, target);
        if (target) {
            check(*target);
        }
    }
    void bytesByKey(std::string_view key, SharedMap<std::string>& target);

    /// Reads one value into `target`.
    static void read(const JsonValue& value, bool& target) { target = value.flag(); }
    static void read(const JsonValue& value, std::int64_t& target) { target = value.integer(); }
    static void read(const JsonValue& value, double& target) { target = value.number(); }
    static void read(const JsonValue& value, Date& target) { target.seconds = value.number(); }
    static void read(const JsonValue& value, std::string& target) { target = value.text(); }
    static void read(const JsonValue& value, Uuid& target);
    static void read(const JsonValue& value, CloudSyncEnvironment& target);
    static void read(const JsonValue& value, std::vector<TimeSpan>& target);
    template <class Record>
    static void read(const JsonValue& value, RecordList<Record>& target)
    {
        value.forEachElement([&](const JsonValue& element) {
            Record record;
            read(element, record);
            target.append(std::move(record));
        });
    }
    template <class Value>
    static void read(const JsonValue& value, SharedMap<Value>& target)
    {
        const JsonObject object(value);
        object.forEachMember([&](std::string_view key, const JsonValue& member) {
            Value content;
            read(member, content);
            target[std::string(key)] = std::move(content);
        });
    }
    /// A record whose members `visitMembers` names.
    template <class Record>
    static void read(const JsonValue& value, Record& target)
    {
        MemberReader reader(value);
        visitMembers(reader, target);
    }

private:
    [[nodiscard]] static std::string bytesOf(const JsonValue& value);

    JsonObject object_;
};

/// Reads a record whose members `visitMembers` names from a JSON text of its own.
template <class Record>
[[nodiscard]] Record readRecord(std::string json, std::size_t depth = JsonDocument::maximumDepth)
{
    const JsonDocument document(std::move(json), depth);
    Record record;
    MemberReader::read(document.root(), record);
    return record;
}

} // namespace KestryCore
