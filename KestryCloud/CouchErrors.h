#pragma once

#include <string>

#include "CloudError.h"
#include "Date.h"
#include "HttpClient.h"

namespace Kestry {

/// What was asked when a server refused; the same status means different things.
enum class CouchRequestKind {
    server,   ///< Something of the server itself.
    database, ///< Something of the user's database.
    changes,  ///< The changes since a cursor.
    creation, ///< To make the database.
};

/// There is no such database, and so no zone in it.
class CouchNoDatabase : public KestryCore::CloudError {
public:
    explicit CouchNoDatabase(const std::string& description)
        : CloudError(description, KestryCore::CloudErrorCode::zoneNotFound)
    {
    }
};

/// More than the server, or a proxy before it, takes at once.
class CouchTooLarge : public KestryCore::CloudError {
    using CloudError::CloudError;
};

/// An answer with more bytes than were allowed.
class CouchAnswerTooLong : public KestryCore::CloudError {
    using CloudError::CloudError;
};

/// The server does not accept the user, whatever is asked.
class CouchRefused : public KestryCore::CloudError {
    using CloudError::CloudError;
};

/// Throws what an answer other than success means, in words that name the next step; CouchNotFound
/// when there is no server, and when the database can't be made. `now` is the date to hold a date
/// in Retry-After against.
[[noreturn]] void refuse(CouchRequestKind kind, const HttpAnswer& answer, KestryCore::Date now);

/// Throws what it means that there is no whole answer.
[[noreturn]] void refuse(const HttpFailure& failure);

/// A record that the server has not saved, by the server's word for why.
[[nodiscard]] KestryCore::CloudError saveFailure(const std::string& word);

} // namespace Kestry
