#pragma once

#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

#include "CloudRecord.h"

namespace KestryCore {

/// Which failure of a cloud store it is, as far as replication treats it differently.
enum class CloudErrorCode {
    zoneNotFound,        ///< The store has no such zone.
    changeTokenExpired,  ///< The store cannot go on from this cursor any more.
    serverRecordChanged, ///< The store has another version than the one that the save changes.
    storeReplaced, ///< The store was restored from a backup or made anew: what was read of it and
                   ///< delivered to it no longer holds.
    other,
};

/// A failure of a cloud store, of one record or of a whole request. `what()` is a sentence fit to
/// show a person.
class CloudError : public std::runtime_error {
public:
    explicit CloudError(const std::string& description, CloudErrorCode code = CloudErrorCode::other)
        : std::runtime_error(description), code_(code)
    {
    }

    /// The record was changed on the server, whose version is the one given.
    [[nodiscard]] static CloudError changed(const std::string& description, CloudRecord server)
    {
        CloudError error(description, CloudErrorCode::serverRecordChanged);
        error.serverRecord_ = std::make_shared<const CloudRecord>(std::move(server));
        return error;
    }
    /// The same failure of a save that the store had accepted, and whose version it keeps behind
    /// the other one; see `CloudChanges::overruled`.
    [[nodiscard]] CloudError overruling(CloudRecord saved) const
    {
        CloudError error = *this;
        error.overruled_ = std::make_shared<const CloudRecord>(std::move(saved));
        return error;
    }
    /// The store is no longer what it was, or another one of the same user.
    [[nodiscard]] static CloudError replaced()
    {
        return CloudError(
            "The record store was restored from a backup or made anew, or the "
            "address is that of another one, so it may lack records that this device "
            "has delivered. Nothing was changed here. If the address is right, upload "
            "this device's records again to go on.",
            CloudErrorCode::storeReplaced);
    }
    /// The same failure with the store's wish to be left alone for so many seconds.
    [[nodiscard]] CloudError retryingAfter(double seconds) const
    {
        CloudError error = *this;
        error.retryAfterSeconds_ = seconds;
        return error;
    }

    [[nodiscard]] CloudErrorCode code() const { return code_; }
    [[nodiscard]] std::optional<double> retryAfterSeconds() const { return retryAfterSeconds_; }
    /// The server's version of a record that was changed there; null when it was not told.
    [[nodiscard]] const CloudRecord* serverRecord() const { return serverRecord_.get(); }
    /// The version that was accepted and overruled; null when there is none.
    [[nodiscard]] const CloudRecord* overruled() const { return overruled_.get(); }

private:
    CloudErrorCode code_;
    std::optional<double> retryAfterSeconds_;
    std::shared_ptr<const CloudRecord> serverRecord_; // shared, so that a copy cannot fail
    std::shared_ptr<const CloudRecord> overruled_;
};

} // namespace KestryCore
