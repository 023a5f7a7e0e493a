#pragma once

#include <QRect>

#include <vector>

namespace Kestry {

/// What a desktop panel keeps for itself along the edges of the whole desktop, in the server's
/// pixels. The spans tell which part of an edge is meant, both ends included.
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

/// The part of a screen that no panel keeps for itself. A strut of a neighbouring screen does
/// not count, nor one that would leave less than half of this screen: it is meant for another
/// that lies between this one and the edge.
[[nodiscard]] QRect withoutStruts(
    const QRect& screen, QSize desktop, const std::vector<ScreenStrut>& struts);

} // namespace Kestry
