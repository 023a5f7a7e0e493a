#pragma once

#include <cstdlib>
#include <memory>
#include <string>

#include <xcb/xcb.h>

namespace Kestry {

/// Owns a reply or an event of the server; null when there was none.
template <class Reply>
std::unique_ptr<Reply, decltype(&std::free)> owned(Reply* reply)
{
    return {reply, &std::free};
}

/// Returns the number of a named atom; XCB_ATOM_NONE when the server does not answer.
inline xcb_atom_t atom(xcb_connection_t* display, const std::string& name)
{
    const auto reply = owned(xcb_intern_atom_reply(display,
        xcb_intern_atom(display, 0, static_cast<std::uint16_t>(name.size()), name.c_str()),
        nullptr));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

} // namespace Kestry
