#include "Environment.h"

#include <cstdlib>

namespace KestryCore {

std::optional<std::string> processEnvironment(const std::string& name)
{
    const char* value = std::getenv(name.c_str());
    return value != nullptr ? std::optional<std::string>(value) : std::nullopt;
}

} // namespace KestryCore
