#include "ScreenStruts.h"

#include <algorithm>

namespace Kestry {
namespace {

bool meets(const ScreenStrut::Edge& edge, int first, int last)
{
    return edge.depth > 0 && edge.first <= last && first <= edge.last;
}

/// How much of a side is lost, when at most half of the screen is.
int loss(int depth, int extent)
{
    return depth > 0 && 2 * depth <= extent ? depth : 0;
}

} // namespace

QRect withoutStruts(const QRect& screen, QSize desktop, const std::vector<ScreenStrut>& struts)
{
    QMargins lost;
    for (const ScreenStrut& strut : struts) {
        if (meets(strut.top, screen.left(), screen.right())) {
            lost.setTop(
                std::max(lost.top(), loss(strut.top.depth - screen.top(), screen.height())));
        }
        if (meets(strut.bottom, screen.left(), screen.right())) {
            const int below = desktop.height() - 1 - screen.bottom();
            lost.setBottom(
                std::max(lost.bottom(), loss(strut.bottom.depth - below, screen.height())));
        }
        if (meets(strut.left, screen.top(), screen.bottom())) {
            lost.setLeft(
                std::max(lost.left(), loss(strut.left.depth - screen.left(), screen.width())));
        }
        if (meets(strut.right, screen.top(), screen.bottom())) {
            const int beyond = desktop.width() - 1 - screen.right();
            lost.setRight(std::max(lost.right(), loss(strut.right.depth - beyond, screen.width())));
        }
    }
    return screen.marginsRemoved(lost);
}

} // namespace Kestry
