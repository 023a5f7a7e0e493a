#pragma once

#include "MenuEntry.h"

namespace Kestry {

/// The item in the desktop's status area, commanded by `StatusItem`.
class StatusArea {
public:
    StatusArea() = default;
    StatusArea(const StatusArea&) = delete;
    StatusArea& operator=(const StatusArea&) = delete;
    virtual ~StatusArea() = default;

    /// Creates the item with its menu. It appears with its first picture.
    virtual void create(Menu menu) = 0;
    virtual void remove() = 0;
    /// The number of pictures of one turn of the mark; 0 when they cannot be drawn. The first call
    /// draws them.
    [[nodiscard]] virtual int frameCount() = 0;
    /// Shows a picture of the mark, from 0 to `frameCount() - 1`.
    virtual void showFrame(int frame) = 0;
    /// Shows a plain symbol in place of the mark.
    virtual void showSymbol() = 0;
};

} // namespace Kestry
