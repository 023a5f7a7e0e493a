#pragma once

#include <stdexcept>

namespace Kestry {

/// Words on the command line that cannot be used. `what()` tells what is wrong with them and, as
/// far as it can be guessed, what was meant.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace Kestry
