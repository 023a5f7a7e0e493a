#pragma once

#include <functional>

#include "CommandContext.h"
#include "LocalMessage.h"

namespace Kestry {

enum class ExitStatus {
    done = 0,
    refused = 1,  ///< By the ledger, a file or another program; nothing was changed.
    unusable = 2, ///< The command line can't be understood; nothing was opened.
};

/// The result in the form that is to be shown.
[[nodiscard]] LocalAnswer shownAnswer(CommandAnswer answer, bool asJson);

/// Runs the action and returns its answer. An exception becomes an answer with the failure's
/// message in `errors` and, as JSON where that is asked for, in `output`; its status is `unusable`
/// for a `UsageError` and else `refused`.
[[nodiscard]] LocalAnswer answerOrFailure(bool asJson, const std::function<LocalAnswer()>& action);

} // namespace Kestry
