#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "CloudError.h"
#include "CouchDocument.h"

namespace Kestry {

// What a server answers, read from the body of its answer. A server may send anything: what does
// not make sense throws CloudError in words for people, and never more than that.

/// The server, or the user's database on it, is not where it was looked for.
class CouchNotFound : public KestryCore::CloudError {
    using CloudError::CloudError;
};
inline constexpr const char* noServerWords = "There is no CouchDB server at this address. Check "
                                             "the address under Connections in Settings.";

/// Who the server is.
struct CouchWelcome {
    std::string identity; ///< Stays the same as long as the server. May be empty.
};
/// Throws CouchNotFound when it is another kind of server, and CloudError when it is too old.
[[nodiscard]] CouchWelcome couchWelcome(const std::string& body);

/// Whom the server takes the sender for; nullopt for a stranger.
[[nodiscard]] std::optional<std::string> couchUser(const std::string& body);

/// What became of one document of a batch.
struct CouchSaved {
    std::string id;
    std::string revision; ///< Empty when it was not saved.
    std::string error;    ///< The server's word for why, such as "conflict".
};
[[nodiscard]] std::vector<CouchSaved> couchSaved(const std::string& body);

/// One document that was asked for by name.
struct CouchRow {
    std::string id;
    std::string revision;                  ///< Of the version that the server shows.
    bool isMissing = false;                ///< There is no such document.
    bool isDeleted = false;                ///< There was one.
    std::optional<CouchDocument> document; ///< When bodies were asked for.
};
[[nodiscard]] std::vector<CouchRow> couchRows(const std::string& body);

/// Versions that were asked for by name and revision. Those that the server does not have are left
/// out.
[[nodiscard]] std::vector<CouchDocument> couchVersions(const std::string& body);

/// One document that has changed.
struct CouchChange {
    std::string id;
    std::string revision;
    bool isDeleted = false;
    std::optional<CouchDocument> document; ///< When bodies were asked for.
};
struct CouchFeed {
    std::vector<CouchChange> changes;
    std::string last;                    ///< The sequence behind all of these.
    std::optional<std::int64_t> pending; ///< How many more there are, when the server tells.
};
[[nodiscard]] CouchFeed couchFeed(const std::string& body);

/// The server's word for a failure, such as "not_found"; empty when it has none.
[[nodiscard]] std::string couchErrorWord(const std::string& body);

} // namespace Kestry
