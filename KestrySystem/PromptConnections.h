#pragma once

namespace Kestry {

/// Lets each TCP connection that this process has open send at once what it is given.
///
/// Otherwise the end of what is sent in several pieces is held back until the other side has
/// confirmed the rest, which some do only after 40 milliseconds. Whoever gives all that there is to
/// send gains nothing by that.
void sendPromptly();

} // namespace Kestry
