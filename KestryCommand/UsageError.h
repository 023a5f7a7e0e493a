#pragma once

#include <stdexcept>

namespace Kestry {

/// A command line that can't be understood. `what()` says what is wrong with it and, where that can
/// be guessed, what was meant.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace Kestry
