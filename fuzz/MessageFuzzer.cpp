#include <cstddef>
#include <cstdint>
#include <string>

#include "LocalMessage.h"
#include "Require.h"

// Any bytes on the local socket either break the stream or are frames, and any frame's content
// either is no message or one which encoded and read again is the same.

namespace {

using namespace Kestry;
using KestryCore::require;

template <class Message>
void requireSameAgain(const Message& message, std::optional<Message> (*decode)(std::string_view))
{
    LocalFrameReader reader(maximumAnswerBytes);
    reader.add(encodeMessage(message));
    const auto frame = reader.next();
    require(frame.has_value(), "what was encoded is a whole frame");
    require(encodeMessage(decode(frame->content).value()) == encodeMessage(message),
        "what was encoded reads as the same message");
}

void readEveryWay(const std::string& content)
{
    if (const auto command = decodeCommand(content)) {
        requireSameAgain(*command, decodeCommand);
    }
    if (const auto activation = decodeActivation(content)) {
        requireSameAgain(*activation, decodeActivation);
    }
    if (const auto answer = decodeAnswer(content)) {
        requireSameAgain(*answer, decodeAnswer);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    readEveryWay(bytes);
    LocalFrameReader reader(maximumRequestBytes);
    reader.add(bytes);
    while (const auto frame = reader.next()) {
        readEveryWay(frame->content);
    }
    return 0;
}
