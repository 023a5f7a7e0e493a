#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <utility>

#include "JsonWriter.h"
#include "LedgerBytes.h"

namespace KestryCore {

/// A JSON text without the brackets around it.
[[nodiscard]] inline SharedBytes withoutBrackets(std::string json)
{
    auto text = std::make_shared<const std::string>(std::move(json));
    const std::size_t end = text->size() - 1;
    return {std::move(text), 1, end};
}

/// Puts the content of a list or map made of blocks between the brackets that are open in
/// `writer`: the JSON of each block, as `jsonOf` gives it, in a piece of its own, so that it can be
/// shared with the block.
template <class Blocks, class JsonOf>
void appendBlocks(LedgerBytes& bytes, JsonWriter& writer, const Blocks& blocks, JsonOf jsonOf)
{
    for (std::size_t index = 0; index < blocks.blockCount(); ++index) {
        writer.elementWrittenElsewhere();
        bytes.append(writer.take());
        bytes.append(jsonOf(blocks.block(index)));
    }
}

/// The records' JSON joined by commas; worked out once for a block.
template <class Block>
const SharedBytes& recordsJson(const Block& block)
{
    SharedBytes& json = block.remembered.json;
    if (!json) {
        JsonWriter writer;
        writer.beginArray();
        for (const auto& record : block.records) {
            encode(writer, record);
        }
        writer.endArray();
        json = withoutBrackets(writer.take());
    }
    return json;
}

/// Writes a list as an array in pieces, each remembered with its block.
template <class List>
void encodeList(LedgerBytes& bytes, JsonWriter& writer, const List& list)
{
    writer.beginArray();
    appendBlocks(bytes, writer, list,
        [](const auto& block) -> const SharedBytes& { return recordsJson(block); });
    writer.endArray();
}

} // namespace KestryCore
