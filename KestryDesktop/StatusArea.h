#pragma once

#include "MenuEntry.h"

namespace Kestry {

/// The place in the desktop's status area, as the status item commands it.
class StatusArea {
public:
    StatusArea() = default;
    StatusArea(const StatusArea&) = delete;
    StatusArea& operator=(const StatusArea&) = delete;
    virtual ~StatusArea() = default;

    virtual void create(Menu menu) = 0;
    virtual void remove() = 0;
    /// Pictures of the mark that there are: all of one turn, or none when they cannot be drawn.
    /// They are made when first asked for.
    [[nodiscard]] virtual int frameCount() = 0;
    virtual void showFrame(int frame) = 0;
    /// The plain symbol, in place of the mark.
    virtual void showSymbol() = 0;
};

} // namespace Kestry
