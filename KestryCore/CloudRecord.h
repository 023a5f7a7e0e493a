#pragma once

#include <map>
#include <string>
#include <variant>

namespace KestryCore {

/// A zone of named records in the private database of the current user.
struct CloudZoneID {
    std::string name;

    friend bool operator==(const CloudZoneID&, const CloudZoneID&) = default;
};

struct CloudRecordID {
    std::string name;
    CloudZoneID zone;

    friend bool operator==(const CloudRecordID&, const CloudRecordID&) = default;
};

/// Bytes in a field, which are no text.
struct CloudBytes {
    std::string bytes;

    friend bool operator==(const CloudBytes&, const CloudBytes&) = default;
};

using CloudValue = std::variant<double, std::string, CloudBytes>;

/// A record as the cloud store has it, or is to have it.
struct CloudRecord {
    CloudRecordID id;
    std::string type;
    /// By which the store recognises the version of the record that a later save changes: opaque
    /// bytes of the store. Empty for a record that the sender has never seen in the store.
    std::string serverVersion;
    std::map<std::string, CloudValue> fields;

    friend bool operator==(const CloudRecord&, const CloudRecord&) = default;
};

/// How far the changes of a zone were read: opaque bytes of the store.
struct CloudCursor {
    std::string bytes;

    friend bool operator==(const CloudCursor&, const CloudCursor&) = default;
};

} // namespace KestryCore
