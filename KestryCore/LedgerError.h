#pragma once

#include <stdexcept>

namespace KestryCore {

/// A refusal or failure of the logic. `what()` is one sentence fit to show a person, and is
/// shown unchanged.
class LedgerError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace KestryCore
