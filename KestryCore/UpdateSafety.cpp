#include "UpdateSafety.h"

namespace KestryCore::UpdateSafety {

bool hasUnfinishedWork(const std::optional<ActiveSession>& activeSession, bool hasOpenEditor,
    std::string_view sessionTitle)
{
    return activeSession.has_value() || hasOpenEditor || !sessionTitle.empty();
}

} // namespace KestryCore::UpdateSafety
