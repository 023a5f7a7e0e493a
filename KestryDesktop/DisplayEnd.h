#pragma once

#include <functional>

namespace Kestry {

/// Lets the program leave in order when the display server goes, at log-out or in a crash. The
/// toolkit ends the process at once then: on X11 with `exit`, on Wayland without even that, and
/// there from whichever of its threads notices first. It says so before, in a warning; so every
/// warning is a reason to look whether the connection still stands.
///
/// One per process, made on the main thread after the application object, which must outlive it.
class DisplayEnd {
public:
    /// `leave` is called once at most, on the main thread, which is inside the toolkit then: no
    /// window may be touched any more. The process ends with the status that it returns.
    explicit DisplayEnd(std::function<int()> leave);
    /// The same with another way to tell that the display has gone, which any thread may call.
    DisplayEnd(std::function<int()> leave, std::function<bool()> isGone);
    DisplayEnd(const DisplayEnd&) = delete;
    DisplayEnd& operator=(const DisplayEnd&) = delete;
    ~DisplayEnd();
};

} // namespace Kestry
