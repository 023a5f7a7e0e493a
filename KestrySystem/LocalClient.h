#pragma once

#include <sys/types.h>

#include <string>

#include "LocalMessage.h"

namespace Kestry {

/// The result of handing a message over to the application.
struct LocalReply {
    enum class Outcome {
        answered,  ///< It was carried out; `answer` is the result.
        declined,  ///< It is left to the caller; nothing was done.
        unreached, ///< No application listens; nothing was done.
        silent,    ///< The application did not take it in time; nothing was or will be done.
        lost,      ///< It was taken and no answer came: what was done is unknown.
    };

    Outcome outcome = Outcome::unreached;
    LocalAnswer answer;
    pid_t process = 0; ///< The ID of the listening process; 0 when unknown.
};

/// The message for a command that was lost.
[[nodiscard]] std::string lostCommandText(const LocalReply& reply);

/// How long a caller waits, in seconds.
struct ClientTimeouts {
    double untilTaken = 5.0;     ///< For the application to take the message or decline it.
    double untilAnswered = 60.0; ///< For the answer, since the last sign that it was taken.
};

/// Hands an encoded message over to the application that has the data directory, and waits for the
/// answer. A command that was not taken in time is certain not to be carried out later.
[[nodiscard]] LocalReply handOver(const std::string& directory, const std::string& message,
    const ClientTimeouts& timeouts = ClientTimeouts{});

} // namespace Kestry
