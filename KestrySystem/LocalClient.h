#pragma once

#include <sys/types.h>

#include <string>

#include "LocalMessage.h"

namespace Kestry {

/// What became of something that was to be handed over to the application.
struct LocalReply {
    enum class Outcome {
        answered,  ///< It was carried out; `answer` tells what came of it.
        declined,  ///< Left to the caller, who can do it as well; nothing was done.
        unreached, ///< Nobody listens; nothing was done.
        silent,    ///< Somebody listens and said nothing in time; nothing was or will be done.
        lost,      ///< It was taken on, and no answer came: nobody knows what was done.
    };

    Outcome outcome = Outcome::unreached;
    LocalAnswer answer;
    pid_t process = 0; ///< That of the listener, where there is one.
};

/// What to tell a person whose command was lost.
[[nodiscard]] std::string lostCommandText(const LocalReply& reply);

/// How long the other side may take, in seconds.
struct LocalPatience {
    double untilTaken = 5.0;
    double untilAnswered = 60.0;
};

/// Hands an encoded message over to the application that has the data directory. Waits for the
/// answer. A command that is given up is certain not to be carried out later.
[[nodiscard]] LocalReply handOver(const std::string& directory, const std::string& message,
    const LocalPatience& patience = LocalPatience{});

} // namespace Kestry
