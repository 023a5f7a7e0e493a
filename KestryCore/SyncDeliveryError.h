#pragma once

#include <exception>
#include <stdexcept>

namespace KestryCore {

/// A failure of replication that is no failure of the store or the ledger. `what()` is a sentence
/// fit to show a person.
class SyncDeliveryError : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// The cloud has another account than the ledger; replication was turned off for that.
class ForeignAccount : public SyncDeliveryError {
    using SyncDeliveryError::SyncDeliveryError;
};

/// The cloud has no zone, and had one: its records were removed.
class WorkspaceMissing : public SyncDeliveryError {
    using SyncDeliveryError::SyncDeliveryError;
};

/// Ends a run of replication that has outlived its permission. Nobody is told.
class SyncCancelled : public std::exception { };

} // namespace KestryCore
