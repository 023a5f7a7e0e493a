#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "UpdateHandoff.h"
#include "Verdict.h"

// Any bytes under the name of a handoff either are refused in words or are a handoff, which
// written and read again is the same.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace KestryCore;
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    std::optional<UpdateHandoff> handoff;
    (void)verdictOn([&] { handoff = decodeUpdateHandoff(bytes); });
    if (handoff) {
        const std::string written = encodeUpdateHandoff(*handoff);
        const UpdateHandoff again = decodeUpdateHandoff(written);
        require(again == *handoff, "what was written reads as the same handoff");
        require(encodeUpdateHandoff(again) == written, "it is written in the same bytes");
    }
    return 0;
}
