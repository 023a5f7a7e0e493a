#pragma once

#include <QRect>

#include <vector>

namespace Kestry {

/// The space that a desktop panel reserves along the edges of the whole desktop, in the server's
/// pixels. `first` and `last` are the ends of its part of an edge, both included.
struct ScreenStrut {
    struct Edge {
        int depth = 0;
        int first = 0;
        int last = 0;
    };
    Edge left;
    Edge right;
    Edge top;
    Edge bottom;
};

/// Returns the part of a screen that no panel reserves. Struts of neighbouring screens do not
/// count. Neither do those that would leave less than half of this screen: they are meant for
/// another screen, between this one and the edge.
[[nodiscard]] QRect withoutStruts(
    const QRect& screen, QSize desktop, const std::vector<ScreenStrut>& struts);

} // namespace Kestry
