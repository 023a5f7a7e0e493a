#pragma once

#include <cassert>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Base64.h"
#include "JsonWriter.h"
#include "LedgerBytes.h"
#include "RecordMembers.h"

namespace KestryCore {

/// Writes the members that `visitMembers` names as a JSON object. Fails with a `LedgerError` when a
/// number is not finite or a text not UTF-8.
class MemberWriter {
public:
    /// `pieces` is needed for records with lists or maps of records, and gets their JSON: a piece
    /// for each block of them, which is remembered with the block. The text before each piece is
    /// taken from `writer`; what comes after the last piece stays there.
    explicit MemberWriter(JsonWriter& writer, LedgerBytes* pieces = nullptr)
        : writer_(writer), pieces_(pieces)
    {
    }

    template <class Value>
    void required(std::string_view key, const Value& value)
    {
        writer_.key(key);
        write(value);
    }
    template <class Value>
    void optional(std::string_view key, const Value& value)
    {
        required(key, value);
    }
    template <class Value>
    void optional(std::string_view key, const std::optional<Value>& value)
    {
        if (value) {
            required(key, *value);
        }
    }
    template <class Value>
    void optional(std::string_view key, const Shared<Value>& value)
    {
        if (value) {
            required(key, *value);
        }
    }
    /// Checks are for reading: what is written has passed them already.
    template <class... Check>
    void bytes(std::string_view key, const std::optional<std::string>& value, Check...)
    {
        if (value) {
            writer_.member(key, encodeBase64(*value));
        }
    }
    void bytesByKey(std::string_view key, const SharedMap<std::string>& map)
    {
        writer_.key(key);
        writeMap(map, [](MemberWriter& items, const std::string& bytes) {
            items.writer_.value(encodeBase64(bytes));
        });
    }

    /// Writes one value: a record whose members `visitMembers` names, or what `JsonWriter` writes.
    template <class Value>
    void write(const Value& value)
    {
        if constexpr (requires { visitMembers(*this, value); }) {
            writer_.beginObject();
            visitMembers(*this, value);
            writer_.endObject();
        } else {
            writer_.value(value);
        }
    }
    void write(CloudSyncEnvironment environment) { writer_.value(environmentName(environment)); }
    void write(const std::vector<TimeSpan>& spans) { writeArray(spans); }
    template <class Record>
    void write(const RecordList<Record>& records)
    {
        writer_.beginArray();
        for (std::size_t index = 0; index < records.blockCount(); ++index) {
            const auto& block = records.block(index);
            appendPiece(block.remembered.json,
                [&](MemberWriter& items) { items.writeArray(block.records); });
        }
        writer_.endArray();
    }
    template <class Value>
    void write(const SharedMap<Value>& map)
    {
        writeMap(map, [](MemberWriter& items, const Value& value) { items.write(value); });
    }

private:
    template <class Values>
    void writeArray(const Values& values)
    {
        writer_.beginArray();
        for (const auto& value : values) {
            write(value);
        }
        writer_.endArray();
    }

    template <class Value, class WriteValue>
    void writeMap(const SharedMap<Value>& map, WriteValue writeValue)
    {
        writer_.beginObject();
        for (std::size_t index = 0; index < map.blockCount(); ++index) {
            const auto& block = map.block(index);
            appendPiece(block.json, [&](MemberWriter& items) {
                items.writer_.beginObject();
                for (const auto& entry : block.entries) {
                    items.writer_.key(entry->content.first);
                    writeValue(items, entry->content.second);
                }
                items.writer_.endObject();
            });
        }
        writer_.endObject();
    }

    /// Appends the JSON of a block to the list or map that is open. `writeAll` writes the whole
    /// block as an array or object; it is called only when `json` is not known yet.
    template <class WriteAll>
    void appendPiece(SharedBytes& json, WriteAll writeAll)
    {
        assert(pieces_ != nullptr);
        if (!json) {
            JsonWriter writer;
            MemberWriter items(writer);
            writeAll(items);
            auto text = std::make_shared<const std::string>(writer.take());
            const std::size_t bracket = text->size() - 1;
            json = SharedBytes(std::move(text), 1, bracket);
        }
        writer_.elementWrittenElsewhere();
        pieces_->append(writer_.take());
        pieces_->append(json);
    }

    JsonWriter& writer_;
    LedgerBytes* pieces_;
};

} // namespace KestryCore
