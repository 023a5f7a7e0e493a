#pragma once

#include <string>

namespace Kestry {

/// Where the records of a user are: a database on a server that speaks CouchDB's protocol.
struct CouchAddress {
    std::string server;   ///< As in "https://example.org:6984/couch", with no slash at its end.
    std::string database; ///< Its name, as the server knows it.
    bool isOwn = false;   ///< Whether nothing names the database, so that it is the user's own.

    /// Reads what a person enters: the server's address with the database's name at its end, as in
    /// "https://example.org/hours". After a slash at the end, or with no path, the database is the
    /// one that a server makes for each user. `https` everywhere, `http` only on this machine.
    ///
    /// Throws CloudError with what to enter instead, also for the user's name. A password in the
    /// address is refused, and in no message.
    [[nodiscard]] static CouchAddress parse(const std::string& entered, const std::string& user);

    /// The address of something of the server, as in "/_session".
    [[nodiscard]] std::string ofServer(const std::string& path) const { return server + path; }
    /// The address of something of the database, as in "/_bulk_docs".
    [[nodiscard]] std::string ofDatabase(const std::string& path) const;

    /// The words of a failure to find server or database. Where a slash at the end may be the cause
    /// of it, they go on with what was looked for, and what to enter instead.
    [[nodiscard]] std::string explained(const std::string& words) const;

    friend bool operator==(const CouchAddress&, const CouchAddress&) = default;
};

/// The name of the database that a server makes for a user.
[[nodiscard]] std::string userDatabase(const std::string& user);

} // namespace Kestry
