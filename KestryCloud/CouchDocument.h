#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "CloudRecord.h"
#include "JsonReader.h"

namespace Kestry {

/// A document of the server. Records and what the store needs for itself have the same form:
///
///     {"_id": "Zone/Name", "_rev": "3-…", "type": "…", "fields": {"a": 1, "b": "text",
///      "c": {"base64": "…"}}}
///
/// So whatever a record is called, nothing of it meets a name of the server's own. A field whose
/// name begins with an underscore has one more there: servers in JavaScript lose "__proto__".
struct CouchDocument {
    std::string id;
    std::string revision; ///< Empty for one that was never saved.
    bool isDeleted = false;
    std::string type;
    std::map<std::string, KestryCore::CloudValue> fields;
    /// Other versions that the server accepted beside this one; it shows none of them by itself.
    std::vector<std::string> overruled;
    std::vector<std::string> history; ///< Revisions up to this one, when they were asked for.

    friend bool operator==(const CouchDocument&, const CouchDocument&) = default;
};

/// Reads a document of any sender. What is not of the form above is left out, so that a foreign
/// document is one of no type. Throws LedgerError when there is no identifier or revision.
[[nodiscard]] CouchDocument couchDocument(const KestryCore::JsonValue& value);

/// The document as it is sent. Throws CloudError when it cannot be: an identifier that the server
/// keeps for itself, text that is not UTF-8, or a number that is none.
[[nodiscard]] std::string couchJson(const CouchDocument& document);

[[nodiscard]] CouchDocument documentOf(const KestryCore::CloudRecord& record);
/// The document's name must be one of a record.
[[nodiscard]] KestryCore::CloudRecord recordOf(CouchDocument document);

// Names of documents. Only those of records have a solidus.

[[nodiscard]] std::string recordDocument(const KestryCore::CloudRecordID& id);
/// Nullopt for the name of a document that is no record.
[[nodiscard]] std::optional<KestryCore::CloudRecordID> recordOfDocument(std::string_view name);
/// The document by which a zone exists.
[[nodiscard]] std::string zoneDocument(const KestryCore::CloudZoneID& zone);
/// The document that a device saves with each of its deliveries.
[[nodiscard]] std::string deviceDocument(const std::string& device);
/// Nullopt for the name of any other document.
[[nodiscard]] std::optional<std::string> deviceOfDocument(std::string_view name);

/// How often a document was saved up to a revision: the number before the hyphen, 0 without one.
[[nodiscard]] std::int64_t generationOf(std::string_view revision);
/// Whether a server that has both revisions of a document shows the other one. None at all, which
/// is empty, is behind each.
[[nodiscard]] bool isBehind(std::string_view revision, std::string_view other);

} // namespace Kestry
