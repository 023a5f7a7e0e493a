#pragma once

#include <functional>

namespace Kestry {

/// Lets the program end in order when the display server goes, at log-out or in a crash. The
/// toolkit then ends the process at once: on X11 with `exit`, on Wayland without running exit
/// handlers, and from any thread. It logs a warning first; so each warning makes this class check
/// whether the connection still works.
///
/// One per process, created on the main thread after the application object, which must outlive it.
class DisplayEnd {
public:
    /// `leave` is called at most once, on the main thread, from within the toolkit: it must not
    /// touch windows. The process ends with the status that it returns.
    explicit DisplayEnd(std::function<int()> leave);
    /// The same with another test whether the display has gone. Any thread may call it.
    DisplayEnd(std::function<int()> leave, std::function<bool()> isGone);
    DisplayEnd(const DisplayEnd&) = delete;
    DisplayEnd& operator=(const DisplayEnd&) = delete;
    ~DisplayEnd();
};

} // namespace Kestry
