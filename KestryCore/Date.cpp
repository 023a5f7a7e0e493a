#include "Date.h"

#include <chrono>

namespace KestryCore {

Date currentDate()
{
    const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
    return Date{std::chrono::duration<double>(sinceEpoch).count() - referenceDateSecondsSince1970};
}

} // namespace KestryCore
