#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "CloudRecord.h"

namespace Kestry {

/// How far a zone was read, and what the server had then: by that it is recognised when the server
/// was restored from a backup or made anew, which its own sequence does not tell.
struct CouchCursor {
    std::string incarnation; ///< The zone's random identity.
    std::string device;      ///< Under which name this reader counts its own deliveries.
    /// How often each device had delivered, as far as was seen. It never falls.
    std::map<std::string, std::int64_t> deliveries;
    bool isFirstReading = true; ///< Until the end of the zone was reached once.
    std::string since;          ///< The server's own sequence, as opaque text; empty at the start.

    /// Keeps the higher count of what is known and what is seen.
    void see(const std::string& name, std::int64_t count);

    [[nodiscard]] KestryCore::CloudCursor encoded() const;
    /// Nullopt when the bytes are no such cursor.
    [[nodiscard]] static std::optional<CouchCursor> decode(const KestryCore::CloudCursor& cursor);

    friend bool operator==(const CouchCursor&, const CouchCursor&) = default;
};

} // namespace Kestry
